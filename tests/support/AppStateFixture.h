#pragma once

#include "core/app/AppState.h"
#include "support/ClientTesting.h"
#include "support/ManualWallClock.h"
#include "support/MemorySecretStore.h"
#include "support/RecordingLinkActions.h"
#include "support/RecordingNotificationCenter.h"
#include "support/RunTask.h"
#include "support/SandboxDemo.h"
#include "support/SandboxProcess.h"

#include <QJsonObject>
#include <QTemporaryDir>
#include <memory>

// The central state as the app builds it, for a test: a settings file and a reminders file of its
// own in a temporary folder, aimed at a sandbox when one is given, secrets in memory unless the test
// brings a store, a notification center and link actions that record, waits that return at once,
// and wall-clock alarms that ring only when the test moves the fixture's wall clock. A test against
// the sandbox:
//   AppStateFixture fixture(&sandbox);
//   fixture.storeToken(userID, token);
//   AppState& app = fixture.startSignedIn();
class AppStateFixture {
public:
    explicit AppStateFixture(const SandboxProcess* sandbox = nullptr, SecretStore* secrets = nullptr);
    // Ends the central state, then waits for the memory store's last answers, as the desktop's store
    // outlives the state.
    ~AppStateFixture();
    AppStateFixture(const AppStateFixture&) = delete;
    AppStateFixture& operator=(const AppStateFixture&) = delete;

    // A fixture aimed at a freshly reset sandbox, holding the token of its first demo user; null when
    // the sandbox can't be reset.
    static std::unique_ptr<AppStateFixture> withFirstUser(SandboxProcess& sandbox);

    // Rewrites the settings file: the sandbox's addresses and what `settings` adds.
    void writeSettings(QJsonObject settings = {});
    // The token as the keychain item of that account, in the memory store.
    void storeToken(qint64 userID, const QString& token);
    // A new central state on the settings file; the one before is gone.
    AppState& start();
    // A started central state, bootstrapped to its end.
    AppState& startSignedIn();
    // Chooses the list `listID` of the workspace for new tasks once the lists have loaded (signing in
    // loads those of the active workspace as well); false when it never appears.
    bool chooseList(const QString& workspaceID, const QString& listID);
    bool chooseNorthwindList(const QString& listID) { return chooseList(SandboxDemo::northwindID, listID); }
    // Ends the central state, as when the app quits.
    void stop() { m_app.reset(); }

    AppState& app() const { return *m_app; }
    MemorySecretStore& memorySecrets() { return m_memorySecrets; }
    RecordingNotificationCenter& notificationCenter() { return m_notificationCenter; }
    // The notification center of the central states started from now on, in place of the recording one.
    void useNotificationCenter(NotificationCenter& center) { m_center = &center; }
    // The waits of the central states started from now on, in place of those that return at once.
    void useSleeper(Sleeper sleeper) { m_waits = std::move(sleeper); }
    RecordingLinkActions& linkActions() { return m_linkActions; }
    // The region capture tool of the central states started from now on; none before.
    void useRegionCaptureTool(RegionCaptureTool& tool) { m_regionCaptureTool = &tool; }
    // The clock whose moves ring the alarms. The central state reads the system's time unless
    // useWallClockTime() was called before it started.
    ManualWallClock& wallClock() { return m_wallClock; }
    void useWallClockTime() { m_clock = m_wallClock.clock(); }
    QString settingsPath() const { return m_folder.filePath(QStringLiteral("settings.json")); }
    QString remindersPath() const { return m_folder.filePath(QStringLiteral("reminders.json")); }

private:
    const SandboxProcess* m_sandbox;
    QTemporaryDir m_folder;
    MemorySecretStore m_memorySecrets;
    SecretStore* m_secrets;
    ClientTesting::RecordingSleeper m_sleeper;
    Sleeper m_waits = m_sleeper.sleeper();
    RecordingNotificationCenter m_notificationCenter;
    NotificationCenter* m_center = &m_notificationCenter;
    RecordingLinkActions m_linkActions;
    ManualWallClock m_wallClock{QDateTime::currentDateTimeUtc()};
    Clock m_clock = Clocks::system();
    RegionCaptureTool* m_regionCaptureTool = nullptr;
    std::unique_ptr<AppState> m_app;
};
