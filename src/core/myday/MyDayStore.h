#pragma once

#include "core/api/FieldRecords.h"
#include "core/api/NorvaneClient.h"
#include "core/api/TaskRecords.h"
#include "core/async/Clock.h"
#include "core/myday/TaskQueryFilters.h"

#include <QCoroTask>
#include <QDateTime>
#include <QHash>
#include <QList>
#include <QObject>
#include <QStringList>
#include <functional>
#include <optional>

// The open tasks that the Tasks tab shows. It fetches them page by page from the service's
// workspace-wide task search, keeps them in My Day's order (TaskOrdering), and carries out the row
// actions that change a task on the service: complete, move the due date (snooze) and change the
// status. Nothing is persisted. Main thread only.
//
// Row actions return absent on success and the message to show on failure; they never throw and
// never touch `error`.
class MyDayStore : public QObject {
    Q_OBJECT
    Q_PROPERTY(QList<NVTaskSummary> tasks READ tasks NOTIFY tasksChanged)
    Q_PROPERTY(
        QList<NVTaskSummary> workspaceSearchResults READ workspaceSearchResults NOTIFY workspaceSearchResultsChanged)
    Q_PROPERTY(std::optional<QString> workspaceSearchQuery READ workspaceSearchQuery NOTIFY workspaceSearchQueryChanged)
    Q_PROPERTY(bool isLoading READ isLoading NOTIFY isLoadingChanged)
    Q_PROPERTY(bool isSearchingWorkspace READ isSearchingWorkspace NOTIFY isSearchingWorkspaceChanged)
    Q_PROPERTY(QString loadingMessage READ loadingMessage NOTIFY loadingMessageChanged)
    Q_PROPERTY(std::optional<QString> error READ error NOTIFY errorChanged)
    Q_PROPERTY(std::optional<QDateTime> lastFetched READ lastFetched NOTIFY lastFetchedChanged)
    Q_PROPERTY(StatusesByListID statusesByListID READ statusesByListID NOTIFY statusesByListIDChanged)

public:
    using StatusesByListID = QHash<QString, QList<NVStatus>>;

    // The client must outlive the store; `clock` tells "now" for today's bounds and lastFetched.
    explicit MyDayStore(const NorvaneClient& client, Clock clock = Clocks::system(), QObject* parent = nullptr);

    // "Loading tasks…"
    static QString loadingTasksText();
    // "Couldn't resolve a done status for this list."
    static QString noDoneStatusText();

    const Clock& clock() const { return m_clock; }

    // Always in My Day's order.
    const QList<NVTaskSummary>& tasks() const { return m_tasks; }
    // A search over the whole workspace is not run in this version: these three are only cleared.
    const QList<NVTaskSummary>& workspaceSearchResults() const { return m_workspaceSearchResults; }
    const std::optional<QString>& workspaceSearchQuery() const { return m_workspaceSearchQuery; }
    bool isSearchingWorkspace() const { return m_isSearchingWorkspace; }
    bool isLoading() const { return m_isLoading; }
    const QString& loadingMessage() const { return m_loadingMessage; }
    const std::optional<QString>& error() const { return m_error; }
    const std::optional<QDateTime>& lastFetched() const { return m_lastFetched; }
    // Statuses by list id, as loadStatuses found them; kept as long as the store lives.
    const StatusesByListID& statusesByListID() const { return m_statusesByListID; }

    // Fetches every page of the workspace's open tasks with the filters, then sorts them. Every call
    // fetches, and of those whose answers are taken the one that finishes last wins. Without a
    // workspace it empties the tasks. A failure keeps the tasks and sets `error`; either way
    // `lastFetched` is set. `stillActive`, when given, tells whether the account and workspace the
    // fetch was asked for are still the active ones when it ends: if not, it changes nothing but
    // `isLoading`. It must not refer to anything that may go before the store.
    QCoro::Task<> refresh(std::optional<QString> teamID, TaskQueryFilters filters,
                          std::function<bool()> stillActive = {});
    // Empties the tasks and the workspace search.
    void emptyTasks();
    // Empties the workspace search, as when the search text is cleared.
    void clearWorkspaceSearch();

    // The loaded tasks whose text holds every word of the query, in their order; with no words,
    // all of them. Never asks the service.
    QList<NVTaskSummary> searchAssigned(const QString& query) const;

    // The list's statuses, from the cache when it holds some, else from the service. A failed read
    // gives none and is not cached, nor is an empty answer. Never fails.
    QCoro::Task<QList<NVStatus>> loadStatuses(QString listID);
    // The first status of type "closed", else the last status; absent without statuses.
    QCoro::Task<std::optional<QString>> closedStatus(QString listID);

    // Sets the list's done status; on success the task leaves the lists (its subtasks stay until
    // the next fetch).
    QCoro::Task<std::optional<QString>> complete(NVTaskSummary task);
    // Moves the due date to `to`, keeping its time of day; the task stays listed, perhaps in
    // another group.
    QCoro::Task<std::optional<QString>> snooze(NVTaskSummary task, QDateTime to);
    // Sets the status; the task stays listed, even with a closed status, until the next fetch.
    QCoro::Task<std::optional<QString>> updateStatus(NVTaskSummary task, QString status);

signals:
    void tasksChanged();
    void workspaceSearchResultsChanged();
    void workspaceSearchQueryChanged();
    void isLoadingChanged();
    void isSearchingWorkspaceChanged();
    void loadingMessageChanged();
    void errorChanged();
    void lastFetchedChanged();
    void statusesByListIDChanged();
    // A row action changed a task on the service.
    void taskChanged();

private:
    struct Fetched {
        QList<NVTaskSummary> tasks;
        QStringList searchTexts;
    };

    // Every page, sorted, with the text each task is searched in; worked out off the main thread.
    QCoro::Task<Fetched> fetchAllTasks(QString teamID, TaskQueryFilters filters, QString progressPrefix);
    // Sends the change and puts the answer in place of the task.
    QCoro::Task<std::optional<QString>> update(QString taskID, UpdateTaskRequest request);
    void replaceTask(const NVTaskSummary& changed);
    void removeTask(const QString& taskID);

    void setTasks(QList<NVTaskSummary> tasks, QStringList searchTexts = {});
    void setWorkspaceSearchResults(const QList<NVTaskSummary>& results);
    void setWorkspaceSearchQuery(const std::optional<QString>& query);
    void setLoading(bool loading);
    void setLoadingMessage(const QString& message);
    void setError(const std::optional<QString>& error);

    const NorvaneClient& m_client;
    const Clock m_clock;
    QList<NVTaskSummary> m_tasks;
    // The folded search text of each task, in the order of m_tasks; worked out when first needed.
    mutable QStringList m_searchTexts;
    QList<NVTaskSummary> m_workspaceSearchResults;
    std::optional<QString> m_workspaceSearchQuery;
    bool m_isLoading = false;
    bool m_isSearchingWorkspace = false;
    QString m_loadingMessage;
    std::optional<QString> m_error;
    std::optional<QDateTime> m_lastFetched;
    StatusesByListID m_statusesByListID;
};
