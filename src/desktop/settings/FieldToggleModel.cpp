#include "desktop/settings/FieldToggleModel.h"

FieldToggleModel::FieldToggleModel(IsOn isOn, SetOn setOn, QObject* parent)
    : QAbstractListModel(parent)
    , m_isOn(std::move(isOn))
    , m_setOn(std::move(setOn)) {}

void FieldToggleModel::setRows(QList<Row> rows) {
    beginResetModel();
    m_rows = std::move(rows);
    endResetModel();
}

void FieldToggleModel::refreshChecked() {
    if (!m_rows.isEmpty()) {
        emit dataChanged(index(0), index(int(m_rows.size()) - 1), {CheckedRole});
    }
}

int FieldToggleModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(m_rows.size());
}

QVariant FieldToggleModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return {};
    }
    const Row& row = m_rows.at(index.row());
    switch (role) {
    case LabelRole:
        return row.label;
    case CheckedRole:
        return m_isOn(row.key);
    default:
        return {};
    }
}

QHash<int, QByteArray> FieldToggleModel::roleNames() const {
    return {{LabelRole, "label"}, {CheckedRole, "checked"}};
}

Qt::ItemFlags FieldToggleModel::flags(const QModelIndex& index) const {
    return QAbstractListModel::flags(index) | Qt::ItemIsEditable;
}

bool FieldToggleModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != CheckedRole || !checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return false;
    }
    // The settings' change notice refreshes the rows.
    m_setOn(m_rows.at(index.row()).key, value.toBool());
    return true;
}
