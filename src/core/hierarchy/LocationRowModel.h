#pragma once

#include "core/hierarchy/ListEntry.h"

#include <QAbstractListModel>
#include <QList>

// The lists of the location picker as a list model for the view. A new set of entries is applied
// row by row: an entry that stays keeps its row, so typing in the search removes the rows that no
// longer match and the current row stays where it is.
class LocationRowModel : public QAbstractListModel {
    Q_OBJECT

public:
    enum Role {
        ListIDRole = Qt::UserRole + 1,
        NameRole,
        PathRole, // the space, and " › " and the folder when there is one
    };
    Q_ENUM(Role)

    explicit LocationRowModel(QObject* parent = nullptr);

    const QList<ListEntry>& entries() const { return m_entries; }
    void setEntries(const QList<ListEntry>& entries);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    QList<ListEntry> m_entries;
};
