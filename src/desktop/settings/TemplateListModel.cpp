#include "desktop/settings/TemplateListModel.h"

namespace {
bool holds(const QList<TaskTemplate>& templates, qsizetype from, const QUuid& id) {
    for (qsizetype index = from; index < templates.size(); ++index) {
        if (templates.at(index).id == id) {
            return true;
        }
    }
    return false;
}
} // namespace

TemplateListModel::TemplateListModel(QObject* parent)
    : QAbstractListModel(parent) {}

void TemplateListModel::setTemplates(const QList<TaskTemplate>& templates) {
    if (!applyInPlace(templates)) {
        beginResetModel();
        m_templates = templates;
        endResetModel();
    }
}

bool TemplateListModel::applyInPlace(const QList<TaskTemplate>& templates) {
    for (qsizetype row = m_templates.size() - 1; row >= 0; --row) {
        if (!holds(templates, 0, m_templates.at(row).id)) {
            beginRemoveRows({}, int(row), int(row));
            m_templates.removeAt(row);
            endRemoveRows();
        }
    }
    for (qsizetype row = 0; row < templates.size(); ++row) {
        const TaskTemplate& wanted = templates.at(row);
        if (row < m_templates.size() && m_templates.at(row).id == wanted.id) {
            if (m_templates.at(row) != wanted) {
                m_templates[row] = wanted;
                emit dataChanged(index(int(row)), index(int(row)));
            }
        } else if (!holds(m_templates, row, wanted.id)) {
            beginInsertRows({}, int(row), int(row));
            m_templates.insert(row, wanted);
            endInsertRows();
        } else {
            return false;
        }
    }
    return m_templates.size() == templates.size();
}

int TemplateListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(m_templates.size());
}

QVariant TemplateListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return {};
    }
    const TaskTemplate& shown = m_templates.at(index.row());
    switch (role) {
    case IdRole:
        return shown.id.toString(QUuid::WithoutBraces);
    case NameRole:
        return shown.name;
    case ListPathRole:
        return shown.listPath.value_or(QString());
    default:
        return {};
    }
}

QHash<int, QByteArray> TemplateListModel::roleNames() const {
    return {{IdRole, "templateID"}, {NameRole, "name"}, {ListPathRole, "listPath"}};
}
