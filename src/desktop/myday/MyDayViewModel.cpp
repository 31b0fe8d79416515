#include "desktop/myday/MyDayViewModel.h"

#include "core/async/StartTask.h"
#include "core/compose/BranchNameFormatter.h"
#include "core/myday/DueDate.h"
#include "core/support/Overloaded.h"

#include <QDateTime>
#include <QLocale>

namespace {
// The fixed entries at the head of the assignee menu, in order.
const std::array<TaskAssigneeFilter, 3> fixedAssignees{TaskAssigneeFilter{TaskAssigneeFilter::Mine{}},
                                                       TaskAssigneeFilter{TaskAssigneeFilter::Anyone{}},
                                                       TaskAssigneeFilter{TaskAssigneeFilter::Unassigned{}}};

QString assigneeText(const TaskAssigneeFilter& filter) {
    return std::visit(Overloaded{
                          [](const TaskAssigneeFilter::Person& person) { return person.name; },
                          [](const TaskAssigneeFilter::Mine&) { return MyDayViewModel::tr("Assigned to me"); },
                          [](const TaskAssigneeFilter::Anyone&) { return MyDayViewModel::tr("Anyone"); },
                          [](const TaskAssigneeFilter::Unassigned&) { return MyDayViewModel::tr("Unassigned"); },
                      },
                      filter.value);
}

// The quick time of a menu entry: the enums list the entries in the order of QuickTimes' lists.
QuickTimes::ReminderTime reminderTime(MyDayViewModel::Reminder reminder) {
    return QuickTimes::reminderTimes.at(static_cast<qsizetype>(reminder));
}

QuickTimes::DueDateMove dueDateMove(MyDayViewModel::DueDateMove move) {
    return QuickTimes::dueDateMoves.at(static_cast<qsizetype>(move));
}
} // namespace

MyDayViewModel::MyDayViewModel(MyDayStore& store, TasksTabContext context, LinkActions& links,
                               const SettingsStore& settings, QObject* parent)
    : QObject(parent)
    , m_state(store, context)
    , m_context(std::move(context))
    , m_links(links)
    , m_settings(settings) {
    m_rows.setRows(m_state.rows());
    m_rows.setListStatuses(store.statusesByListID());
    connect(&m_state, &TasksTabState::rowsChanged, this, [this] {
        m_rows.setRows(m_state.rows());
        emit filtersChanged();
        emit contentChanged();
    });
    connect(&m_state, &TasksTabState::searchTextChanged, this, &MyDayViewModel::searchTextChanged);
    connect(&m_state, &TasksTabState::rowErrorChanged, this, &MyDayViewModel::rowErrorChanged);
    connect(&m_state, &TasksTabState::workingChanged, this, &MyDayViewModel::workingChanged);
    for (const auto changed : {&TasksTabState::selectedStatusChanged, &TasksTabState::assigneeFilterChanged,
                               &TasksTabState::listFilterChanged, &TasksTabState::refreshKeyChanged}) {
        connect(&m_state, changed, this, &MyDayViewModel::filtersChanged);
    }
    connect(&m_state, &TasksTabState::refreshKeyChanged, this, [this] {
        if (m_shown) {
            refresh();
        }
    });
    for (const auto changed :
         {&MyDayStore::isLoadingChanged, &MyDayStore::loadingMessageChanged, &MyDayStore::errorChanged}) {
        connect(&store, changed, this, &MyDayViewModel::contentChanged);
    }
    connect(&store, &MyDayStore::statusesByListIDChanged, this,
            [this] { m_rows.setListStatuses(m_state.store().statusesByListID()); });
}

MyDayViewModel::Content MyDayViewModel::content() const {
    if (!m_state.rows().isEmpty()) {
        return Rows;
    }
    if (isLoading()) {
        return Loading;
    }
    if (m_state.store().error()) {
        return Failed;
    }
    return m_state.isSearching() ? NoMatch : Empty;
}

QString MyDayViewModel::emptyStateTitle() const {
    const bool otherFilters = m_state.selectedStatus() || m_state.listFilter() == TaskListFilter::current;
    return std::visit(
        Overloaded{
            [](const TaskAssigneeFilter::Person& person) {
                return tr("No open tasks assigned to %1").arg(person.name);
            },
            [otherFilters](const TaskAssigneeFilter::Mine&) {
                return otherFilters ? tr("No open tasks match the current filters.")
                                    : tr("No open tasks assigned to you.");
            },
            [](const TaskAssigneeFilter::Anyone&) { return tr("No open tasks match the current filters."); },
            [](const TaskAssigneeFilter::Unassigned&) { return tr("No unassigned tasks match the current filters."); },
        },
        m_state.assigneeFilter().value);
}

