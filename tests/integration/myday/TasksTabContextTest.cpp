// The Tasks tab as the account and the workspace change, against norvane-sandbox: what a fetch brings
// lands only while the account and the workspace it was asked for are still the active ones, a
// switch of accounts clears the tab at once, and the shown tab fetches anew whenever the active
// workspace changes.
#include "core/app/MyDayContext.h"
#include "core/async/StartTask.h"
#include "core/myday/TasksTabState.h"
#include "support/AppStateFixture.h"
#include "support/SandboxDemo.h"
#include "support/TestMain.h"

#include <QJsonArray>
#include <QTest>
#include <memory>

namespace {
QString searchPath(const QString& workspaceID) {
    return QStringLiteral("/api/v2/team/%1/task").arg(workspaceID);
}

QString tokenItem(qint64 userID) {
    return QStringLiteral("norvane-token-") + QString::number(userID);
}
} // namespace

class TasksTabContextTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    std::unique_ptr<AppStateFixture> m_fixture;
    std::unique_ptr<TasksTabState> m_tab;

    AppState& app() { return m_fixture->app(); }
    MyDayStore& store() { return app().myDay(); }

    // Ada signed in, her preferred workspace Northwind, no list chosen; the request log empty.
    AppState& signedInAsAda() {
        m_fixture->writeSettings(
            {{"activeAccountID", SandboxDemo::firstUserID}, {"preferredWorkspaceID", SandboxDemo::northwindID}});
        AppState& signedIn = m_fixture->startSignedIn();
        [this] { QVERIFY(m_sandbox.clearRequests()); }();
        return signedIn;
    }

    // The tab, told of nothing: it fetches when the test says so.
    TasksTabState& tab() {
        m_tab = std::make_unique<TasksTabState>(store(), myDayContext(app()));
        return *m_tab;
    }

    // The tab as the popover shows it: told of each change of the central state, and fetching anew
    // whenever its refresh key changes.
    TasksTabState& shownTab() {
        TasksTabState* shown = &tab();
        followAppState(app(), *shown);
        QObject::connect(shown, &TasksTabState::refreshKeyChanged, shown,
                         [shown] { startTask(shown, shown->refresh()); });
        return *shown;
    }

    // Whether the sandbox has received a task search of the workspace since its log was cleared.
    bool searched(const QString& workspaceID) {
        for (const QJsonValue request : m_sandbox.requests()) {
            if (request[QStringLiteral("method")] == QStringLiteral("GET") &&
                request[QStringLiteral("path")] == searchPath(workspaceID)) {
                return true;
            }
        }
        return false;
    }

    // A fetch of the tab whose task search the sandbox holds until releaseHeld(), once the search has
    // arrived there.
    QCoro::Task<> heldFetch(TasksTabState& tasks, const QString& workspaceID) {
        [&] {
            QVERIFY(m_sandbox.addFault(SandboxFault::hold(searchPath(workspaceID)).forMethod(QStringLiteral("GET"))));
        }();
        QCoro::Task<> fetch = tasks.refresh();
        [&] { QTRY_VERIFY(searched(workspaceID)); }();
        return fetch;
    }

