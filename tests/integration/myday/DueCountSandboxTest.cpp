// The tray icon's due count as the central state builds it, against norvane-sandbox: whose tasks it
// counts, that it asks nothing while hidden or signed out, that an answer for an account no longer
// active is dropped, that the Tasks tab's own fetches leave it alone, that a completed task leaves
// it, and that at midnight it counts the tasks due the new day.
#include "core/api/Endpoints.h"
#include "core/app/MyDayContext.h"
#include "core/myday/TaskOrdering.h"
#include "core/myday/TasksTabState.h"
#include "support/AppStateFixture.h"
#include "support/SandboxDemo.h"
#include "support/TestMain.h"

#include <QTest>

namespace {
const QString searchPath = QStringLiteral("/api/v2/team/%1/task").arg(SandboxDemo::northwindID);

bool hasAssignee(const NVTaskSummary& task, qint64 userID) {
    const QList<NVUser> assignees = task.assignees.value_or(QList<NVUser>());
    return std::any_of(assignees.cbegin(), assignees.cend(),
                       [userID](const NVUser& user) { return user.id == userID; });
}

bool dueByTonight(const NVTaskSummary& task, const QDateTime& now) {
    return TaskOrdering::dueRank(task, DayBounds::at(now)) <= TaskOrdering::dueToday;
}

// How many of `tasks` are due by the end of the day of `now`, of `userID` when given.
int dueByTonight(const QList<NVTaskSummary>& tasks, std::optional<qint64> userID = std::nullopt,
                 const QDateTime& now = QDateTime::currentDateTimeUtc()) {
    return static_cast<int>(std::count_if(tasks.cbegin(), tasks.cend(), [userID, now](const NVTaskSummary& task) {
        return dueByTonight(task, now) && (!userID || hasAssignee(task, *userID));
    }));
}
} // namespace

class DueCountSandboxTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    std::unique_ptr<AppStateFixture> m_fixture;

    AppState& app() { return m_fixture->app(); }
    DueCountQuery& query() { return app().dueCount(); }

    // Every open task of Northwind, whoever's, as the signed-in user reads them.
    QList<NVTaskSummary> everyOpenTask() {
        return runTask(Endpoints::getAllTeamTasks(app().client(), SandboxDemo::northwindID, {}));
    }

    qsizetype searches() {
        qsizetype count = 0;
        for (const QJsonValue request : m_sandbox.requests()) {
            count += request[QStringLiteral("path")] == searchPath ? 1 : 0;
        }
        return count;
    }

