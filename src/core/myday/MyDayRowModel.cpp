#include "core/myday/MyDayRowModel.h"

#include "core/support/NorvaneColor.h"

#include <QStringList>
#include <utility>

MyDayRowModel::MyDayRowModel(QObject* parent)
    : QAbstractListModel(parent) {}

void MyDayRowModel::setRows(const QList<MyDayRow>& rows) {
    // The unchanged start and end by key, then the run between them replaced.
    const qsizetype oldCount = m_rows.size();
    const qsizetype newCount = rows.size();
    qsizetype head = 0;
    while (head < oldCount && head < newCount && m_rows[head].key() == rows[head].key()) {
        ++head;
    }
    qsizetype tail = 0;
    while (tail < oldCount - head && tail < newCount - head &&
           m_rows[oldCount - 1 - tail].key() == rows[newCount - 1 - tail].key()) {
        ++tail;
    }
    if (oldCount - head - tail > 0) {
        beginRemoveRows({}, static_cast<int>(head), static_cast<int>(oldCount - tail - 1));
        m_rows.remove(head, oldCount - head - tail);
        endRemoveRows();
    }
    if (newCount - head - tail > 0) {
        beginInsertRows({}, static_cast<int>(head), static_cast<int>(newCount - tail - 1));
        m_rows.insert(head, newCount - head - tail, MyDayRow());
        std::copy(rows.cbegin() + head, rows.cbegin() + (newCount - tail), m_rows.begin() + head);
        endInsertRows();
    }
    // The kept rows whose content changed.
    for (qsizetype row = 0; row < newCount; ++row) {
        if (m_rows[row] != rows[row]) {
            m_rows[row] = rows[row];
            emit dataChanged(index(static_cast<int>(row)), index(static_cast<int>(row)));
        }
    }
}

void MyDayRowModel::setListStatuses(const QHash<QString, QList<NVStatus>>& statusesByListID) {
    const QHash<QString, QList<NVStatus>> old = std::exchange(m_statusesByListID, statusesByListID);
    for (qsizetype row = 0; row < m_rows.size(); ++row) {
        const auto& list = m_rows[row].node.task.list;
        if (m_rows[row].kind == MyDayRow::Kind::task && list &&
            old.value(list->id) != statusesByListID.value(list->id)) {
            const QModelIndex changed = index(static_cast<int>(row));
            emit dataChanged(changed, changed, {ListStatusesRole});
        }
    }
}

QList<StatusChoice> MyDayRowModel::listStatuses(const MyDayRow& row) const {
    QList<StatusChoice> choices;
    if (row.kind == MyDayRow::Kind::task && row.node.task.list) {
        for (const NVStatus& status : m_statusesByListID.value(row.node.task.list->id)) {
            choices.append({status.status, NorvaneColor::nameOf(status.color)});
        }
    }
    return choices;
}

int MyDayRowModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant MyDayRowModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= m_rows.size()) {
        return {};
    }
    const MyDayRow& row = m_rows[index.row()];
    const NVTaskSummary& task = row.node.task;
    switch (role) {
    case KindRole:
        return row.kind == MyDayRow::Kind::section ? QStringLiteral("section") : QStringLiteral("task");
    case TitleRole:
        return row.title;
    case TaskIDRole:
        return task.id;
    case Qt::DisplayRole:
    case NameRole:
        return row.kind == MyDayRow::Kind::section ? row.title : task.name;
    case StatusRole:
        return task.status ? task.status->status : QString();
    case StatusColorRole:
        return task.status ? NorvaneColor::nameOf(task.status->color) : QString();
    case DueDateRole:
        return task.dueDate.value_or(QString());
    case ListNameRole:
        return task.list ? task.list->name.value_or(QString()) : QString();
    case AssigneesRole: {
        QStringList names;
        for (const NVUser& assignee : task.assignees.value_or(QList<NVUser>())) {
            names.append(assignee.displayName());
        }
        return names;
    }
    case URLRole:
        return task.url.value_or(QString());
    case DepthRole:
        return row.node.depth;
    case ListStatusesRole:
        return QVariant::fromValue(listStatuses(row));
    default:
        return {};
    }
}

QHash<int, QByteArray> MyDayRowModel::roleNames() const {
    return {{KindRole, "kind"},       {TitleRole, "title"},       {TaskIDRole, "taskID"},
            {NameRole, "name"},       {StatusRole, "status"},     {StatusColorRole, "statusColor"},
            {DueDateRole, "dueDate"}, {ListNameRole, "listName"}, {AssigneesRole, "assignees"},
            {URLRole, "url"},         {DepthRole, "depth"},       {ListStatusesRole, "listStatuses"}};
}
