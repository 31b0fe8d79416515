#include "core/myday/TasksTabState.h"

#include "core/async/LoadGuard.h"
#include "core/myday/DayBounds.h"
#include "core/myday/DueDate.h"
#include "core/myday/TaskSearch.h"
#include "core/support/Overloaded.h"

#include <QCollator>
#include <QCoreApplication>
#include <QHash>
#include <algorithm>
#include <array>

namespace {
bool hasAssignee(const NVTaskSummary& task, qint64 id) {
    if (!task.assignees) {
        return false;
    }
    return std::any_of(task.assignees->cbegin(), task.assignees->cend(),
                       [id](const NVUser& assignee) { return assignee.id == id; });
}

QCollator nameOrder() {
    QCollator collator;
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    return collator;
}

void appendTree(QList<MyDayRow>& rows, const QList<NVTaskSummary>& tasks) {
    const TaskTreeList tree(tasks);
    for (const TaskTreeList::Placement& placement : tree.placements()) {
        rows.append(MyDayRow::task({tasks[placement.index], placement.depth}));
    }
}
} // namespace

TasksTabState::TasksTabState(MyDayStore& store, TasksTabContext context, QObject* parent)
    : QObject(parent)
    , m_store(store)
    , m_context(std::move(context)) {
    m_refreshKey = refreshKey();
    updateRows();
    connect(&m_store, &MyDayStore::tasksChanged, this, &TasksTabState::updateRows);
    connect(&m_store, &MyDayStore::workspaceSearchResultsChanged, this, &TasksTabState::updateRows);
    connect(&m_store, &MyDayStore::workspaceSearchQueryChanged, this, &TasksTabState::updateRows);
    if (m_context.dayChange) {
        // After midnight yesterday's "Due today" is overdue.
        connect(m_context.dayChange, &DayChange::dayChanged, this, &TasksTabState::updateRows);
    }
}

QString TasksTabState::overdueTitle() {
    return QCoreApplication::translate("TasksTabState", "Overdue");
}

QString TasksTabState::dueTodayTitle() {
    return QCoreApplication::translate("TasksTabState", "Due today");
}

QString TasksTabState::laterTitle() {
    return QCoreApplication::translate("TasksTabState", "Later");
}

void TasksTabState::setSearchText(const QString& text) {
    if (m_searchText == text) {
        return;
    }
    m_searchText = text;
    if (text.trimmed().isEmpty()) {
        setRowError(std::nullopt);
        m_store.clearWorkspaceSearch();
    }
    emit searchTextChanged();
    updateRows();
}

void TasksTabState::setSelectedStatus(const std::optional<QString>& status) {
    if (m_selectedStatus == status) {
        return;
    }
    m_selectedStatus = status;
    emit selectedStatusChanged();
    updateKey();
    updateRows();
}

void TasksTabState::setAssigneeFilter(const TaskAssigneeFilter& filter) {
    if (m_assigneeFilter == filter) {
        return;
    }
    m_assigneeFilter = filter;
    emit assigneeFilterChanged();
    updateKey();
    updateRows();
}

void TasksTabState::setListFilter(TaskListFilter filter) {
    if (m_listFilter == filter) {
        return;
    }
    m_listFilter = filter;
    emit listFilterChanged();
    updateKey();
}

void TasksTabState::contextChanged() {
    updateKey();
    updateRows();
}

bool TasksTabState::isSearching() const {
    return !m_searchText.trimmed().isEmpty();
}

std::optional<QStringList> TasksTabState::activeListIDs() const {
    const ListContext* context = m_context.currentContext ? m_context.currentContext() : nullptr;
    if (m_listFilter != TaskListFilter::current || !context) {
        return std::nullopt;
    }
    return QStringList{context->entry().list.id};
}

std::optional<qint64> TasksTabState::signedInUserID() const {
    const NVUser* user = m_context.signedInUser ? m_context.signedInUser() : nullptr;
    return user ? std::optional(user->id) : std::nullopt;
}

std::optional<QList<qint64>> TasksTabState::serverAssigneeIDs() const {
    return std::visit(Overloaded{
                          [](const TaskAssigneeFilter::Person& person) { return std::optional(QList{person.id}); },
                          [this](const TaskAssigneeFilter::Mine&) -> std::optional<QList<qint64>> {
                              const std::optional<qint64> user = signedInUserID();
                              return user ? std::optional(QList{*user}) : std::nullopt;
                          },
                          [](const auto&) -> std::optional<QList<qint64>> { return std::nullopt; },
                      },
                      m_assigneeFilter.value);
}

