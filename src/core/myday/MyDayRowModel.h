#pragma once

#include "core/api/FieldRecords.h"
#include "core/myday/MyDayRow.h"
#include "core/myday/StatusChoice.h"

#include <QAbstractListModel>
#include <QHash>
#include <QList>

// The rows of the Tasks tab as a list model for the view. A new set of rows is applied with
// row-level signals: rows that stay keep their place (and tell when their content changed), and
// only the run of rows between the unchanged start and end is removed and inserted, so a task that
// is completed leaves as one removed row. The statuses of a task's list, which arrive later, change
// the rows of that list alone.
class MyDayRowModel : public QAbstractListModel {
    Q_OBJECT

public:
    enum Role {
        KindRole = Qt::UserRole + 1, // "section" or "task"
        TitleRole,                   // a section's title
        TaskIDRole,
        NameRole,
        StatusRole,      // the status name, or empty
        StatusColorRole, // the status colour as "#rrggbb", or empty for none or one unreadable
        DueDateRole,     // the due date text as the service sent it, or empty
        ListNameRole,
        AssigneesRole,    // the assignees' labels
        URLRole,          // the task's own address, or empty
        DepthRole,        // 0 at the top; a subtask is deeper
        ListStatusesRole, // the statuses of the task's list as StatusChoice; empty until known
    };
    Q_ENUM(Role)

    explicit MyDayRowModel(QObject* parent = nullptr);

    const QList<MyDayRow>& rows() const { return m_rows; }
    void setRows(const QList<MyDayRow>& rows);
    // Takes the statuses known by list id (MyDayStore::statusesByListID).
    void setListStatuses(const QHash<QString, QList<NVStatus>>& statusesByListID);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    QList<StatusChoice> listStatuses(const MyDayRow& row) const;

    QList<MyDayRow> m_rows;
    QHash<QString, QList<NVStatus>> m_statusesByListID;
};
