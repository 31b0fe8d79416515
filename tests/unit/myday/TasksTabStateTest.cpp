// The Tasks tab's logic over a session that answers from a table: what goes to the service and what
// is filtered here, the refresh key, sections and search rows, the filter menus and the row actions.
#include "core/myday/TasksTabState.h"
#include "support/HierarchyTesting.h"
#include "support/ManualWallClock.h"
#include "support/MyDayTesting.h"
#include "support/RecordingNotifier.h"
#include "support/TestMain.h"

#include <QJsonDocument>
#include <QSignalSpy>
#include <QTest>
#include <memory>

using namespace HierarchyTesting;
using namespace MyDayTesting;

namespace {
const QString tasksPath = QStringLiteral("team/w/task");
constexpr qint64 me = 11;
constexpr qint64 other = 22;

NVTaskSummary assigned(NVTaskSummary task, QList<NVUser> assignees, const QString& status = QStringLiteral("open")) {
    task.assignees = std::move(assignees);
    task.status = NVStatus{status, std::nullopt, std::nullopt};
    return task;
}

QByteArray pageOf(const QList<NVTaskSummary>& tasks) {
    QJsonArray array;
    for (const NVTaskSummary& task : tasks) {
        array.append(task.toJson());
    }
    return QJsonDocument(QJsonObject{{"tasks", array}, {"last_page", true}}).toJson();
}

QStringList rowTexts(const QList<MyDayRow>& rows) {
    QStringList texts;
    for (const MyDayRow& row : rows) {
        texts.append(row.kind == MyDayRow::Kind::section ? QStringLiteral("# ") + row.title
                                                         : QString(row.node.depth, u'>') + row.node.task.id);
    }
    return texts;
}
} // namespace

class TasksTabStateTest : public QObject {
    Q_OBJECT

    const QDateTime m_now = localNoon();
    std::unique_ptr<FakeClient> m_fake;
    std::unique_ptr<MyDayStore> m_store;
    std::optional<NVUser> m_user;
    std::unique_ptr<ListContext> m_context;
    RecordingNotifier m_notifier;

    std::unique_ptr<TasksTabState> makeState() {
        TasksTabContext context{
            .signedInUser = [this] { return m_user ? &*m_user : nullptr; },
            .activeWorkspaceID = [] { return std::optional(QStringLiteral("w")); },
            .currentContext = [this] { return m_context.get(); },
            .reminders = &m_notifier,
            .webBaseURL = QUrl(QStringLiteral("https://app.norvane.invalid")),
            .clock = [now = m_now] { return now; },
        };
        return std::make_unique<TasksTabState>(*m_store, context);
    }

    // The service's answer to every page.
    void serve(const QList<NVTaskSummary>& tasks) { m_fake->service.answer(tasksPath, pageOf(tasks)); }

private slots:
    void init() {
        m_fake = std::make_unique<FakeClient>();
        m_store = std::make_unique<MyDayStore>(m_fake->client, [now = m_now] { return now; });
        m_user = user(me, QStringLiteral("Me"));
        m_context.reset();
        m_notifier = RecordingNotifier();
    }

    void requestKeyOfAnAllAbsentFilterIsThreeHyphens() { QCOMPARE(TaskQueryFilters().requestKey(), "-|-|-"); }

    void emptyArraysGiveTheSameRequestKeyAsAbsentOnes() {
        const TaskQueryFilters empty(QList<qint64>{}, QStringList{}, QStringList{});
        QCOMPARE(empty.requestKey(), TaskQueryFilters().requestKey());
        QCOMPARE(empty, TaskQueryFilters());
        QCOMPARE(TaskQueryFilters(QList<qint64>{3, 1}, QStringList{"b", "a"}, QStringList{"x"}).requestKey(),
                 "3,1|b,a|x");
    }