QString MyDayViewModel::noMatchTitle() const {
    return tr("No tasks match “%1”").arg(searchText());
}

QString MyDayViewModel::statusChipText() const {
    return m_state.selectedStatus().value_or(tr("All statuses"));
}

QStringList MyDayViewModel::statusChoices() const {
    return QStringList{tr("All statuses")} + m_state.availableStatuses();
}

int MyDayViewModel::statusIndex() const {
    const std::optional<QString>& selected = m_state.selectedStatus();
    return selected ? static_cast<int>(m_state.availableStatuses().indexOf(*selected)) + 1 : 0;
}

QString MyDayViewModel::assigneeChipText() const {
    return assigneeText(m_state.assigneeFilter());
}

QStringList MyDayViewModel::assigneeChoices() const {
    QStringList choices;
    for (const TaskAssigneeFilter& filter : fixedAssignees) {
        choices.append(assigneeText(filter));
    }
    for (const AssigneeChoice& person : m_state.availableAssignees()) {
        choices.append(person.name);
    }
    return choices;
}

int MyDayViewModel::assigneeIndex() const {
    const TaskAssigneeFilter& filter = m_state.assigneeFilter();
    const auto* const fixed = std::find(fixedAssignees.cbegin(), fixedAssignees.cend(), filter);
    if (fixed != fixedAssignees.cend()) {
        return static_cast<int>(fixed - fixedAssignees.cbegin());
    }
    const auto* person = std::get_if<TaskAssigneeFilter::Person>(&filter.value);
    const QList<AssigneeChoice> people = m_state.availableAssignees();
    for (qsizetype index = 0; person && index < people.size(); ++index) {
        if (people[index].id == person->id) {
            return static_cast<int>(index + fixedAssignees.size());
        }
    }
    return -1;
}

QString MyDayViewModel::listChipText() const {
    return listChoices().value(listIndex());
}

QStringList MyDayViewModel::listChoices() const {
    QStringList choices{tr("All lists")};
    if (const ListContext* context = m_context.currentContext ? m_context.currentContext() : nullptr) {
        choices.append(context->entry().list.name);
    }
    return choices;
}

int MyDayViewModel::listIndex() const {
    return m_state.listFilter() == TaskListFilter::current && listChoices().size() > 1 ? 1 : 0;
}

QStringList MyDayViewModel::workingTaskIDs() const {
    QStringList ids;
    for (const MyDayRow& row : m_state.rows()) {
        if (row.kind == MyDayRow::Kind::task && m_state.isWorking(row.node.task.id)) {
            ids.append(row.node.task.id);
        }
    }
    return ids;
}

QString MyDayViewModel::remindMeTitle() {
    return QuickTimes::remindMeTitle();
}

QString MyDayViewModel::moveDueDateTitle() {
    return QuickTimes::moveDueDateTitle();
}

void MyDayViewModel::appear() {
    m_shown = false;
    m_state.setSearchText(QString());
    m_state.setSelectedStatus(std::nullopt);
    m_state.setAssigneeFilter(TaskAssigneeFilter{});
    m_state.setListFilter(TaskListFilter::all);
    m_shown = true;
    refresh();
}

void MyDayViewModel::refresh() {
    startTask(this, m_state.refresh());
}

void MyDayViewModel::chooseStatus(int index) {
    const QStringList statuses = m_state.availableStatuses();
    if (index == 0) {
        m_state.setSelectedStatus(std::nullopt);
    } else if (index > 0 && index <= statuses.size()) {
        m_state.setSelectedStatus(statuses.at(index - 1));
    }
}

void MyDayViewModel::chooseAssignee(int index) {
    const QList<AssigneeChoice> people = m_state.availableAssignees();
    const auto fixedCount = static_cast<int>(fixedAssignees.size());
    if (index >= 0 && index < fixedCount) {
        m_state.setAssigneeFilter(fixedAssignees.at(index));
    } else if (index >= fixedCount && index - fixedCount < people.size()) {
        const AssigneeChoice& person = people.at(index - fixedCount);
        m_state.setAssigneeFilter({TaskAssigneeFilter::Person{person.id, person.name}});
    }
}

