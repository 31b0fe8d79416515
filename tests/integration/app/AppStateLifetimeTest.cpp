#include "core/compose/AttachmentStaging.h"
#include "support/AppStateFixture.h"
#include "support/SandboxDemo.h"
#include "support/TemporaryFolderTesting.h"
#include "support/TestMain.h"

#include <QTest>

// The central state ends, as when NorvaneBar quits, while its work is under way against
// norvane-sandbox: every task it started comes to an end, touches nothing that is gone and leaves
// nothing behind (the sanitizer build checks the last two), also when a task wakes from a wait after
// the state has gone.
class AppStateLifetimeTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    std::unique_ptr<AppStateFixture> m_fixture;

    // Starts the task tied to `watcher`, so the test sees whether it ended without the state.
    static void startWatched(QObject& watcher, QCoro::Task<> task, bool& ended) {
        startTask(&watcher, std::move(task), [&ended] { ended = true; });
    }

    static QJsonObject releaseLocation() {
        return {{"workspaceID", SandboxDemo::northwindID},
                {"listID", SandboxDemo::releaseListID},
                {"listName", "Releases"},
                {"pathDescription", "Product"}};
    }

private slots:
    void initTestCase() { QVERIFY2(m_sandbox.start(), qPrintable(m_sandbox.errorString())); }

    void init() {
        m_fixture = AppStateFixture::withFirstUser(m_sandbox);
        QVERIFY(m_fixture);
        m_fixture->writeSettings({{"activeAccountID", SandboxDemo::firstUserID}, {"lastLocation", releaseLocation()}});
    }

    void cleanup() { m_fixture.reset(); }

    void endingDuringTheValidationEndsIt() {
        QVERIFY(m_sandbox.addFault(SandboxFault::delay(QStringLiteral("/api/v2/user"), 300)));
        AppState& app = m_fixture->start();
        QObject watcher;
        bool ended = false;
        startWatched(watcher, app.bootstrap(), ended);
        QTRY_VERIFY(app.authState().is<AuthState::Validating>());
        m_fixture->stop();
        QTRY_VERIFY(ended);
    }

    void endingWhileTheWorkspacesLoadEndsTheLoad() {
        QVERIFY(m_sandbox.addFault(SandboxFault::delay(QStringLiteral("/api/v2/team"), 300)));
        AppState& app = m_fixture->start();
        QObject watcher;
        bool ended = false;
        startWatched(watcher, app.bootstrap(), ended);
        QTRY_VERIFY(app.hierarchy().isLoadingWorkspaces());
        m_fixture->stop();
        QTRY_VERIFY(ended);
    }

    void endingWhileTheEntriesLoadEndsTheLoad() {
        QVERIFY(m_sandbox.addFault(SandboxFault::delay(
            QStringLiteral("/api/v2/team/") + SandboxDemo::northwindID + QStringLiteral("/space"), 300)));
        AppState& app = m_fixture->start();
        QObject watcher;
        bool ended = false;
        startWatched(watcher, app.bootstrap(), ended);
        QTRY_VERIFY(app.hierarchy().loadingLists().contains(SandboxDemo::northwindID));
        m_fixture->stop();
        QTRY_VERIFY(ended);
    }

    void endingWhileTheListContextLoadsIsHarmless() {
        QVERIFY(
            m_sandbox.addFault(SandboxFault::delay(QStringLiteral("/api/v2/list/") + SandboxDemo::releaseListID, 300)));
        AppState& app = m_fixture->start();
        runTask(app.bootstrap());
        QPointer<ListContext> context = app.currentContext();
        QVERIFY(context && context->isLoading());
        m_fixture->stop();
        QVERIFY(!context);
        // The delayed answer comes after the state has gone, to nobody.
        QTest::qWait(400);
        const QJsonArray requests = m_sandbox.requests();
        QVERIFY(std::any_of(requests.begin(), requests.end(), [](const QJsonValue& request) {
            return request[QStringLiteral("path")].toString().endsWith(SandboxDemo::releaseListID);
        }));
    }

    void endingWhileASubmissionWaitsInABackOffEndsIt() {
        ClientTesting::HeldSleeper sleeper;
        m_fixture->useSleeper(sleeper.sleeper());
        // Every upload is refused with a 503, whose retry waits first.
        QVERIFY(m_sandbox.addFault(SandboxFault::answer(QStringLiteral("/api/v2/task/*/attachment"), 503, -1)
                                       .forMethod(QStringLiteral("POST"))));
        const TemporaryFolderOverride temporary;
        AppState& app = m_fixture->startSignedIn();
        QVERIFY(app.currentContext());
        app.draft().setName(QStringLiteral("Waits in a back-off"));
        app.draft().appendAttachments({*AttachmentStaging::stage(
            QUrl::fromLocalFile(temporary.writeOutside(QStringLiteral("notes.txt"), QByteArrayLiteral("bytes"))))});
        app.submit().submitDraft();
        QTRY_COMPARE(sleeper.held(), 1);
        const qsizetype requests = m_sandbox.requests().size();

        m_fixture->stop();
        // The wait ends after the state: the upload's next attempt finds nothing to send with, and
        // the job ends there, inside this call, without a request and without waiting again.
        sleeper.release();
        QCOMPARE(sleeper.held(), 0);
        QCOMPARE(m_sandbox.requests().size(), requests);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(AppStateLifetimeTest)
#include "AppStateLifetimeTest.moc"