    void theRefreshKeyNamesEverythingThatFetchesAnew() {
        auto state = makeState();
        QCOMPARE(state->refreshKey(), QStringLiteral("11|w|-||mine|all|11|-|-"));
        state->setAssigneeFilter({TaskAssigneeFilter::Person{42, QStringLiteral("Ben")}});
        state->setSelectedStatus(QStringLiteral("review"));
        QCOMPARE(state->refreshKey(), QStringLiteral("11|w|-|review|person:42|all|42|-|review"));
    }

    void unassignedSendsNoAssigneeAndHidesAssignedTasksLocally() {
        serve({assigned(task("mine"), {user(me)}), assigned(task("nobody"), {}), task("absent")});
        auto state = makeState();
        state->setAssigneeFilter({TaskAssigneeFilter::Unassigned{}});
        runTask(state->refresh());
        QVERIFY(!m_fake->service.queries.last().contains(QStringLiteral("assignees")));
        QCOMPARE(ids(state->filteredTasks()), (QStringList{"absent", "nobody"}));
    }

    void mineSendsTheSignedInUserAndAnyoneSendsNobody() {
        serve({});
        auto state = makeState();
        runTask(state->refresh());
        QVERIFY(m_fake->service.queries.last().endsWith(QStringLiteral("assignees[]=11")));
        state->setAssigneeFilter({TaskAssigneeFilter::Anyone{}});
        runTask(state->refresh());
        QVERIFY(!m_fake->service.queries.last().contains(QStringLiteral("assignees")));
    }

    void mineWhileSignedOutShowsAnEmptyListAndMakesNoRequest() {
        serve({task("a")});
        auto firstState = makeState();
        runTask(firstState->refresh());
        QCOMPARE(m_store->tasks().size(), 1);
        m_user.reset();
        auto state = makeState();
        runTask(state->refresh());
        QVERIFY(m_store->tasks().isEmpty());
        QVERIFY(state->rows().isEmpty());
        QCOMPARE(m_fake->service.paths.size(), 1);
        QCOMPARE(state->serverAssigneeIDs(), std::nullopt);
    }

    void aChangeOfSearchTextAloneCausesNoRequest() {
        serve({task("a", "Alpha"), task("b", "Beta")});
        auto state = makeState();
        state->setAssigneeFilter({TaskAssigneeFilter::Anyone{}});
        runTask(state->refresh());
        QSignalSpy keyChanges(state.get(), &TasksTabState::refreshKeyChanged);
        state->setSearchText(QStringLiteral("alp"));
        QCOMPARE(rowTexts(state->rows()), QStringList{"a"});
        state->setSearchText(QStringLiteral("   "));
        QCOMPARE(keyChanges.count(), 0);
        QCOMPARE(m_fake->service.paths.size(), 1);
        QVERIFY(!state->isSearching());
    }

    void clearingTheSearchClearsTheRowError() {
        serve({assigned(task("a"), {user(me)})});
        m_fake->service.answer(QStringLiteral("list/l1"), 500, R"({"err":"No","ECODE":"X"})");
        auto state = makeState();
        runTask(state->refresh());
        NVTaskSummary listed = m_store->tasks().first();
        listed.list = NVTaskSummary::ListRef{QStringLiteral("l1"), std::nullopt};
        state->setSearchText(QStringLiteral("a"));
        runTask(state->complete(listed));
        QVERIFY(state->rowError());
        state->setSearchText(QString());
        QCOMPARE(state->rowError(), std::nullopt);
    }

    void withListFilterCurrentAndNoContextTheFetchIsNotLimitedAndStatusesComeFromTheTasks() {
        serve({assigned(task("a"), {user(me)}, "review"), assigned(task("b"), {user(me)}, "Open"),
               assigned(task("c"), {user(me)}, "review")});
        auto state = makeState();
        state->setListFilter(TaskListFilter::current);
        runTask(state->refresh());
        QVERIFY(!m_fake->service.queries.last().contains(QStringLiteral("list_ids")));
        QCOMPARE(state->activeListIDs(), std::nullopt);
        QCOMPARE(state->availableStatuses(), (QStringList{"Open", "review"}));
    }

