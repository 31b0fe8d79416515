#include "core/app/AppState.h"

#include "core/async/StartTask.h"
#include "core/shell/ScreenRecordingServices.h"
#include "core/storage/BuiltInStorageProviders.h"
#include "core/storage/GoogleOAuthClient.h"

#include <QNetworkReply>

namespace {
// Whether there was a request to abort.
bool abortRunningRequests(const QNetworkAccessManager& session) {
    bool aborted = false;
    for (QNetworkReply* reply : session.findChildren<QNetworkReply*>()) {
        if (reply->isRunning()) {
            reply->abort();
            aborted = true;
        }
    }
    return aborted;
}

QString settingsFile(const QString& path) {
    return path.isEmpty() ? SettingsStore::defaultFilePath() : path;
}

std::optional<qint64> signedInUserID(const AuthState& state) {
    const NVUser* user = state.user();
    return user ? std::optional(user->id) : std::nullopt;
}
} // namespace

AppState::AppState(AppEnvironment environment, QObject* parent)
    : QObject(parent)
    , m_tokenProvider(environment.secrets)
    , m_settings(settingsFile(environment.settingsPath))
    , m_draft(environment.clock)
    , m_addresses(ServiceAddresses::from(m_settings.settings()))
    , m_storageCredentials(environment.secrets)
    , m_googleDriveAuth({.credentials = m_storageCredentials,
                         .session = &m_session,
                         .addresses = GoogleAddresses::from(m_settings.settings()),
                         .clientID = GoogleOAuthClient::builtInID(),
                         .browser = environment.linkActions,
                         .scheme = environment.callbackScheme,
                         .clock = environment.clock})
    , m_client(m_tokenProvider, &m_session, &m_uploadSession, m_addresses.apiBaseURL, environment.sleeper,
               environment.clock)
    , m_hierarchy(m_client)
    , m_myDay(m_client, environment.clock)
    , m_location(m_settings, m_hierarchy, m_client)
    , m_auth(m_tokenProvider, m_settings, m_client,
             {.forgetHierarchy = [this] { m_location.forgetHierarchy(); },
              .loadWorkspaces = [this] { return m_hierarchy.loadWorkspaces(false); },
              .restoreLastLocation = [this] { return m_location.restoreLastLocation(); },
              .emptyTasks = [this] { m_myDay.emptyTasks(); },
              .resetDraft = [this](qint64 lead) { m_draft.reset(lead); }})
    , m_templates(m_settings, m_hierarchy, m_location, m_draft)
    , m_dayChange(environment.clock, environment.wallClockAlarms())
    , m_notifications(*environment.notificationCenter, *environment.linkActions, environment.remindersPath,
                      std::move(environment.clock), environment.wallClockAlarms())
    , m_linkActions(*environment.linkActions)
    , m_submitQueue(m_notifications, m_uploadQueue, m_storageProviders, m_settings)
    , m_submit(m_draft, m_settings, m_location, m_client, m_submitQueue, m_notifications)
    , m_dueCount(m_client, m_settings,
                 {.signedInUserID = [this] { return signedInUserID(m_auth.authState()); },
                  .activeWorkspaceID = [this] { return m_location.activeWorkspaceID(); }},
                 m_myDay.clock())
    , m_badge(m_submitQueue, m_dueCount, m_settings)
    , m_screenshotCapture(environment.regionCaptureTool)
    , m_screenshots(m_screenshotCapture, m_settings, m_templates, m_draft,
                    [this] { setActiveTab(PopoverTab::compose); })
    , m_recordingCoordinator(screenRecordingServices(environment.screenRecording, environment.sleeper))
    , m_screenRecording(m_recordingCoordinator, m_settings, m_templates, m_draft,
                        [this] { setActiveTab(PopoverTab::compose); }) {
    BuiltInStorageProviders::registerAll(
        m_storageProviders,
        {.session = &m_uploadSession, .credentials = &m_storageCredentials, .googleAuth = &m_googleDriveAuth});
    m_draft.setReminderLeadMinutes(m_settings.settings().defaultReminderLeadMinutes);
    // The status, tags and custom values of one list mean nothing in another.
    connect(&m_location, &LocationMemory::otherListSelected, &m_draft, &TaskDraft::clearListSpecificValues);
    // "Retry" on a notification: the outcome comes back as a notification.
    m_notifications.setRetryHandler(
        [this](const QUuid& jobID) { m_submitQueue.retry(jobID, m_client, PhaseHandler(), true); });
    // A task changed by a row action of the Tasks tab may have left today's count, or joined it.
    connect(&m_myDay, &MyDayStore::taskChanged, &m_dueCount, &DueCountQuery::startRefresh);
    connect(&m_dayChange, &DayChange::dayChanged, &m_dueCount, &DueCountQuery::recount);
    connect(&m_auth, &AuthController::authStateChanged, this, &AppState::authStateChanged);
    connect(&m_location, &LocationMemory::currentContextChanged, this, &AppState::currentContextChanged);
    connect(&m_location, &LocationMemory::activeWorkspaceIDChanged, this, &AppState::activeWorkspaceIDChanged);
    startTask(&m_googleDriveAuth, m_googleDriveAuth.refreshConnectionState());
}

AppState::~AppState() {
    // A reply deleted with its session never finishes, and a task awaiting it would wait forever.
    // So requests still under way end first, while everything they report to is alive; the tasks
    // that awaited them resume at once with a failure, and may send another request before they end.
    for (bool aborted = true; aborted;) {
        aborted = abortRunningRequests(m_session) | abortRunningRequests(m_uploadSession);
    }
}

void AppState::setActiveTab(PopoverTab tab) {
    if (m_activeTab == tab) {
        return;
    }
    m_activeTab = tab;
    emit activeTabChanged();
}
