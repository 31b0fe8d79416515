#include "app/AppState.h"

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
} // namespace

AppState::AppState(AppEnvironment environment, QObject* parent)
    : QObject(parent)
    , m_tokenProvider(environment.secrets)
    , m_settings(settingsFile(environment.settingsPath))
    , m_draft(environment.clock)
    , m_addresses(ServiceAddresses::from(m_settings.settings()))
    , m_client(m_tokenProvider, &m_session, &m_uploadSession, m_addresses.apiBaseURL, std::move(environment.sleeper),
               environment.clock)
    , m_hierarchy(m_client)
    , m_myDay(m_client, environment.clock)
    , m_location(m_settings, m_hierarchy, m_client, m_draft)
    , m_auth(m_tokenProvider, m_settings, m_client, m_hierarchy, m_location, m_myDay, m_draft)
    , m_templates(m_settings, m_hierarchy, m_location, m_draft)
    , m_dayChange(environment.clock, environment.wallClockAlarms())
    , m_notifications(*environment.notificationCenter, *environment.linkActions, environment.remindersPath,
                      std::move(environment.clock), environment.wallClockAlarms())
    , m_linkActions(*environment.linkActions)
    , m_submitQueue(m_notifications, m_uploadQueue, m_storageProviders, m_settings)
    , m_submit(m_draft, m_settings, m_location, m_client, m_submitQueue, m_notifications) {
    m_draft.setReminderLeadMinutes(m_settings.settings().defaultReminderLeadMinutes);
    // "Retry" on a notification: the outcome comes back as a notification.
    m_notifications.setRetryHandler(
        [this](const QUuid& jobID) { m_submitQueue.retry(jobID, m_client, PhaseHandler(), true); });
    m_submitQueue.updateBadge = [this] {
        if (updateBadge) {
            updateBadge();
        }
    };
    connect(&m_auth, &AuthController::authStateChanged, this, &AppState::authStateChanged);
    connect(&m_location, &LocationMemory::currentContextChanged, this, &AppState::currentContextChanged);
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
