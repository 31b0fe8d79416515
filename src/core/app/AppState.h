#pragma once

#include "api/NorvaneClient.h"
#include "app/ServiceAddresses.h"
#include "auth/AuthState.h"
#include "auth/AuthValidationGeneration.h"
#include "auth/PersonalTokenProvider.h"
#include "compose/TaskDraft.h"
#include "hierarchy/HierarchyStore.h"
#include "hierarchy/ListContext.h"
#include "settings/SettingsStore.h"
#include "shell/PopoverControlling.h"

#include <QNetworkAccessManager>
#include <QObject>
#include <QPointer>
#include <functional>
#include <memory>
#include <optional>

// What the desktop hands the central state: the secret store, and seams for tests.
struct AppEnvironment {
    SecretStore* secrets = nullptr;
    // The settings file; empty means the user's own.
    QString settingsPath;
    Sleeper sleeper = Sleepers::real();
    Clock clock = Clocks::system();
};

// The one central object: it owns the token provider, the client, the settings, the workspace
// hierarchy and the draft, holds the sign-in state and the list the composer aims at, and runs sign-in, validation and
// the account operations. Main thread only; its async operations give up the thread at each wait.
class AppState : public QObject {
    Q_OBJECT
    Q_PROPERTY(ListContext* currentContext READ currentContext NOTIFY currentContextChanged)

public:
    explicit AppState(AppEnvironment environment, QObject* parent = nullptr);
    ~AppState() override;

    PersonalTokenProvider& tokenProvider() { return m_tokenProvider; }
    const NorvaneClient& client() const { return *m_client; }
    SettingsStore& settings() { return m_settings; }
    HierarchyStore& hierarchy() { return *m_hierarchy; }
    TaskDraft& draft() { return m_draft; }
    const ServiceAddresses& serviceAddresses() const { return m_addresses; }
    const AuthState& authState() const { return m_authState; }
    const AuthValidationGeneration& authValidation() const { return m_authValidation; }
    // The list the composer creates tasks in, with what is known of it; null before a selection.
    ListContext* currentContext() const { return m_currentContext; }
    // The workspace to show: the current list's, else the preferred one, else the last location's,
    // else the first known one.
    std::optional<QString> activeWorkspaceID() const;

    PopoverControlling* popoverController = nullptr;
    std::function<void()> updateBadge;

    // Activates the stored account and, when it has a token, validates it in the background.
    // Returns at once; the task is kept so a test can await it.
    QCoro::Task<> bootstrap();
    // Checks a pasted token with the service, stores it for its account and makes that account
    // active. Absent on success, else the message to show beside the token field.
    QCoro::Task<std::optional<QString>> signIn(QString token);
    // Makes another stored account active and validates it; `force` goes through even when that
    // account is already signed in.
    QCoro::Task<> switchAccount(qint64 userID, bool force = false);
    // Forgets one stored account; when it is the active one, the first remaining one takes over.
    QCoro::Task<> removeAccount(qint64 userID);
    // Ends the active account; other stored accounts stay, none becomes active.
    void signOut();

    // Aims the composer at a list and remembers it as the last location. Another list clears the
    // draft's list-specific values and gets a new context, loaded in the background; the same list
    // keeps its context.
    void selectLocation(const ListEntry& entry);

    // The only writer of the draft's custom values: an empty value removes the field.
    void setCustomValue(const CustomValue& value, const QString& fieldID);

signals:
    void authStateChanged();
    void currentContextChanged();

private:
    QCoro::Task<std::optional<QString>> validateAndLoad(qint64 generation);
    void setAuthState(AuthState state);
    // Selects the remembered list once its workspace's entries are known.
    QCoro::Task<> restoreLastLocation();
    void setCurrentContext(ListContext* context);
    // Forgets the current list and everything loaded of the tree, when the account changes.
    void forgetHierarchy();
    void upsertAccount(const NVUser& user);
    void stashActiveAccountNavigation();
    void restoreAccountNavigation(qint64 userID);
    // The id of the account that is active by sign-in state or, failing that, by the settings.
    std::optional<qint64> activeUserID() const;
    // Drops the account from the list and from the navigation memory.
    void removeStoredAccount(qint64 userID);

    PersonalTokenProvider m_tokenProvider;
    SettingsStore m_settings;
    TaskDraft m_draft;
    ServiceAddresses m_addresses;
    QNetworkAccessManager m_session;
    QNetworkAccessManager m_uploadSession;
    std::unique_ptr<NorvaneClient> m_client;
    std::unique_ptr<HierarchyStore> m_hierarchy;
    QPointer<ListContext> m_currentContext;
    Sleeper m_sleeper;
    Clock m_clock;
    AuthState m_authState;
    AuthValidationGeneration m_authValidation;
    std::optional<qint64> m_lastSignedInUserID;
};