private slots:
    void initTestCase() { QVERIFY2(m_sandbox.start(), qPrintable(m_sandbox.errorString())); }

    void init() {
        m_fixture = AppStateFixture::withFirstUser(m_sandbox);
        QVERIFY(m_fixture);
        m_fixture->storeToken(SandboxDemo::secondUserID, m_sandbox.tokens().at(1).token);
        m_fixture->storeToken(SandboxDemo::hostileNamesUserID, SandboxDemo::hostileNamesToken);
    }

    void cleanup() {
        QVERIFY(m_sandbox.clearFaults());
        if (m_fixture) {
            m_fixture->memorySecrets().releaseReads(tokenItem(SandboxDemo::secondUserID));
        }
        m_tab.reset();
        m_fixture.reset();
    }

    void aFetchOfTheOldAccountThatLandsAfterASwitchLeavesTheNewAccountsTasks() {
        AppState& app = signedInAsAda();
        TasksTabState& tasks = tab();
        QCoro::Task<> adasFetch = heldFetch(tasks, SandboxDemo::northwindID);

        runTask(app.switchAccount(SandboxDemo::secondUserID));
        runTask(tasks.refresh());
        const QList<NVTaskSummary> bens = store().tasks();
        QVERIFY(!bens.isEmpty());

        QVERIFY(m_sandbox.releaseHeld());
        runTask(std::move(adasFetch));
        QCOMPARE(store().tasks(), bens);
        QVERIFY(!store().isLoading());
    }

    void anAnswerForAWorkspaceNoLongerActiveIsDropped() {
        AppState& app = signedInAsAda();
        TasksTabState& tasks = tab();
        QCoro::Task<> northwindFetch = heldFetch(tasks, SandboxDemo::northwindID);

        app.settings().set(&AppSettings::preferredWorkspaceID, std::optional(SandboxDemo::fabrikamID));
        runTask(tasks.refresh());
        const QList<NVTaskSummary> fabrikams = store().tasks();
        QVERIFY(!fabrikams.isEmpty());

        QVERIFY(m_sandbox.releaseHeld());
        runTask(std::move(northwindFetch));
        QCOMPARE(store().tasks(), fabrikams);
    }

    void ofTwoFetchesOfOneAccountTheLastToFinishWins() {
        signedInAsAda();
        TasksTabState& tasks = tab();
        tasks.setSelectedStatus(QStringLiteral("testing"));
        QCoro::Task<> first = heldFetch(tasks, SandboxDemo::northwindID);

        tasks.setSelectedStatus(QStringLiteral("new"));
        runTask(tasks.refresh());
        QVERIFY(!store().tasks().isEmpty());

        QVERIFY(m_sandbox.releaseHeld());
        runTask(std::move(first));
        QVERIFY(!store().tasks().isEmpty());
        for (const NVTaskSummary& task : store().tasks()) {
            QCOMPARE(task.status->status, QStringLiteral("testing"));
        }
    }

    void theOldAccountsTasksAndListAreGoneWhileTheNewTokenIsRead() {
        AppState& app = signedInAsAda();
        QVERIFY(m_fixture->chooseNorthwindList(SandboxDemo::inboxListID));
        runTask(tab().refresh());
        QVERIFY(!store().tasks().isEmpty());

        MemorySecretStore& secrets = m_fixture->memorySecrets();
        secrets.holdReads(tokenItem(SandboxDemo::secondUserID));
        QCoro::Task<> switching = app.switchAccount(SandboxDemo::secondUserID);
        QTRY_VERIFY(secrets.log().contains(QStringLiteral("read ") + tokenItem(SandboxDemo::secondUserID)));
        QVERIFY(store().tasks().isEmpty());
        QCOMPARE(app.currentContext(), nullptr);
        QVERIFY(!app.authState().user());

        secrets.releaseReads(tokenItem(SandboxDemo::secondUserID));
        runTask(std::move(switching));
        QCOMPARE(app.authState().user()->id, SandboxDemo::secondUserID);
    }

    void theTabFollowsASwitchToAnAccountWithoutARememberedLocation() {
        AppState& app = signedInAsAda();
        QVERIFY(m_fixture->chooseNorthwindList(SandboxDemo::inboxListID));
        runTask(shownTab().refresh());
        QVERIFY(m_sandbox.clearRequests());

        runTask(app.switchAccount(SandboxDemo::hostileNamesUserID));
        QTRY_VERIFY(searched(SandboxDemo::hostileNamesID));
    }

    void theTabFollowsAChangeOfTheDefaultWorkspace() {
        AppState& app = signedInAsAda();
        runTask(shownTab().refresh());
        QVERIFY(searched(SandboxDemo::northwindID));

        app.settings().set(&AppSettings::preferredWorkspaceID, std::optional(SandboxDemo::fabrikamID));
        QTRY_VERIFY(searched(SandboxDemo::fabrikamID));
    }

    void theTabFollowsTheWorkspacesWhenTheyArrive() {
        m_fixture->writeSettings({{"activeAccountID", SandboxDemo::firstUserID}});
        AppState& app = m_fixture->start();
        shownTab();
        runTask(app.bootstrap());
        QCOMPARE(app.activeWorkspaceID(), std::optional(SandboxDemo::northwindID));
        QTRY_VERIFY(searched(SandboxDemo::northwindID));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(TasksTabContextTest)
#include "TasksTabContextTest.moc"