    void withListFilterCurrentAndAContextTheFetchIsLimitedToItsListAndItsStatuses() {
        m_context = std::make_unique<ListContext>(
            entryWithSpaceStatuses({NVStatus{QStringLiteral("to do"), std::nullopt, std::nullopt},
                                    NVStatus{QStringLiteral("Done"), std::nullopt, std::nullopt}}));
        serve({assigned(task("a"), {user(me)}, "review")});
        auto state = makeState();
        state->setListFilter(TaskListFilter::current);
        runTask(state->refresh());
        QVERIFY(m_fake->service.queries.last().endsWith(QStringLiteral("list_ids[]=l1")));
        QCOMPARE(state->availableStatuses(), (QStringList{"Done", "to do"}));
    }

    void theStatusFilterNeedsAnExactStatusName() {
        serve({assigned(task("a"), {user(me)}, "review"), assigned(task("b"), {user(me)}, "Review"),
               assigned(task("c"), {user(me)})});
        auto state = makeState();
        runTask(state->refresh());
        state->setSelectedStatus(QStringLiteral("review"));
        QCOMPARE(ids(state->filteredTasks()), QStringList{"a"});
        NVTaskSummary noStatus = task("d");
        noStatus.assignees = QList<NVUser>{user(me)};
        QVERIFY(!state->matchesFilters(noStatus));
    }

    void aPersonFilterPassesTasksOfThatPersonOnly() {
        auto state = makeState();
        state->setAssigneeFilter({TaskAssigneeFilter::Person{other, QStringLiteral("Ben")}});
        QVERIFY(state->matchesFilters(assigned(task("a"), {user(me), user(other)})));
        QVERIFY(!state->matchesFilters(assigned(task("b"), {user(me)})));
        QVERIFY(!state->matchesFilters(task("c")));
    }

    void atMidnightTheTasksDueTodayMoveToOverdue() {
        ManualWallClock time(QDateTime(QDate(2026, 6, 17), QTime(22, 0), Qt::LocalTime));
        const auto on = [](int day, int hour) { return QDateTime(QDate(2026, 6, day), QTime(hour, 0), Qt::LocalTime); };
        serve({assigned(dueAt("yesterday", on(16, 10)), {user(me)}), assigned(dueAt("today", on(17, 15)), {user(me)}),
               assigned(dueAt("tomorrow", on(18, 9)), {user(me)})});
        MyDayStore store(m_fake->client, time.clock());
        DayChange day(time.clock(), time.alarm());
        TasksTabState state(store, {.signedInUser = [this] { return &*m_user; },
                                    .activeWorkspaceID = [] { return std::optional(QStringLiteral("w")); },
                                    .clock = time.clock(),
                                    .dayChange = &day});
        runTask(state.refresh());
        QCOMPARE(rowTexts(state.rows()),
                 (QStringList{"# Overdue", "yesterday", "# Due today", "today", "# Later", "tomorrow"}));
        QSignalSpy redrawn(&state, &TasksTabState::rowsChanged);
        time.advanceTo(on(18, 0));
        QCOMPARE(redrawn.size(), 1);
        QCOMPARE(rowTexts(state.rows()), (QStringList{"# Overdue", "yesterday", "today", "# Due today", "tomorrow"}));
        // Nothing was asked of the service for it.
        QCOMPARE(m_fake->service.queries.size(), 1);
    }

    void theSectionsHoldTheirTasksInTreeFormAndEmptyOnesAreLeftOut() {
        NVTaskSummary parent = assigned(dueAt("p", m_now.addDays(-1)), {user(me)});
        NVTaskSummary sub = assigned(dueAt("s", m_now.addDays(-2)), {user(me)});
        sub.parentTaskID = QStringLiteral("p");
        NVTaskSummary strayed = assigned(dueAt("t", m_now.addDays(3)), {user(me)});
        strayed.parentTaskID = QStringLiteral("p");
        serve({parent, sub, strayed, assigned(task("u"), {user(me)})});
        auto state = makeState();
        runTask(state->refresh());
        QCOMPARE(rowTexts(state->rows()), (QStringList{"# Overdue", "p", ">s", "# Later", "t", "u"}));
        const TasksTabState::Groups groups = state->groups();
        QCOMPARE(ids(groups.overdue), (QStringList{"s", "p"}));
        QVERIFY(groups.dueToday.isEmpty());
        QCOMPARE(ids(groups.later), (QStringList{"t", "u"}));
    }

