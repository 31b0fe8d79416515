#include "core/myday/MyDayStore.h"

#include "core/api/Endpoints.h"
#include "core/async/Background.h"
#include "core/async/LoadGuard.h"
#include "core/myday/DayBounds.h"
#include "core/myday/TaskOrdering.h"
#include "core/myday/TaskSearch.h"
#include "core/submit/FailureMessage.h"

#include <QCoreApplication>
#include <QPointer>

namespace {
QString loadingText(const QString& prefix) {
    return prefix + QChar(0x2026);
}

QString pageText(const QString& prefix, int page) {
    //: The loading message before a further page of tasks: "Loading tasks… (page 2)".
    return QCoreApplication::translate("MyDayStore", "%1… (page %2)").arg(prefix).arg(page + 1);
}

// The entries of `tasks` with the id of `changed` replaced by it, re-sorted; absent when the id is
// not among them.
std::optional<QList<NVTaskSummary>> withReplaced(QList<NVTaskSummary> tasks, const NVTaskSummary& changed,
                                                 const DayBounds& today) {
    const auto found = std::find_if(tasks.begin(), tasks.end(),
                                    [&changed](const NVTaskSummary& task) { return task.id == changed.id; });
    if (found == tasks.end()) {
        return std::nullopt;
    }
    *found = changed;
    return TaskOrdering::sortTasks(std::move(tasks), today);
}
} // namespace

MyDayStore::MyDayStore(const NorvaneClient& client, Clock clock, QObject* parent)
    : QObject(parent)
    , m_client(client)
    , m_clock(std::move(clock))
    , m_loadingMessage(loadingTasksText()) {}

QString MyDayStore::loadingTasksText() {
    return QCoreApplication::translate("MyDayStore", "Loading tasks…");
}

QString MyDayStore::noDoneStatusText() {
    return QCoreApplication::translate("MyDayStore", "Couldn't resolve a done status for this list.");
}

QCoro::Task<> MyDayStore::refresh(std::optional<QString> teamID, TaskQueryFilters filters,
                                  std::function<bool()> stillActive) {
    if (!teamID) {
        emptyTasks();
        setError(std::nullopt);
        setLoadingMessage(loadingTasksText());
        co_return;
    }
    setLoading(true);
    setError(std::nullopt);
    setLoadingMessage(loadingTasksText());
    const LoadGuard alive(this);
    QCoro::Task<Fetched> fetching =
        fetchAllTasks(*teamID, std::move(filters), QCoreApplication::translate("MyDayStore", "Loading tasks"));
    QCoro::Task<std::optional<Fetched>> landing =
        awaitGuarded(stillActive ? alive.also(std::move(stillActive)) : alive, std::move(fetching));
    try {
        std::optional<Fetched> fetched = co_await std::move(landing);
        if (!fetched) {
            // Asked for an account or a workspace that is no longer active: the answer goes unseen,
            // but this fetch has ended.
            if (alive.holds()) {
                setLoading(false);
            }
            co_return;
        }
        setTasks(std::move(fetched->tasks), std::move(fetched->searchTexts));
        clearWorkspaceSearch();
    } catch (...) {
        setError(FailureMessage::of(std::current_exception()));
    }
    setLoading(false);
    m_lastFetched = m_clock();
    emit lastFetchedChanged();
}

