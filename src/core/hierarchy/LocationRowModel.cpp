#include "core/hierarchy/LocationRowModel.h"

#include <QSet>

LocationRowModel::LocationRowModel(QObject* parent)
    : QAbstractListModel(parent) {}

void LocationRowModel::setEntries(const QList<ListEntry>& entries) {
    QSet<QString> wanted;
    for (const ListEntry& entry : entries) {
        wanted.insert(entry.id());
    }
    // Row by row: the same list stays (and tells when it changed), a list that is gone leaves, and
    // any other is inserted; the rows past the new end leave at last.
    int row = 0;
    while (row < entries.size()) {
        const ListEntry& entry = entries.at(row);
        if (row < m_entries.size() && m_entries.at(row).id() == entry.id()) {
            if (m_entries.at(row) != entry) {
                m_entries[row] = entry;
                emit dataChanged(index(row), index(row));
            }
            ++row;
        } else if (row < m_entries.size() && !wanted.contains(m_entries.at(row).id())) {
            beginRemoveRows({}, row, row);
            m_entries.removeAt(row);
            endRemoveRows();
        } else {
            beginInsertRows({}, row, row);
            m_entries.insert(row, entry);
            endInsertRows();
            ++row;
        }
    }
    if (m_entries.size() > entries.size()) {
        beginRemoveRows({}, static_cast<int>(entries.size()), static_cast<int>(m_entries.size()) - 1);
        m_entries.resize(entries.size());
        endRemoveRows();
    }
}

int LocationRowModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_entries.size());
}

QVariant LocationRowModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= m_entries.size()) {
        return {};
    }
    const ListEntry& entry = m_entries.at(index.row());
    switch (role) {
    case ListIDRole:
        return entry.id();
    case Qt::DisplayRole:
    case NameRole:
        return entry.list.name;
    case PathRole:
        return entry.path();
    default:
        return {};
    }
}

QHash<int, QByteArray> LocationRowModel::roleNames() const {
    return {{ListIDRole, "listID"}, {NameRole, "name"}, {PathRole, "path"}};
}