private slots:
    void initTestCase() { QVERIFY2(m_sandbox.start(), qPrintable(m_sandbox.errorString())); }

    void init() {
        m_fixture = AppStateFixture::withFirstUser(m_sandbox);
        QVERIFY(m_fixture);
        m_fixture->writeSettings({{"activeAccountID", SandboxDemo::firstUserID},
                                  {"preferredWorkspaceID", SandboxDemo::northwindID},
                                  {"showDueCountBadge", true}});
        m_fixture->startSignedIn();
        QCOMPARE(app().activeWorkspaceID(), std::optional(SandboxDemo::northwindID));
        QVERIFY(m_sandbox.clearRequests());
    }

    void cleanup() {
        m_fixture.reset();
        QVERIFY(m_sandbox.clearFaults());
    }

    void itCountsTheUsersTasksDueByTonightOverdueIncluded() {
        QVERIFY(runTask(query().refresh()));
        const QList<NVTaskSummary> all = everyOpenTask();
        const int mine = dueByTonight(all, SandboxDemo::firstUserID);
        QVERIFY(mine > 0);
        QCOMPARE(query().dueCount(), mine);
        // Others have tasks due as well, and later and undated ones exist: none of them count.
        QVERIFY(dueByTonight(all) > mine);
        QVERIFY(mine < std::count_if(
                           all.cbegin(), all.cend(),
                           [](const NVTaskSummary& task) { return hasAssignee(task, SandboxDemo::firstUserID); }));
    }

    void atMidnightTheTasksDueTomorrowAreCountedWithoutAskingAgain() {
        m_fixture = AppStateFixture::withFirstUser(m_sandbox);
        QVERIFY(m_fixture);
        const QDateTime midnight(QDate::currentDate().addDays(1), QTime(0, 0), Qt::LocalTime);
        m_fixture->wallClock().jumpTo(midnight.addSecs(-60));
        m_fixture->useWallClockTime();
        m_fixture->writeSettings({{"activeAccountID", SandboxDemo::firstUserID},
                                  {"preferredWorkspaceID", SandboxDemo::northwindID},
                                  {"showDueCountBadge", true}});
        m_fixture->startSignedIn();
        QVERIFY(runTask(query().refresh()));
        const QList<NVTaskSummary> all = everyOpenTask();
        QCOMPARE(query().dueCount(), dueByTonight(all, SandboxDemo::firstUserID, midnight.addSecs(-60)));
        const qsizetype asked = searches();

        m_fixture->wallClock().advanceTo(midnight);
        const int tomorrows = dueByTonight(all, SandboxDemo::firstUserID, midnight);
        QVERIFY(tomorrows > dueByTonight(all, SandboxDemo::firstUserID, midnight.addSecs(-60)));
        QCOMPARE(query().dueCount(), tomorrows);
        QCOMPARE(searches(), asked);
    }

    void hiddenOrSignedOutItAsksNothing() {
        app().settings().set(&AppSettings::showDueCountBadge, false);
        QVERIFY(!runTask(query().refresh()));
        app().signOut();
        app().settings().set(&AppSettings::showDueCountBadge, true);
        QVERIFY(!runTask(query().refresh()));
        QCOMPARE(searches(), 0);
        QCOMPARE(query().dueCount(), 0);
    }

    void aFetchThatLandsAfterAnAccountSwitchIsDropped() {
        const int adas = dueByTonight(everyOpenTask(), SandboxDemo::firstUserID);
        QVERIFY(adas > 0);
        m_fixture->storeToken(SandboxDemo::secondUserID, m_sandbox.token(1));
        QVERIFY(m_sandbox.addFault(SandboxFault::delay(searchPath, 1500).forMethod(QStringLiteral("GET"))));
        QCoro::Task<bool> forAda = query().refresh();
        runTask(app().switchAccount(SandboxDemo::secondUserID));
        QCOMPARE(app().authState().user()->id, SandboxDemo::secondUserID);
        QVERIFY(!runTask(std::move(forAda)));
        QCOMPARE(query().dueCount(), 0);

        QCOMPARE(app().activeWorkspaceID(), std::optional(SandboxDemo::northwindID));
        QVERIFY(runTask(query().refresh()));
        const int bens = dueByTonight(everyOpenTask(), SandboxDemo::secondUserID);
        QCOMPARE(query().dueCount(), bens);
        QVERIFY(bens != adas);
    }

    void aFetchAfterTheTasksTabChangedItsFiltersStillCountsOnlyTheUsersTasks() {
        QVERIFY(runTask(query().refresh()));
        const int mine = query().dueCount();
        TasksTabState tab(app().myDay(), myDayContext(app()));
        tab.setAssigneeFilter({TaskAssigneeFilter::Anyone{}});
        runTask(tab.refresh());
        QVERIFY(dueByTonight(app().myDay().tasks()) > mine);
        QCOMPARE(query().dueCount(), mine);
        QVERIFY(runTask(query().refresh()));
        QCOMPARE(query().dueCount(), mine);
    }

    void completingATaskDueTodayLowersTheCount() {
        QVERIFY(runTask(query().refresh()));
        const int before = query().dueCount();
        TasksTabState tab(app().myDay(), myDayContext(app()));
        runTask(tab.refresh());
        const QList<NVTaskSummary>& tasks = app().myDay().tasks();
        const auto dueToday = std::find_if(tasks.cbegin(), tasks.cend(), [](const NVTaskSummary& task) {
            return TaskOrdering::dueRank(task, DayBounds::at(QDateTime::currentDateTimeUtc())) ==
                   TaskOrdering::dueToday;
        });
        QVERIFY(dueToday != tasks.cend());
        runTask(tab.complete(*dueToday));
        QCOMPARE(tab.rowError(), std::nullopt);
        QTRY_COMPARE_WITH_TIMEOUT(query().dueCount(), before - 1, 20'000);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(DueCountSandboxTest)
#include "DueCountSandboxTest.moc"