TaskQueryFilters TasksTabState::requestFilters() const {
    return {serverAssigneeIDs(), activeListIDs(),
            m_selectedStatus ? std::optional(QStringList{*m_selectedStatus}) : std::nullopt};
}

QString TasksTabState::refreshKey() const {
    const std::optional<QStringList> lists = activeListIDs();
    return QStringList{QString::number(signedInUserID().value_or(0)),
                       m_context.activeWorkspaceID ? m_context.activeWorkspaceID().value_or(QString()) : QString(),
                       lists ? lists->join(u',') : QStringLiteral("-"),
                       m_selectedStatus.value_or(QString()),
                       m_assigneeFilter.keyPart(),
                       m_listFilter == TaskListFilter::current ? QStringLiteral("current") : QStringLiteral("all"),
                       requestFilters().requestKey()}
        .join(u'|');
}

bool TasksTabState::matchesAssignee(const NVTaskSummary& task) const {
    return std::visit(
        Overloaded{
            [&task](const TaskAssigneeFilter::Person& person) { return hasAssignee(task, person.id); },
            [&task, this](const TaskAssigneeFilter::Mine&) {
                const std::optional<qint64> user = signedInUserID();
                return user && hasAssignee(task, *user);
            },
            [](const TaskAssigneeFilter::Anyone&) { return true; },
            [&task](const TaskAssigneeFilter::Unassigned&) { return !task.assignees || task.assignees->isEmpty(); },
        },
        m_assigneeFilter.value);
}

bool TasksTabState::matchesFilters(const NVTaskSummary& task) const {
    if (m_selectedStatus && (!task.status || task.status->status != *m_selectedStatus)) {
        return false;
    }
    return matchesAssignee(task);
}

QList<NVTaskSummary> TasksTabState::filteredTasks() const {
    QList<NVTaskSummary> tasks = m_store.tasks();
    tasks.removeIf([this](const NVTaskSummary& task) { return !matchesFilters(task); });
    return tasks;
}

QList<NVTaskSummary> TasksTabState::localSearchResults() const {
    return m_store.searchAssigned(m_searchText.trimmed());
}

std::optional<QList<NVTaskSummary>> TasksTabState::workspaceResults() const {
    const std::optional<QString>& query = m_store.workspaceSearchQuery();
    if (query && *query == TaskSearch::fold(m_searchText.trimmed())) {
        return m_store.workspaceSearchResults();
    }
    return std::nullopt;
}

QList<NVTaskSummary> TasksTabState::filteredSearchResults() const {
    QList<NVTaskSummary> results = workspaceResults().value_or(localSearchResults());
    results.removeIf([this](const NVTaskSummary& task) { return !matchesFilters(task); });
    return results;
}

TasksTabState::Groups TasksTabState::groups() const {
    const DayBounds today = DayBounds::at(m_context.clock());
    const auto end = static_cast<double>(DayBounds::endOfTodayAt(m_context.clock()).toMSecsSinceEpoch());
    Groups groups;
    for (const NVTaskSummary& task : filteredTasks()) {
        const std::optional<double> due = DueDate::milliseconds(task.dueDate);
        if (due && today.startOfToday && *due < *today.startOfToday) {
            groups.overdue.append(task);
        } else if (due && *due <= end) {
            groups.dueToday.append(task);
        } else {
            groups.later.append(task);
        }
    }
    return groups;
}

QList<NVTaskSummary> TasksTabState::menuSource() const {
    return workspaceResults().value_or(filteredTasks());
}

QStringList TasksTabState::availableStatuses() const {
    QStringList names;
    const ListContext* context = m_context.currentContext ? m_context.currentContext() : nullptr;
    if (m_listFilter == TaskListFilter::current && context && !context->statuses().isEmpty()) {
        for (const NVStatus& status : context->statuses()) {
            names.append(status.status);
        }
    } else {
        for (const NVTaskSummary& task : menuSource()) {
            if (task.status) {
                names.append(task.status->status);
            }
        }
    }
    names.removeDuplicates();
    const QCollator collator = nameOrder();
    std::sort(names.begin(), names.end(),
              [&collator](const QString& a, const QString& b) { return collator.compare(a, b) < 0; });
    return names;
}

