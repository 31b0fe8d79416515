#pragma once

#include "core/api/TaskRecords.h"
#include "core/api/UserRecords.h"
#include "core/async/Clock.h"
#include "core/async/DayChange.h"
#include "core/hierarchy/ListContext.h"
#include "core/myday/MyDayRow.h"
#include "core/myday/MyDayStore.h"
#include "core/myday/QuickTimes.h"
#include "core/myday/TaskAssigneeFilter.h"
#include "core/myday/TaskQueryFilters.h"
#include "core/submit/SubmitNotifier.h"

#include <QCoroTask>
#include <QList>
#include <QObject>
#include <QSet>
#include <QUrl>
#include <functional>
#include <optional>

// What the Tasks tab needs of the rest of the program, read when it is needed.
struct TasksTabContext {
    // The signed-in user, or null.
    std::function<const NVUser*()> signedInUser;
    std::function<std::optional<QString>()> activeWorkspaceID;
    // The composer's current list, or null.
    std::function<ListContext*()> currentContext;
    // Where "Remind me" goes.
    SubmitNotifier* reminders = nullptr;
    // For the address of a task that comes without one.
    QUrl webBaseURL;
    Clock clock = Clocks::system();
    // Tells when today's sections need sorting anew; may be null.
    const DayChange* dayChange = nullptr;
};

// An assignee the filter menu offers.
struct AssigneeChoice {
    qint64 id = 0;
    QString name;
    bool operator==(const AssigneeChoice&) const = default;
};

// The Tasks tab apart from its drawing: the filters the user chose and which part of them goes to
// the service, searching and grouping what the store holds, the rows as plain values (sections and
// the subtask tree), and the row actions. It lives as long as the tab. Main thread only.
//
// The view runs refresh() when it appears and again on each refreshKeyChanged; the owner calls
// contextChanged() when the account, the workspace or the current list may have changed.
class TasksTabState : public QObject {
    Q_OBJECT
    Q_PROPERTY(std::optional<QString> rowError READ rowError NOTIFY rowErrorChanged)
    Q_PROPERTY(QString searchText READ searchText WRITE setSearchText NOTIFY searchTextChanged)
    Q_PROPERTY(
        std::optional<QString> selectedStatus READ selectedStatus WRITE setSelectedStatus NOTIFY selectedStatusChanged)
    Q_PROPERTY(QString refreshKey READ refreshKey NOTIFY refreshKeyChanged)

public:
    struct Groups {
        QList<NVTaskSummary> overdue;
        QList<NVTaskSummary> dueToday;
        QList<NVTaskSummary> later;
        bool operator==(const Groups&) const = default;
    };

    // The store must outlive the state.
    TasksTabState(MyDayStore& store, TasksTabContext context, QObject* parent = nullptr);

    static QString overdueTitle();
    static QString dueTodayTitle();
    static QString laterTitle();

    MyDayStore& store() const { return m_store; }

    const std::optional<QString>& rowError() const { return m_rowError; }
    const QString& searchText() const { return m_searchText; }
    // Clearing the text to blanks clears the row error and the workspace search. It never fetches.
    void setSearchText(const QString& text);
    const std::optional<QString>& selectedStatus() const { return m_selectedStatus; }
    void setSelectedStatus(const std::optional<QString>& status);
    const TaskAssigneeFilter& assigneeFilter() const { return m_assigneeFilter; }
    void setAssigneeFilter(const TaskAssigneeFilter& filter);
    TaskListFilter listFilter() const { return m_listFilter; }
    void setListFilter(TaskListFilter filter);

    // The search text holds more than blanks.
    bool isSearching() const;
    // The current list's id under `current` when there is a current list; else absent.
    std::optional<QStringList> activeListIDs() const;
    // The person's id, the signed-in user's for `mine`; absent for anyone, unassigned or nobody.
    std::optional<QList<qint64>> serverAssigneeIDs() const;
    TaskQueryFilters requestFilters() const;
    // Changes whenever a fetch is due: account, workspace, list under `current`, status or assignee.
    QString refreshKey() const;

    // Both the status and the assignee test pass. The list filter works through the request alone.
    bool matchesFilters(const NVTaskSummary& task) const;
    QList<NVTaskSummary> filteredTasks() const;
    QList<NVTaskSummary> localSearchResults() const;
    std::optional<QList<NVTaskSummary>> workspaceResults() const;
    QList<NVTaskSummary> filteredSearchResults() const;
    // filteredTasks by due date: before today, by the end of today, the rest (undated ones too).
    Groups groups() const;
    // The statuses and people the filter menus offer, sorted by name.
    QStringList availableStatuses() const;
    QList<AssigneeChoice> availableAssignees() const;

    // While searching, the matches in tree form; otherwise the non-empty sections, each followed by
    // its tasks in tree form. rowsChanged comes whenever they are worked out anew.
    const QList<MyDayRow>& rows() const { return m_rows; }

    // Clears the row error, then fetches with the request filters (or empties the list for `mine`
    // with nobody signed in). What it fetched is dropped when it lands after the signed-in account or
    // the active workspace changed.
    QCoro::Task<> refresh();

    // The row actions. One row runs one action at a time: while it works, its actions do nothing.
    // A failure's message becomes the row error.
    bool isWorking(const QString& taskID) const { return m_working.contains(taskID); }
    QCoro::Task<> complete(NVTaskSummary task);
    QCoro::Task<> moveDueDate(NVTaskSummary task, QuickTimes::DueDateMove move);
    QCoro::Task<> updateStatus(NVTaskSummary task, QString status);
    // A local reminder with the task's name and address; nothing changes on the service.
    void remind(const NVTaskSummary& task, QuickTimes::ReminderTime time);

public slots:
    // Re-reads the account, workspace and current list, and tells when the refresh key changed.
    void contextChanged();

signals:
    void rowErrorChanged();
    void searchTextChanged();
    void selectedStatusChanged();
    void assigneeFilterChanged();
    void listFilterChanged();
    void refreshKeyChanged();
    void rowsChanged();
    void workingChanged(const QString& taskID);

private:
    enum class Action { complete, snooze, updateStatus };
    QCoro::Task<> perform(NVTaskSummary task, Action action, QDateTime dueDate, QString status);
    // Whether the account and the workspace a fetch was asked for are still the active ones.
    std::function<bool()> stillActive(std::optional<qint64> userID, const std::optional<QString>& workspaceID) const;
    std::optional<qint64> signedInUserID() const;
    bool matchesAssignee(const NVTaskSummary& task) const;
    // The tasks the filter menus are made from.
    QList<NVTaskSummary> menuSource() const;
    void setRowError(const std::optional<QString>& error);
    void updateKey();
    void updateRows();

    MyDayStore& m_store;
    const TasksTabContext m_context;
    std::optional<QString> m_rowError;
    QString m_searchText;
    std::optional<QString> m_selectedStatus;
    TaskAssigneeFilter m_assigneeFilter;
    TaskListFilter m_listFilter = TaskListFilter::all;
    QString m_refreshKey;
    QList<MyDayRow> m_rows;
    QSet<QString> m_working;
};
