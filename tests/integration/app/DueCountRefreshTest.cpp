#include "app/DueCountRefresh.h"
#include "AppStateFixture.h"

#include <QTest>

// The due count beside the tray icon is fetched only when it is shown, someone is signed in and a
// workspace is active; then the badge is drawn again. Against norvane-sandbox.
class DueCountRefreshTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    std::unique_ptr<AppStateFixture> m_fixture;
    int m_redrawn = 0;

    AppState& startWithCount(bool shown, bool signedIn) {
        if (!m_sandbox.reset()) {
            qFatal("The sandbox could not be reset");
        }
        m_fixture = std::make_unique<AppStateFixture>(&m_sandbox);
        m_fixture->writeSettings({{QStringLiteral("showDueCountBadge"), shown}});
        AppState& app = m_fixture->start();
        if (signedIn && runTask(app.signIn(m_sandbox.token())).has_value()) {
            qFatal("Signing in failed");
        }
        m_redrawn = 0;
        app.updateBadge = [this] { ++m_redrawn; };
        return app;
    }

private slots:
    void initTestCase() { QVERIFY2(m_sandbox.start(), qPrintable(m_sandbox.errorString())); }
    void cleanup() { m_fixture.reset(); }

    void shownAndSignedInItFetchesTheTasksAndRedrawsTheBadgeOnce() {
        AppState& app = startWithCount(true, true);
        QVERIFY(app.activeWorkspaceID());
        runTask(refreshDueCountIfNeeded(app));
        QCOMPARE(m_redrawn, 1);
        QVERIFY(!app.myDay().tasks().isEmpty());
        QVERIFY(app.myDay().dueCount() > 0);
    }

    void hiddenItFetchesNothing() {
        AppState& app = startWithCount(false, true);
        runTask(refreshDueCountIfNeeded(app));
        QCOMPARE(m_redrawn, 0);
        QVERIFY(app.myDay().tasks().isEmpty());
    }

    void signedOutItFetchesNothing() {
        AppState& app = startWithCount(true, false);
        runTask(refreshDueCountIfNeeded(app));
        QCOMPARE(m_redrawn, 0);
        QVERIFY(app.myDay().tasks().isEmpty());
    }

    void withoutABadgeToRedrawItStillFetches() {
        AppState& app = startWithCount(true, true);
        app.updateBadge = nullptr;
        runTask(refreshDueCountIfNeeded(app));
        QVERIFY(!app.myDay().tasks().isEmpty());
    }
};

QTEST_GUILESS_MAIN(DueCountRefreshTest)
#include "DueCountRefreshTest.moc"
