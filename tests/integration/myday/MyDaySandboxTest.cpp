// My Day as the central state builds it, against norvane-sandbox: what is fetched and how, and the
// row actions and what the list shows after each, accepted or refused.
#include "core/app/MyDayContext.h"
#include "core/myday/DueDate.h"
#include "core/myday/TaskOrdering.h"
#include "core/myday/TasksTabState.h"
#include "support/AppStateFixture.h"
#include "support/SandboxDemo.h"
#include "support/SyncHttpClient.h"
#include "support/TestMain.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QTest>

namespace {
const QString searchPath = QStringLiteral("/api/v2/team/%1/task").arg(SandboxDemo::northwindID);

SandboxFault onTaskChange(int status) {
    SandboxFault fault =
        SandboxFault::answer(QStringLiteral("/api/v2/task/*"), status).forMethod(QStringLiteral("PUT"));
    fault.err = QStringLiteral("The sandbox refuses this change");
    fault.ecode = QStringLiteral("SANDBOX_001");
    return fault;
}

QStringList ids(const QList<NVTaskSummary>& tasks) {
    QStringList ids;
    for (const NVTaskSummary& task : tasks) {
        ids.append(task.id);
    }
    return ids;
}

// The query items of a logged request, "name=value" in the order sent.
QStringList queryOf(const QJsonValue& request) {
    QStringList items;
    for (const QJsonValue item : request[QStringLiteral("query")].toArray()) {
        items.append(item[0].toString() + u'=' + item[1].toString());
    }
    return items;
}
} // namespace

class MyDaySandboxTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    std::unique_ptr<AppStateFixture> m_fixture;
    std::unique_ptr<TasksTabState> m_state;

    AppState& app() { return m_fixture->app(); }
    MyDayStore& store() { return app().myDay(); }
    TasksTabState& state() { return *m_state; }

    // The logged requests of `method` whose path matches `path`, since the test began.
    QJsonArray logged(const QString& method, const QString& path) {
        QJsonArray found;
        for (const QJsonValue request : m_sandbox.requests()) {
            if (request[QStringLiteral("method")] == method && request[QStringLiteral("path")] == path) {
                found.append(request);
            }
        }
        return found;
    }

    // The first user's tasks, fetched.
    void refreshed() {
        runTask(state().refresh());
        QCOMPARE(store().error(), std::nullopt);
        QCOMPARE(store().tasks().size(), SandboxDemo::firstUserOpenNorthwindTasks);
    }

    // A task of the list of tasks in the Support queue, whose statuses are the list's own.
    NVTaskSummary supportTask() {
        for (const NVTaskSummary& task : store().tasks()) {
            if (task.list && task.list->id == SandboxDemo::supportListID && !task.parentTaskID) {
                return task;
            }
        }
        return {};
    }

