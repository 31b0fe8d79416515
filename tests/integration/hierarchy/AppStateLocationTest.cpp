#include "support/AppStateFixture.h"
#include "support/SandboxDemo.h"
#include "support/TestMain.h"

#include <QSignalSpy>
#include <QTest>

// The list the composer aims at: restoring it at start, selecting it, and forgetting it when the
// account changes, against norvane-sandbox.
class AppStateLocationTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    std::unique_ptr<AppStateFixture> m_fixture;

    // A settings file aimed at the sandbox with the first demo user active, and whatever the test adds.
    void writeSettings(QJsonObject settings = {}) {
        settings.insert(QStringLiteral("activeAccountID"), SandboxDemo::firstUserID);
        m_fixture->writeSettings(settings);
    }

    static QJsonObject location(const QString& workspaceID, const QString& listID) {
        return {{"workspaceID", workspaceID}, {"listID", listID}, {"listName", "Old name"}, {"pathDescription", "Old"}};
    }

    // A started app, signed in as the first demo user.
    AppState& startSignedIn() { return m_fixture->startSignedIn(); }

    static void waitForContext(ListContext* context) {
        QVERIFY(context);
        QTRY_VERIFY(!context->isLoading());
    }

private slots:
    void initTestCase() { QVERIFY2(m_sandbox.start(), qPrintable(m_sandbox.errorString())); }

    void init() {
        m_fixture = AppStateFixture::withFirstUser(m_sandbox);
        QVERIFY(m_fixture);
        writeSettings();
    }

    void cleanup() { m_fixture.reset(); }

    void theStoredLocationIsSelectedAtStart() {
        writeSettings({{"lastLocation", location(SandboxDemo::northwindID, SandboxDemo::releaseListID)}});
        AppState& app = startSignedIn();
        QVERIFY(app.authState().user());
        QCOMPARE(app.hierarchy().workspaces().size(), 2);
        ListContext* context = app.currentContext();
        waitForContext(context);
        QCOMPARE(context->entry().list.id, SandboxDemo::releaseListID);
        QCOMPARE(app.activeWorkspaceID(), std::optional(SandboxDemo::northwindID));
        // The stored name and path follow the service's.
        QCOMPARE(app.settings().settings().lastLocation->pathDescription, QStringLiteral("Product › Releases"));
    }

    void aStoredLocationInAVanishedWorkspaceSurvives() {
        const QJsonObject gone = location(QStringLiteral("404404"), QStringLiteral("1"));
        writeSettings({{"lastLocation", gone}});
        AppState& app = startSignedIn();
        QCOMPARE(app.currentContext(), nullptr);
        QCOMPARE(app.settings().settings().lastLocation->workspaceID, QStringLiteral("404404"));
        QCOMPARE(app.settings().settings().lastLocation->listID, QStringLiteral("1"));
    }

    void aStoredListThatIsGoneLeavesItsWorkspacePreferred() {
        writeSettings({{"lastLocation", location(SandboxDemo::fabrikamID, QStringLiteral("1"))}});
        AppState& app = startSignedIn();
        QCOMPARE(app.currentContext(), nullptr);
        QCOMPARE(app.settings().settings().preferredWorkspaceID, std::optional(SandboxDemo::fabrikamID));
    }

    void selectingTheCurrentListKeepsItsContextButRewritesTheLocation() {
        AppState& app = startSignedIn();
        runTask(app.hierarchy().loadEntries(SandboxDemo::northwindID, false));
        ListEntry entry = *app.hierarchy().entry(SandboxDemo::inboxListID);
        app.selectLocation(entry);
        ListContext* context = app.currentContext();
        waitForContext(context);
        QSignalSpy changes(&app, &AppState::currentContextChanged);
        entry.list.name = QStringLiteral("Renamed inbox");
        app.selectLocation(entry);
        QCOMPARE(app.currentContext(), context);
        QCOMPARE(changes.count(), 0);
        QCOMPARE(app.settings().settings().lastLocation->listName, QStringLiteral("Renamed inbox"));
    }

    void anotherListClearsWhatTheDraftSetForTheOldListAndTheSameListKeepsIt() {
        AppState& app = startSignedIn();
        runTask(app.hierarchy().loadEntries(SandboxDemo::northwindID, false));
        app.selectLocation(*app.hierarchy().entry(SandboxDemo::inboxListID));
        waitForContext(app.currentContext());
        TaskDraft& draft = app.draft();
        draft.setName(QStringLiteral("Kept"));
        draft.setPriority(2);
        draft.setStatus(QStringLiteral("in progress"));
        draft.setAssignees({42});
        draft.setTags({QStringLiteral("a")});
        draft.setCustomValue(CustomValue::text(QStringLiteral("x")), QStringLiteral("cf-1"));
        app.selectLocation(*app.hierarchy().entry(SandboxDemo::inboxListID));
        QCOMPARE(draft.status(), std::optional(QStringLiteral("in progress")));
        QCOMPARE(draft.custom().size(), 1);
        app.selectLocation(*app.hierarchy().entry(SandboxDemo::supportListID));
        QCOMPARE(draft.name(), QStringLiteral("Kept"));
        QCOMPARE(draft.priority(), std::optional(2));
        QCOMPARE(draft.status(), std::nullopt);
        QVERIFY(draft.assignees().isEmpty());
        QVERIFY(draft.tags().isEmpty());
        QVERIFY(draft.custom().isEmpty());
        waitForContext(app.currentContext());
    }

    void selectingAListUnderNoFolderGivesThePathOfTheSpaceAlone() {
        AppState& app = startSignedIn();
        runTask(app.hierarchy().loadEntries(SandboxDemo::northwindID, false));
        app.selectLocation(*app.hierarchy().entry(SandboxDemo::supportListID));
        const std::optional<SavedLocation> saved = app.settings().settings().lastLocation;
        QVERIFY(saved);
        QCOMPARE(saved->pathDescription, QStringLiteral("Operations"));
        QCOMPARE(app.settings().settings().preferredWorkspaceID, std::optional(SandboxDemo::northwindID));
        waitForContext(app.currentContext());
    }

    void activeWorkspaceIDWithNothingKnownIsAbsent() { QCOMPARE(m_fixture->start().activeWorkspaceID(), std::nullopt); }

    void activeWorkspaceIDFallsBackToTheFirstWorkspace() {
        AppState& app = startSignedIn();
        QCOMPARE(app.activeWorkspaceID(), std::optional(app.hierarchy().workspaces().constFirst().id));
    }

    void signingOutForgetsTheListAndTheTree() {
        writeSettings({{"lastLocation", location(SandboxDemo::northwindID, SandboxDemo::releaseListID)}});
        AppState& app = startSignedIn();
        waitForContext(app.currentContext());
        app.signOut();
        QCOMPARE(app.currentContext(), nullptr);
        QVERIFY(app.hierarchy().workspaces().isEmpty());
        QVERIFY(app.hierarchy().entriesByWorkspace().isEmpty());
    }

    void aForcedSwitchForgetsTheListThenRestoresIt() {
        writeSettings({{"lastLocation", location(SandboxDemo::northwindID, SandboxDemo::releaseListID)}});
        AppState& app = startSignedIn();
        ListContext* before = app.currentContext();
        waitForContext(before);
        QSignalSpy changes(&app, &AppState::currentContextChanged);
        runTask(app.switchAccount(SandboxDemo::firstUserID, true));
        QCOMPARE(changes.count(), 2); // forgotten, then restored
        QVERIFY(app.currentContext());
        QCOMPARE(app.currentContext()->entry().list.id, SandboxDemo::releaseListID);
        waitForContext(app.currentContext());
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(AppStateLocationTest)
#include "AppStateLocationTest.moc"