QCoro::Task<MyDayStore::Fetched> MyDayStore::fetchAllTasks(QString teamID, TaskQueryFilters filters,
                                                           QString progressPrefix) {
    setLoadingMessage(loadingText(progressPrefix));
    Endpoints::NextPageHandler onNextPage = [self = QPointer<MyDayStore>(this), progressPrefix](int page) {
        if (self) {
            self->setLoadingMessage(pageText(progressPrefix, page));
        }
    };
    QCoro::Task<QList<NVTaskSummary>> walking =
        Endpoints::getAllTeamTasks(m_client, std::move(teamID), filters.teamTasksFilter(), std::move(onNextPage));
    QList<NVTaskSummary> tasks = co_await std::move(walking);
    // Sorting and the search texts go off the main thread with the decoding.
    std::function<Fetched()> ordering = [tasks = std::move(tasks), today = DayBounds::at(m_clock())]() {
        Fetched fetched{TaskOrdering::sortTasks(tasks, today), {}};
        fetched.searchTexts.reserve(fetched.tasks.size());
        for (const NVTaskSummary& task : fetched.tasks) {
            fetched.searchTexts.append(TaskSearch::searchText(task));
        }
        return fetched;
    };
    QCoro::Task<Fetched> sorting = runInBackground(std::move(ordering));
    co_return co_await std::move(sorting);
}

void MyDayStore::emptyTasks() {
    setTasks({});
    clearWorkspaceSearch();
}

void MyDayStore::clearWorkspaceSearch() {
    setWorkspaceSearchResults({});
    setWorkspaceSearchQuery(std::nullopt);
}

QList<NVTaskSummary> MyDayStore::searchAssigned(const QString& query) const {
    const QStringList tokens = TaskSearch::normalizedTokens(query);
    if (tokens.isEmpty()) {
        return m_tasks;
    }
    if (m_searchTexts.size() != m_tasks.size()) {
        m_searchTexts.clear();
        m_searchTexts.reserve(m_tasks.size());
        for (const NVTaskSummary& task : m_tasks) {
            m_searchTexts.append(TaskSearch::searchText(task));
        }
    }
    QList<NVTaskSummary> found;
    for (qsizetype index = 0; index < m_tasks.size(); ++index) {
        if (TaskSearch::matchesTokens(m_searchTexts[index], tokens)) {
            found.append(m_tasks[index]);
        }
    }
    return found;
}

QCoro::Task<QList<NVStatus>> MyDayStore::loadStatuses(QString listID) {
    if (const QList<NVStatus> cached = m_statusesByListID.value(listID); !cached.isEmpty()) {
        co_return cached;
    }
    const LoadGuard alive(this);
    QCoro::Task<NVList> reading = Endpoints::getList(m_client, listID);
    std::optional<NVList> list;
    try {
        // Unreadable statuses count as none, and nothing is cached.
        QCoro::Task<std::optional<NVList>> landing = awaitGuarded(alive, std::move(reading));
        list = co_await std::move(landing);
    } catch (...) {
        co_return QList<NVStatus>();
    }
    if (!list) {
        co_return QList<NVStatus>();
    }
    const QList<NVStatus> statuses = list->statuses.value_or(QList<NVStatus>());
    m_statusesByListID.insert(listID, statuses);
    emit statusesByListIDChanged();
    co_return statuses;
}

QCoro::Task<std::optional<QString>> MyDayStore::closedStatus(QString listID) {
    QCoro::Task<QList<NVStatus>> loading = loadStatuses(std::move(listID));
    const QList<NVStatus> statuses = co_await std::move(loading);
    if (statuses.isEmpty()) {
        co_return std::nullopt;
    }
    for (const NVStatus& status : statuses) {
        if (status.type == QLatin1String("closed")) {
            co_return status.status;
        }
    }
    co_return statuses.last().status;
}

QCoro::Task<std::optional<QString>> MyDayStore::complete(NVTaskSummary task) {
    if (!task.list) {
        co_return noDoneStatusText();
    }
    const LoadGuard alive(this);
    QCoro::Task<std::optional<std::optional<QString>>> finding = awaitGuarded(alive, closedStatus(task.list->id));
    const std::optional<std::optional<QString>> done = co_await std::move(finding);
    if (!done) {
        co_return std::nullopt;
    }
    if (!*done) {
        co_return noDoneStatusText();
    }
    const UpdateTaskRequest request{**done, std::nullopt, std::nullopt};
    QCoro::Task<std::optional<NVTaskSummary>> sending =
        awaitGuarded(alive, Endpoints::updateTask(m_client, task.id, request));
    try {
        // The answer is read, and dropped.
        if (co_await std::move(sending)) {
            removeTask(task.id);
            emit taskChanged();
        }
    } catch (...) {
        co_return FailureMessage::of(std::current_exception());
    }
    co_return std::nullopt;
}