private slots:
    void initTestCase() { QVERIFY2(m_sandbox.start(), qPrintable(m_sandbox.errorString())); }

    void init() {
        m_fixture = AppStateFixture::withFirstUser(m_sandbox);
        QVERIFY(m_fixture);
        m_fixture->writeSettings(
            {{"activeAccountID", SandboxDemo::firstUserID}, {"preferredWorkspaceID", SandboxDemo::northwindID}});
        m_fixture->startSignedIn();
        QCOMPARE(app().activeWorkspaceID(), std::optional(SandboxDemo::northwindID));
        m_state = std::make_unique<TasksTabState>(store(), myDayContext(app()));
        QVERIFY(m_sandbox.clearRequests());
    }

    void cleanup() {
        m_state.reset();
        m_fixture.reset();
        QVERIFY(m_sandbox.clearFaults());
    }

    void aRefreshReadsEveryPageToTheEndInMyDaysOrder() {
        refreshed();
        const QJsonArray searches = logged(QStringLiteral("GET"), searchPath);
        QCOMPARE(searches.size(), 3);
        for (int page = 0; page < 3; ++page) {
            QCOMPARE(queryOf(searches[page]),
                     (QStringList{"include_closed=false", "subtasks=true", "order_by=due_date",
                                  QStringLiteral("page=%1").arg(page),
                                  QStringLiteral("assignees[]=%1").arg(SandboxDemo::firstUserID)}));
        }
        const DayBounds today = DayBounds::at(QDateTime::currentDateTimeUtc());
        int previous = TaskOrdering::overdue;
        for (const NVTaskSummary& task : store().tasks()) {
            const int rank = TaskOrdering::dueRank(task, today);
            QVERIFY(rank >= previous);
            previous = rank;
        }
        QCOMPARE(previous, TaskOrdering::undated);
        const QStringList all = ids(store().tasks());
        QCOMPARE(QSet<QString>(all.cbegin(), all.cend()).size(), all.size());
    }

    void theRowsHoldThreeSectionsSubtasksTwoLevelsDeepAndHostileNamesAsWritten() {
        refreshed();
        QStringList sections;
        int deepest = 0;
        QStringList names;
        for (const MyDayRow& row : state().rows()) {
            if (row.kind == MyDayRow::Kind::section) {
                sections.append(row.title);
            } else {
                deepest = std::max(deepest, row.node.depth);
                names.append(row.node.task.name);
            }
        }
        QCOMPARE(sections, (QStringList{"Overdue", "Due today", "Later"}));
        QVERIFY(deepest >= 1);
        QCOMPARE(names.size(), SandboxDemo::firstUserOpenNorthwindTasks);
        for (const QString& hostile : SandboxDemo::hostileTaskNames(m_sandbox.webUrl(u""))) {
            QVERIFY2(names.contains(hostile), qPrintable(hostile));
        }
    }

    void theFiltersGoToTheServiceAsQueryParameters() {
        QVERIFY(m_fixture->chooseNorthwindList(SandboxDemo::releaseListID));
        m_state = std::make_unique<TasksTabState>(store(), myDayContext(app()));
        QVERIFY(m_sandbox.clearRequests());
        state().setAssigneeFilter({TaskAssigneeFilter::Person{SandboxDemo::firstUserID, QStringLiteral("Ada")}});
        state().setSelectedStatus(QStringLiteral("testing"));
        state().setListFilter(TaskListFilter::current);
        runTask(state().refresh());
        const QJsonArray searches = logged(QStringLiteral("GET"), searchPath);
        QCOMPARE(searches.size(), 1);
        QCOMPARE(queryOf(searches[0]).mid(4),
                 (QStringList{QStringLiteral("assignees[]=%1").arg(SandboxDemo::firstUserID),
                              QStringLiteral("list_ids[]=%1").arg(SandboxDemo::releaseListID), "statuses[]=testing"}));
        QVERIFY(!store().tasks().isEmpty());
        for (const NVTaskSummary& task : store().tasks()) {
            QCOMPARE(task.list->id, SandboxDemo::releaseListID);
            QCOMPARE(task.status->status, QStringLiteral("testing"));
        }
        QCOMPARE(state().availableStatuses(), (QStringList{"open", "shipped", "testing"}));
    }

    void unassignedAsksWithoutAssigneeAndKeepsOnlyTasksOfNobody() {
        state().setAssigneeFilter({TaskAssigneeFilter::Unassigned{}});
        runTask(state().refresh());
        const QJsonArray searches = logged(QStringLiteral("GET"), searchPath);
        QVERIFY(!searches.isEmpty());
        for (const QJsonValue search : searches) {
            QVERIFY(queryOf(search).filter(QStringLiteral("assignees")).isEmpty());
        }
        const QList<NVTaskSummary> unassigned = state().filteredTasks();
        QVERIFY(!unassigned.isEmpty());
        QVERIFY(unassigned.size() < store().tasks().size());
        for (const NVTaskSummary& task : unassigned) {
            QVERIFY(!task.assignees || task.assignees->isEmpty());
        }
    }

    void completingClosesTheTaskOnTheServiceAndTakesItOffTheList() {
        refreshed();
        const NVTaskSummary task = supportTask();
        runTask(state().complete(task));
        QCOMPARE(state().rowError(), std::nullopt);
        QVERIFY(!ids(store().tasks()).contains(task.id));
        const QJsonArray changes = logged(QStringLiteral("PUT"), QStringLiteral("/api/v2/task/") + task.id);
        QCOMPARE(changes.size(), 1);
        QCOMPARE(changes[0][QStringLiteral("json")].toObject(), (QJsonObject{{"status", "solved"}}));
        runTask(state().refresh());
        QVERIFY(!ids(store().tasks()).contains(task.id));
        QCOMPARE(store().tasks().size(), SandboxDemo::firstUserOpenNorthwindTasks - 1);
    }

    void aListWithoutAClosedStatusCompletesWithItsLastStatus() {
        SyncHttpClient http;
        const HttpResult created = http.postJson(
            m_sandbox.apiUrl(QStringLiteral("list/%1/task").arg(SandboxDemo::loansListID)), m_sandbox.token(),
            {{QStringLiteral("name"), QStringLiteral("Lend the projector")},
             {QStringLiteral("assignees"), QJsonArray{SandboxDemo::firstUserID}}});
        QCOMPARE(created.status, 200);
        const QString id = created.json().value(QStringLiteral("id")).toString();
        runTask(state().refresh());
        const auto found = std::find_if(store().tasks().cbegin(), store().tasks().cend(),
                                        [&id](const NVTaskSummary& task) { return task.id == id; });
        QVERIFY(found != store().tasks().cend());
        QCOMPARE(found->status->status, QStringLiteral("requested"));

        runTask(state().complete(*found));
        QCOMPARE(state().rowError(), std::nullopt);
        const QJsonArray changes = logged(QStringLiteral("PUT"), QStringLiteral("/api/v2/task/") + id);
        QCOMPARE(changes.size(), 1);
        QCOMPARE(changes[0][QStringLiteral("json")].toObject(), (QJsonObject{{"status", "returned"}}));
        runTask(state().refresh());
        QVERIFY(!ids(store().tasks()).contains(id));
    }

    void aRefusedCompletionKeepsTheTaskAndShowsTheServicesMessage() {
        refreshed();
        QVERIFY(m_sandbox.addFault(onTaskChange(500)));
        const NVTaskSummary task = supportTask();
        runTask(state().complete(task));
        QVERIFY(state().rowError() && state().rowError()->contains(QStringLiteral("The sandbox refuses this change")));
        QVERIFY(ids(store().tasks()).contains(task.id));
        QVERIFY(!state().isWorking(task.id));
    }

    void movingTheDueDateSendsTheNewDateAndMovesTheTask() {
        refreshed();
        const NVTaskSummary task = store().tasks().first();
        runTask(state().moveDueDate(task, QuickTimes::DueDateMove::nextMonday));
        QCOMPARE(state().rowError(), std::nullopt);
        const QJsonObject sent =
            logged(QStringLiteral("PUT"), QStringLiteral("/api/v2/task/") + task.id)[0][QStringLiteral("json")]
                .toObject();
        QCOMPARE(sent.value(QStringLiteral("due_date_time")), QJsonValue(true));
        const auto monday = sent.value(QStringLiteral("due_date")).toInteger();
        QCOMPARE(QDateTime::fromMSecsSinceEpoch(monday).toLocalTime().time(), QTime(9, 0));
        const auto moved = std::find_if(store().tasks().cbegin(), store().tasks().cend(),
                                        [&task](const NVTaskSummary& each) { return each.id == task.id; });
        QVERIFY(moved != store().tasks().cend());
        QCOMPARE(DueDate::milliseconds(moved->dueDate), std::optional(static_cast<double>(monday)));
        QVERIFY(moved != store().tasks().cbegin());
        QCOMPARE(store().tasks().size(), SandboxDemo::firstUserOpenNorthwindTasks);
    }

    void aRefusedMoveLeavesTheDueDateAsItWas() {
        refreshed();
        QVERIFY(m_sandbox.addFault(onTaskChange(400)));
        const QList<NVTaskSummary> before = store().tasks();
        runTask(state().moveDueDate(before.first(), QuickTimes::DueDateMove::plusOneHour));
        QVERIFY(state().rowError() && state().rowError()->contains(QStringLiteral("The sandbox refuses this change")));
        QCOMPARE(store().tasks(), before);
    }

    void changingTheStatusKeepsTheTaskListedEvenWhenClosed() {
        refreshed();
        const NVTaskSummary task = supportTask();
        const QList<NVStatus> statuses = runTask(store().loadStatuses(task.list->id));
        QCOMPARE(statuses.last().status, QStringLiteral("solved"));
        runTask(state().updateStatus(task, QStringLiteral("solved")));
        QCOMPARE(state().rowError(), std::nullopt);
        const auto changed = std::find_if(store().tasks().cbegin(), store().tasks().cend(),
                                          [&task](const NVTaskSummary& each) { return each.id == task.id; });
        QVERIFY(changed != store().tasks().cend());
        QCOMPARE(changed->status->status, QStringLiteral("solved"));
        runTask(state().refresh());
        QVERIFY(!ids(store().tasks()).contains(task.id));
    }

    void aRefusedStatusChangeShowsTheMessageAndKeepsTheStatus() {
        refreshed();
        QVERIFY(m_sandbox.addFault(onTaskChange(403)));
        const NVTaskSummary task = supportTask();
        runTask(state().updateStatus(task, QStringLiteral("waiting on customer")));
        QVERIFY(state().rowError() && state().rowError()->contains(QStringLiteral("The sandbox refuses this change")));
        const auto kept = std::find_if(store().tasks().cbegin(), store().tasks().cend(),
                                       [&task](const NVTaskSummary& each) { return each.id == task.id; });
        QCOMPARE(kept->status, task.status);
    }

    void aCompletionDuringASlowRefreshIsNotUndoneByIt() {
        refreshed();
        const NVTaskSummary task = supportTask();
        // The statuses are known, so the completion is one request, well inside the slow refresh.
        runTask(store().loadStatuses(task.list->id));
        QVERIFY(m_sandbox.addFault(SandboxFault::delay(searchPath, 800).forMethod(QStringLiteral("GET"))));
        QCoro::Task<> refreshing = state().refresh();
        runTask(state().complete(task));
        QVERIFY(store().isLoading());
        runTask(std::move(refreshing));
        QVERIFY(!store().isLoading());
        QVERIFY(!ids(store().tasks()).contains(task.id));
        QCOMPARE(store().tasks().size(), SandboxDemo::firstUserOpenNorthwindTasks - 1);
    }

    void aRefreshDuringASlowCompletionLosesTheTaskWhenTheCompletionEnds() {
        refreshed();
        const NVTaskSummary task = supportTask();
        runTask(store().loadStatuses(task.list->id));
        // A refresh of one short page, well inside the slow completion.
        state().setSelectedStatus(task.status->status);
        QVERIFY(m_sandbox.addFault(
            SandboxFault::delay(QStringLiteral("/api/v2/task/*"), 800).forMethod(QStringLiteral("PUT"))));
        QCoro::Task<> completing = state().complete(task);
        runTask(state().refresh());
        QVERIFY(state().isWorking(task.id));
        QVERIFY(ids(store().tasks()).contains(task.id));
        runTask(std::move(completing));
        QVERIFY(!ids(store().tasks()).contains(task.id));
        QCOMPARE(state().rowError(), std::nullopt);
    }

    void remindMeKeepsAReminderOfTheTaskAndChangesNothingOnTheService() {
        refreshed();
        const NVTaskSummary task = store().tasks().first();
        state().remind(task, QuickTimes::ReminderTime::in1Hour);
        QTRY_COMPARE(app().notifications().reminders().reminders().size(), 1);
        const Reminder reminder = app().notifications().reminders().reminders().first();
        QCOMPARE(reminder.taskName, task.name);
        QCOMPARE(reminder.taskURL, std::optional(m_sandbox.webUrl(QStringLiteral("/t/") + task.id).toString()));
        QVERIFY(logged(QStringLiteral("PUT"), QStringLiteral("/api/v2/task/") + task.id).isEmpty());
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(MyDaySandboxTest)
#include "MyDaySandboxTest.moc"