QList<AssigneeChoice> TasksTabState::availableAssignees() const {
    QList<AssigneeChoice> choices;
    QSet<qint64> seen;
    const auto add = [&](qint64 id, const QString& name) {
        if (!seen.contains(id)) {
            seen.insert(id);
            choices.append({id, name});
        }
    };
    if (const ListContext* context = m_context.currentContext ? m_context.currentContext() : nullptr) {
        for (const Member& member : context->members()) {
            add(member.id, member.displayName());
        }
    }
    for (const NVTaskSummary& task : menuSource()) {
        for (const NVUser& assignee : task.assignees.value_or(QList<NVUser>())) {
            add(assignee.id, assignee.displayName());
        }
    }
    const QCollator collator = nameOrder();
    std::stable_sort(choices.begin(), choices.end(), [&collator](const AssigneeChoice& a, const AssigneeChoice& b) {
        return collator.compare(a.name, b.name) < 0;
    });
    return choices;
}

QCoro::Task<> TasksTabState::refresh() {
    setRowError(std::nullopt);
    const std::optional<qint64> userID = signedInUserID();
    if (m_assigneeFilter.is<TaskAssigneeFilter::Mine>() && !userID) {
        m_store.emptyTasks();
        co_return;
    }
    const std::optional<QString> workspaceID = m_context.activeWorkspaceID();
    QCoro::Task<> fetching = m_store.refresh(workspaceID, requestFilters(), stillActive(userID, workspaceID));
    co_await std::move(fetching);
}

std::function<bool()> TasksTabState::stillActive(std::optional<qint64> userID,
                                                 const std::optional<QString>& workspaceID) const {
    // Reads the rest of the program only, never this tab, which may be gone when the answer lands.
    return
        [signedInUser = m_context.signedInUser, activeWorkspaceID = m_context.activeWorkspaceID, userID, workspaceID] {
            const NVUser* user = signedInUser ? signedInUser() : nullptr;
            return (user ? std::optional(user->id) : std::nullopt) == userID && activeWorkspaceID() == workspaceID;
        };
}

QCoro::Task<> TasksTabState::complete(NVTaskSummary task) {
    return perform(std::move(task), Action::complete, {}, {});
}

QCoro::Task<> TasksTabState::moveDueDate(NVTaskSummary task, QuickTimes::DueDateMove move) {
    const QDateTime to = QuickTimes::dueDate(move, m_context.clock());
    return perform(std::move(task), Action::snooze, to, {});
}

QCoro::Task<> TasksTabState::updateStatus(NVTaskSummary task, QString status) {
    return perform(std::move(task), Action::updateStatus, {}, std::move(status));
}

QCoro::Task<> TasksTabState::perform(NVTaskSummary task, Action action, QDateTime dueDate, QString status) {
    const QString taskID = task.id;
    if (m_working.contains(taskID)) {
        co_return;
    }
    m_working.insert(taskID);
    emit workingChanged(taskID);
    QCoro::Task<std::optional<QString>> acting = action == Action::complete ? m_store.complete(std::move(task))
                                                 : action == Action::snooze
                                                     ? m_store.snooze(std::move(task), std::move(dueDate))
                                                     : m_store.updateStatus(std::move(task), std::move(status));
    QCoro::Task<std::optional<std::optional<QString>>> landing = awaitGuarded(LoadGuard(this), std::move(acting));
    const std::optional<std::optional<QString>> failure = co_await std::move(landing);
    if (!failure) {
        co_return;
    }
    if (*failure) {
        setRowError(**failure);
    }
    m_working.remove(taskID);
    emit workingChanged(taskID);
}

void TasksTabState::remind(const NVTaskSummary& task, QuickTimes::ReminderTime time) {
    if (m_context.reminders) {
        m_context.reminders->scheduleReminder(task.name, task.browserURL(m_context.webBaseURL),
                                              QuickTimes::fireDate(time, m_context.clock()));
    }
}

void TasksTabState::setRowError(const std::optional<QString>& error) {
    if (m_rowError == error) {
        return;
    }
    m_rowError = error;
    emit rowErrorChanged();
}

void TasksTabState::updateKey() {
    const QString key = refreshKey();
    if (key == m_refreshKey) {
        return;
    }
    m_refreshKey = key;
    emit refreshKeyChanged();
}

void TasksTabState::updateRows() {
    QList<MyDayRow> rows;
    if (isSearching()) {
        appendTree(rows, filteredSearchResults());
    } else {
        const Groups grouped = groups();
        const std::array<std::pair<QString, const QList<NVTaskSummary>*>, 3> sections{
            {{overdueTitle(), &grouped.overdue}, {dueTodayTitle(), &grouped.dueToday}, {laterTitle(), &grouped.later}}};
        for (const auto& [title, tasks] : sections) {
            if (!tasks->isEmpty()) {
                rows.append(MyDayRow::section(title));
                appendTree(rows, *tasks);
            }
        }
    }
    // Told every time: the row model works out what changed.
    m_rows = std::move(rows);
    emit rowsChanged();
}