QCoro::Task<std::optional<QString>> MyDayStore::snooze(NVTaskSummary task, QDateTime to) {
    // Whole milliseconds since 1970, which QDateTime holds exactly; dueDateTime keeps the time of day.
    const UpdateTaskRequest request{std::nullopt, to.toMSecsSinceEpoch(), true};
    QCoro::Task<std::optional<QString>> updating = update(task.id, request);
    co_return co_await std::move(updating);
}

QCoro::Task<std::optional<QString>> MyDayStore::updateStatus(NVTaskSummary task, QString status) {
    const UpdateTaskRequest request{std::move(status), std::nullopt, std::nullopt};
    QCoro::Task<std::optional<QString>> updating = update(task.id, request);
    co_return co_await std::move(updating);
}

QCoro::Task<std::optional<QString>> MyDayStore::update(QString taskID, UpdateTaskRequest request) {
    QCoro::Task<std::optional<NVTaskSummary>> sending =
        awaitGuarded(LoadGuard(this), Endpoints::updateTask(m_client, taskID, request));
    try {
        if (const std::optional<NVTaskSummary> changed = co_await std::move(sending)) {
            replaceTask(*changed);
            emit taskChanged();
        }
    } catch (...) {
        co_return FailureMessage::of(std::current_exception());
    }
    co_return std::nullopt;
}

void MyDayStore::replaceTask(const NVTaskSummary& changed) {
    // Looked up by id now: the lists may have changed while the request ran.
    const DayBounds today = DayBounds::at(m_clock());
    if (std::optional<QList<NVTaskSummary>> tasks = withReplaced(m_tasks, changed, today)) {
        setTasks(std::move(*tasks));
    }
    if (std::optional<QList<NVTaskSummary>> results = withReplaced(m_workspaceSearchResults, changed, today)) {
        setWorkspaceSearchResults(*results);
    }
}

void MyDayStore::removeTask(const QString& taskID) {
    const auto hasID = [&taskID](const NVTaskSummary& task) { return task.id == taskID; };
    QList<NVTaskSummary> tasks = m_tasks;
    if (tasks.removeIf(hasID) > 0) {
        setTasks(std::move(tasks));
    }
    QList<NVTaskSummary> results = m_workspaceSearchResults;
    if (results.removeIf(hasID) > 0) {
        setWorkspaceSearchResults(results);
    }
}

void MyDayStore::setTasks(QList<NVTaskSummary> tasks, QStringList searchTexts) {
    if (m_tasks == tasks) {
        return;
    }
    m_tasks = std::move(tasks);
    m_searchTexts = std::move(searchTexts);
    emit tasksChanged();
}

void MyDayStore::setWorkspaceSearchResults(const QList<NVTaskSummary>& results) {
    if (m_workspaceSearchResults == results) {
        return;
    }
    m_workspaceSearchResults = results;
    emit workspaceSearchResultsChanged();
}

void MyDayStore::setWorkspaceSearchQuery(const std::optional<QString>& query) {
    if (m_workspaceSearchQuery == query) {
        return;
    }
    m_workspaceSearchQuery = query;
    emit workspaceSearchQueryChanged();
}

void MyDayStore::setLoading(bool loading) {
    if (m_isLoading == loading) {
        return;
    }
    m_isLoading = loading;
    emit isLoadingChanged();
}

void MyDayStore::setLoadingMessage(const QString& message) {
    if (m_loadingMessage == message) {
        return;
    }
    m_loadingMessage = message;
    emit loadingMessageChanged();
}

void MyDayStore::setError(const std::optional<QString>& error) {
    if (m_error == error) {
        return;
    }
    m_error = error;
    emit errorChanged();
}