void MyDayViewModel::chooseList(int index) {
    if (index == 0 || index == 1) {
        m_state.setListFilter(index == 0 ? TaskListFilter::all : TaskListFilter::current);
    }
}

bool MyDayViewModel::isSection(int row) const {
    const QList<MyDayRow>& rows = m_state.rows();
    return row < 0 || row >= rows.size() || rows[row].kind == MyDayRow::Kind::section;
}

int MyDayViewModel::nextTaskRow(int row, int step) const {
    const auto count = static_cast<int>(m_state.rows().size());
    for (int next = row + (step < 0 ? -1 : 1); next >= 0 && next < count; next += step < 0 ? -1 : 1) {
        if (!isSection(next)) {
            return next;
        }
    }
    return -1;
}

QString MyDayViewModel::rowDetails(const QString& dueDate, const QString& listName, const QString& status) const {
    QStringList parts;
    if (const std::optional<double> milliseconds = DueDate::milliseconds(dueDate)) {
        const QDateTime due = QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(*milliseconds)).toLocalTime();
        // The locale's own order of day, month and time, without the seconds nobody sets a task to.
        const QLocale locale;
        const QString time = locale.timeFormat(QLocale::ShortFormat).remove(QStringLiteral(":ss"));
        parts.append(locale.toString(due.date(), QLocale::ShortFormat) + u' ' + locale.toString(due.time(), time));
    }
    for (const QString& part : {listName, status}) {
        if (!part.isEmpty()) {
            parts.append(part);
        }
    }
    return parts.join(QStringLiteral(" · "));
}

void MyDayViewModel::loadStatuses(const QString& taskID) {
    const NVTaskSummary* found = task(taskID);
    if (found && found->list) {
        startTask(this, m_state.store().loadStatuses(found->list->id), [](const QList<NVStatus>&) {});
    }
}

void MyDayViewModel::complete(const QString& taskID) {
    if (const NVTaskSummary* found = task(taskID)) {
        startTask(this, m_state.complete(*found));
    }
}

QString MyDayViewModel::reminderLabel(Reminder reminder) {
    return QuickTimes::label(reminderTime(reminder));
}

QString MyDayViewModel::dueDateMoveLabel(DueDateMove move) {
    return QuickTimes::label(dueDateMove(move));
}

void MyDayViewModel::moveDueDate(const QString& taskID, DueDateMove move) {
    if (const NVTaskSummary* found = task(taskID)) {
        startTask(this, m_state.moveDueDate(*found, dueDateMove(move)));
    }
}

void MyDayViewModel::updateStatus(const QString& taskID, const QString& status) {
    if (const NVTaskSummary* found = task(taskID)) {
        startTask(this, m_state.updateStatus(*found, status));
    }
}

void MyDayViewModel::remind(const QString& taskID, Reminder reminder) {
    if (const NVTaskSummary* found = task(taskID)) {
        m_state.remind(*found, reminderTime(reminder));
    }
}

void MyDayViewModel::copyLink(const QString& taskID) {
    if (const NVTaskSummary* found = task(taskID)) {
        m_links.copyText(browserURL(*found));
    }
}

void MyDayViewModel::copyBranchName(const QString& taskID) {
    const NVTaskSummary* found = task(taskID);
    if (!found) {
        return;
    }
    const NVUser* user = m_context.signedInUser ? m_context.signedInUser() : nullptr;
    m_links.copyText(BranchNameFormatter::branchName(found->id, found->name, found->customTaskID,
                                                     user ? user->username : std::nullopt,
                                                     m_settings.settings().branchNameFormat));
}

void MyDayViewModel::openInNorvane(const QString& taskID) {
    if (const NVTaskSummary* found = task(taskID)) {
        m_links.openURL(QUrl(browserURL(*found)));
    }
}

const NVTaskSummary* MyDayViewModel::task(const QString& taskID) const {
    for (const MyDayRow& row : m_state.rows()) {
        if (row.kind == MyDayRow::Kind::task && row.node.task.id == taskID) {
            return &row.node.task;
        }
    }
    return nullptr;
}

QString MyDayViewModel::browserURL(const NVTaskSummary& task) const {
    return task.browserURL(m_context.webBaseURL);
}
