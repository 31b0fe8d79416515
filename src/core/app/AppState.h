#pragma once

#include "core/api/DirectUploadSession.h"
#include "core/api/NorvaneClient.h"
#include "core/app/ServiceAddresses.h"
#include "core/async/DayChange.h"
#include "core/auth/AuthController.h"
#include "core/auth/PersonalTokenProvider.h"
#include "core/auth/StorageCredentialStore.h"
#include "core/compose/TaskDraft.h"
#include "core/compose/TemplateActions.h"
#include "core/hierarchy/HierarchyStore.h"
#include "core/hierarchy/LocationMemory.h"
#include "core/myday/DueCountQuery.h"
#include "core/myday/MyDayStore.h"
#include "core/notify/NotificationScheduler.h"
#include "core/recording/ScreenRecordingDesktop.h"
#include "core/settings/SettingsStore.h"
#include "core/settings/SettingsTab.h"
#include "core/shell/PopoverTab.h"
#include "core/shell/ScreenRecordingFlow.h"
#include "core/shell/ScreenshotFlow.h"
#include "core/shell/StatusItemBadgeModel.h"
#include "core/storage/GoogleDriveAuthManager.h"
#include "core/storage/StorageProviderRegistry.h"
#include "core/submit/AttachmentUploadQueue.h"
#include "core/submit/BackgroundSubmitQueue.h"
#include "core/submit/SubmitController.h"

#include <QNetworkAccessManager>
#include <QObject>
#include <optional>

// What the desktop hands the central state: the secret store, the notification center, what is
// done with a task's link and the wall-clock alarms, and seams for tests.
struct AppEnvironment {
    SecretStore* secrets = nullptr;
    // The settings file; empty means the user's own.
    QString settingsPath;
    Sleeper sleeper = Sleepers::real();
    Clock clock = Clocks::system();
    NotificationCenter* notificationCenter = nullptr;
    LinkActions* linkActions = nullptr;
    // The file of reminders; empty means the user's own.
    QString remindersPath;
    // Alarms for what happens at a time of day: reminders, and midnight.
    WallClockAlarms wallClockAlarms;
    // The desktop's tool for screenshots of a region; none means there are none.
    RegionCaptureTool* regionCaptureTool = nullptr;
    // What a screen recording takes from the desktop; without it nothing is recorded.
    ScreenRecordingDesktop screenRecording;
    // Registers the program for the browser's answer to a Google sign-in; none needs no registration.
    CallbackScheme* callbackScheme = nullptr;
};

// The one central object and the place where NorvaneBar is put together: it builds the token
// provider, the client, the settings, the workspace hierarchy, the draft and the feature objects that
// work on them, and offers their operations under one roof. Each operation is a call into the
// feature that owns it: sign-in and accounts in AuthController, the composer's list in
// LocationMemory. Main thread only.
class AppState : public QObject {
    Q_OBJECT
    Q_PROPERTY(ListContext* currentContext READ currentContext NOTIFY currentContextChanged)
    Q_PROPERTY(PopoverTab activeTab READ activeTab WRITE setActiveTab NOTIFY activeTabChanged)

public:
    explicit AppState(AppEnvironment environment, QObject* parent = nullptr);
    ~AppState() override;

    PersonalTokenProvider& tokenProvider() { return m_tokenProvider; }
    const NorvaneClient& client() const { return m_client; }
    SettingsStore& settings() { return m_settings; }
    HierarchyStore& hierarchy() { return m_hierarchy; }
    MyDayStore& myDay() { return m_myDay; }
    // The tray icon's count of the user's tasks due by the end of today.
    DueCountQuery& dueCount() { return m_dueCount; }
    // What the tray icon shows.
    const StatusItemBadgeModel& badge() const { return m_badge; }
    TaskDraft& draft() { return m_draft; }
    AuthController& auth() { return m_auth; }
    LocationMemory& location() { return m_location; }
    NotificationScheduler& notifications() { return m_notifications; }
    LinkActions& linkActions() { return m_linkActions; }
    StorageProviderRegistry& storageProviders() { return m_storageProviders; }
    // The keys of the external storage providers in the keyring.
    const StorageCredentialStore& storageCredentials() const { return m_storageCredentials; }
    GoogleDriveAuthManager& googleDriveAuth() { return m_googleDriveAuth; }
    BackgroundSubmitQueue& submitQueue() { return m_submitQueue; }
    // The popover's submission: the session it follows, the mode of the composer, and the banner.
    SubmitController& submit() { return m_submit; }
    const ServiceAddresses& serviceAddresses() const { return m_addresses; }
    // Tells when the local day changes, for whatever reads "today".
    DayChange& dayChange() { return m_dayChange; }