    void theAssigneeMenuListsEachPersonOnceSortedByLabel() {
        serve(
            {assigned(task("a"), {user(other, QStringLiteral("ben")), user(33, std::nullopt, QStringLiteral("al@x"))}),
             assigned(task("b"), {user(me, QStringLiteral("Me")), user(44)})});
        auto state = makeState();
        state->setAssigneeFilter({TaskAssigneeFilter::Anyone{}});
        runTask(state->refresh());
        QCOMPARE(state->availableAssignees(),
                 (QList<AssigneeChoice>{{33, "al@x"}, {other, "ben"}, {me, "Me"}, {44, "User 44"}}));
    }

    void aRowActionReportsItsFailureAsTheRowErrorAndSuccessTellsTheStoresWatchers() {
        serve({assigned(task("a"), {user(me)})});
        auto state = makeState();
        runTask(state->refresh());
        QSignalSpy changed(m_store.get(), &MyDayStore::taskChanged);
        m_fake->service.answer(QStringLiteral("task/a"), 400, R"({"err":"Status not found","ECODE":"X"})");
        runTask(state->updateStatus(m_store->tasks().first(), QStringLiteral("nope")));
        QVERIFY(state->rowError() && state->rowError()->contains(QStringLiteral("Status not found")));
        QCOMPARE(changed.count(), 0);
        m_fake->service.answer(QStringLiteral("task/a"), R"({"id":"a","name":"A"})");
        runTask(state->moveDueDate(m_store->tasks().first(), QuickTimes::DueDateMove::plusOneHour));
        QCOMPARE(changed.count(), 1);
        QCOMPARE(m_fake->service.bodies.last(),
                 QStringLiteral(R"({"due_date":%1,"due_date_time":true})").arg(millis(m_now.addSecs(3600))).toUtf8());
    }

    void aWorkingRowRunsOneActionAtATime() {
        serve({assigned(task("a"), {user(me)})});
        auto state = makeState();
        runTask(state->refresh());
        m_fake->service.answer(QStringLiteral("task/a"), R"({"id":"a","name":"A"})");
        m_fake->service.hold(QStringLiteral("task/a"));
        QCoro::Task<> first = state->updateStatus(m_store->tasks().first(), QStringLiteral("one"));
        QVERIFY(state->isWorking(QStringLiteral("a")));
        runTask(state->updateStatus(m_store->tasks().first(), QStringLiteral("two")));
        m_fake->service.release(QStringLiteral("task/a"));
        runTask(std::move(first));
        QVERIFY(!state->isWorking(QStringLiteral("a")));
        QCOMPARE(m_fake->service.paths.count(QStringLiteral("task/a")), 1);
    }

    void remindMeSchedulesALocalReminderWithTheTasksAddress() {
        auto state = makeState();
        NVTaskSummary withURL = task("a", "Write notes");
        withURL.url = QStringLiteral("https://example.invalid/t/a");
        state->remind(withURL, QuickTimes::ReminderTime::in3Hours);
        state->remind(task("b", "No address"), QuickTimes::ReminderTime::tomorrowMorning);
        QCOMPARE(m_notifier.reminders.size(), 2);
        QCOMPARE(m_notifier.reminders[0],
                 (RecordingNotifier::Reminder{"Write notes", withURL.url, m_now.addSecs(10800)}));
        QCOMPARE(m_notifier.reminders[1].taskURL, std::optional(QStringLiteral("https://app.norvane.invalid/t/b")));
        QCOMPARE(m_notifier.reminders[1].fireDate, QDateTime(m_now.date().addDays(1), QTime(9, 0), Qt::LocalTime));
        QVERIFY(m_fake->service.paths.isEmpty());
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(TasksTabStateTest)
#include "TasksTabStateTest.moc"