    const AuthState& authState() const { return m_auth.authState(); }
    const AuthValidationGeneration& authValidation() const { return m_auth.authValidation(); }
    ListContext* currentContext() const { return m_location.currentContext(); }
    std::optional<QString> activeWorkspaceID() const { return m_location.activeWorkspaceID(); }
    PopoverTab activeTab() const { return m_activeTab; }
    void setActiveTab(PopoverTab tab);

    // Asks for the settings window on a tab, or on the tab it last showed: settingsRequested.
    void openSettings(std::optional<SettingsTab> tab) { emit settingsRequested(tab); }

    QCoro::Task<> bootstrap() { return m_auth.bootstrap(); }
    QCoro::Task<std::optional<QString>> signIn(QString token) { return m_auth.signIn(std::move(token)); }
    QCoro::Task<> switchAccount(qint64 userID, bool force = false) { return m_auth.switchAccount(userID, force); }
    QCoro::Task<> removeAccount(qint64 userID) { return m_auth.removeAccount(userID); }
    void signOut() { m_auth.signOut(); }
    void selectLocation(const ListEntry& entry) { m_location.selectLocation(entry); }
    // The only writer of the draft's custom values: an empty value removes the field.
    void setCustomValue(const CustomValue& value, const QString& fieldID) { m_draft.setCustomValue(value, fieldID); }
    QCoro::Task<> applyTemplate(TaskTemplate applied) { return m_templates.applyTemplate(std::move(applied)); }
    void saveCurrentAsTemplate(const QString& name) { m_templates.saveCurrentAsTemplate(name); }
    // A region of the screen as a new task's only attachment; whether the popover is to be shown.
    QCoro::Task<bool> startScreenshotCapture() { return m_screenshots.startScreenshotCapture(); }
    // The recording under way, for its windows.
    ScreenRecordingCoordinator& recordingCoordinator() { return m_recordingCoordinator; }
    // The setup sheet, the way of a recording into the draft and the message of a failed one.
    ScreenRecordingFlow& screenRecording() { return m_screenRecording; }
    void startScreenRecording(ScreenRecordingStartMode mode) {
        m_screenRecording.startScreenRecording(std::move(mode));
    }

signals:
    void authStateChanged();
    void currentContextChanged();
    void activeWorkspaceIDChanged();
    void activeTabChanged();
    // The desktop brings up the settings window on `tab`, or on the tab it last showed, in front.
    void settingsRequested(std::optional<SettingsTab> tab);

private:
    PersonalTokenProvider m_tokenProvider;
    SettingsStore m_settings;
    TaskDraft m_draft;
    ServiceAddresses m_addresses;
    QNetworkAccessManager m_session;
    StorageCredentialStore m_storageCredentials;
    GoogleDriveAuthManager m_googleDriveAuth;
    DirectUploadSession m_uploadSession;
    NorvaneClient m_client;
    HierarchyStore m_hierarchy;
    MyDayStore m_myDay;
    LocationMemory m_location;
    AuthController m_auth;
    TemplateActions m_templates;
    DayChange m_dayChange;
    NotificationScheduler m_notifications;
    LinkActions& m_linkActions;
    StorageProviderRegistry m_storageProviders;
    AttachmentUploadQueue m_uploadQueue;
    BackgroundSubmitQueue m_submitQueue;
    SubmitController m_submit;
    DueCountQuery m_dueCount;
    StatusItemBadgeModel m_badge;
    ScreenshotCapture m_screenshotCapture;
    ScreenshotFlow m_screenshots;
    ScreenRecordingCoordinator m_recordingCoordinator;
    ScreenRecordingFlow m_screenRecording;
    PopoverTab m_activeTab = PopoverTab::compose;
};
