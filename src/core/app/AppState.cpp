#include "app/AppState.h"

#include "auth/PersonalTokenError.h"
#include "auth/StaticTokenAuth.h"

#include <QPointer>
#include <algorithm>

namespace {
// Uploads may take long: ten minutes without progress, an hour in all.
constexpr int uploadTransferTimeoutMs = 600'000;

// The text the user sees for a failure of any kind.
QString describe(const std::exception& error) {
    if (const auto* serviceError = dynamic_cast<const NVError*>(&error)) {
        return serviceError->errorDescription();
    }
    return QString::fromUtf8(error.what());
}

QString accountKey(qint64 userID) {
    return QString::number(userID);
}

// The one check that a token is good. The request is made apart from any co_await: GCC 12 destroys
// temporaries of a coroutine call twice when the call stands inside a co_await expression.
QCoro::Task<UserResponse> fetchUser(const NorvaneClient& client) {
    QCoro::Task<UserResponse> request = client.get<UserResponse>(QStringLiteral("user"));
    co_return co_await std::move(request);
}
} // namespace

AppState::AppState(AppEnvironment environment, QObject* parent)
    : QObject(parent)
    , m_tokenProvider(environment.secrets)
    , m_settings(environment.settingsPath.isEmpty() ? SettingsStore::defaultFilePath() : environment.settingsPath)
    , m_draft(environment.clock)
    , m_addresses(ServiceAddresses::from(m_settings.settings()))
    , m_sleeper(std::move(environment.sleeper))
    , m_clock(std::move(environment.clock)) {
    m_uploadSession.setTransferTimeout(uploadTransferTimeoutMs);
    m_client = std::make_unique<NorvaneClient>(m_tokenProvider, &m_session, &m_uploadSession, m_addresses.apiBaseURL,
                                               m_sleeper, m_clock);
    m_hierarchy = std::make_unique<HierarchyStore>(*m_client);
    m_draft.setReminderLeadMinutes(m_settings.settings().defaultReminderLeadMinutes);
}

AppState::~AppState() = default;

void AppState::setAuthState(AuthState state) {
    if (m_authState == state) {
        return;
    }
    m_authState = std::move(state);
    emit authStateChanged();
}

QCoro::Task<> AppState::bootstrap() {
    QPointer<AppState> self(this);
    co_await m_tokenProvider.activate(m_settings.settings().activeAccountID);
    if (!self) {
        co_return;
    }
    const std::optional<QString> token = m_tokenProvider.cached();
    if (!token || token->isEmpty()) {
        co_return;
    }
    co_await validateAndLoad(m_authValidation.raise());
}

QCoro::Task<std::optional<QString>> AppState::validateAndLoad(qint64 generation) {
    QPointer<AppState> self(this);
    setAuthState({AuthState::Validating{}});
    NVUser user;
    try {
        user = (co_await fetchUser(*m_client)).user;
    } catch (const std::exception& error) {
        if (!self || !m_authValidation.isCurrent(generation)) {
            co_return std::nullopt;
        }
        setAuthState({AuthState::SignedOut{}});
        if (dynamic_cast<const NVError*>(&error) && static_cast<const NVError&>(error).is<NVError::Unauthorized>()) {
            m_tokenProvider.setCached(std::nullopt);
            m_lastSignedInUserID.reset();
        }
        co_return describe(error);
    }
    if (!self || !m_authValidation.isCurrent(generation)) {
        co_return std::nullopt;
    }
    if (m_lastSignedInUserID && *m_lastSignedInUserID != user.id) {
        forgetHierarchy();
        restoreAccountNavigation(user.id);
    }
    m_lastSignedInUserID = user.id;
    upsertAccount(user);
    m_settings.set(&AppSettings::activeAccountID, user.id);
    try {
        co_await m_tokenProvider.commitActiveToken(user.id);
    } catch (const PersonalTokenError&) {
        // The session goes on with the token in memory; the next launch falls back as before.
    }
    if (!self || !m_authValidation.isCurrent(generation)) {
        co_return std::nullopt;
    }
    setAuthState({AuthState::SignedIn{user}});
    QCoro::Task<> workspacesLoad = m_hierarchy->loadWorkspaces(false);
    co_await std::move(workspacesLoad);
    if (!self || !m_authValidation.isCurrent(generation)) {
        co_return std::nullopt;
    }
    co_await restoreLastLocation();
    co_return std::nullopt;
}

QCoro::Task<std::optional<QString>> AppState::signIn(QString token) {
    QPointer<AppState> self(this);
    const QString cleaned = PersonalTokenProvider::normalize(token);
    if (!cleaned.startsWith(QStringLiteral("pk_")) || cleaned.size() < 4) {
        co_return PersonalTokenError::invalidFormat().errorDescription();
    }

    StaticTokenAuth probeAuth(cleaned);
    const NorvaneClient probe(probeAuth, &m_session, nullptr, m_addresses.apiBaseURL, m_sleeper, m_clock);
    NVUser user;
    try {
        user = (co_await fetchUser(probe)).user;
    } catch (const std::exception& error) {
        co_return describe(error);
    }
    if (!self) {
        co_return std::nullopt;
    }
    try {
        co_await m_tokenProvider.keychain(user.id).write(cleaned);
    } catch (const std::exception& error) {
        co_return PersonalTokenError::keychainFailed(describe(error)).errorDescription();
    }
    if (!self) {
        co_return std::nullopt;
    }
    upsertAccount(user);
    co_await switchAccount(user.id, true);
    co_return std::nullopt;
}

QCoro::Task<> AppState::switchAccount(qint64 userID, bool force) {
    QPointer<AppState> self(this);
    const NVUser* signedIn = m_authState.user();
    if (!force && signedIn && signedIn->id == userID) {
        co_return;
    }
    stashActiveAccountNavigation();
    m_settings.set(&AppSettings::activeAccountID, userID);
    std::optional<QString> token = co_await m_tokenProvider.keychain(userID).read();
    if (!self) {
        co_return;
    }
    if (!token) {
        token = co_await m_tokenProvider.legacyKeychain().read();
        if (!self) {
            co_return;
        }
    }
    m_tokenProvider.setCached(token);
    restoreAccountNavigation(userID);
    forgetHierarchy();
    m_draft.reset(m_settings.settings().defaultReminderLeadMinutes);
    co_await validateAndLoad(m_authValidation.raise());
}

QCoro::Task<> AppState::removeAccount(qint64 userID) {
    QPointer<AppState> self(this);
    co_await m_tokenProvider.keychain(userID).remove();
    if (!self) {
        co_return;
    }
    removeStoredAccount(userID);
    if (m_settings.settings().activeAccountID != userID && activeUserID() != userID) {
        co_return;
    }
    m_settings.set(&AppSettings::activeAccountID, std::nullopt);
    if (m_settings.settings().accounts.isEmpty()) {
        signOut();
        co_return;
    }
    co_await switchAccount(m_settings.settings().accounts.constFirst().id, true);
}

void AppState::signOut() {
    m_authValidation.raise();
    if (const std::optional<qint64> userID = activeUserID()) {
        // The item goes in the background; a failure to delete it is of no interest.
        QCoro::connect(m_tokenProvider.keychain(*userID).remove(), this, [] {});
        removeStoredAccount(*userID);
    }
    m_settings.modify([](AppSettings& changed) {
        changed.activeAccountID.reset();
        changed.lastLocation.reset();
        changed.preferredWorkspaceID.reset();
    });
    m_lastSignedInUserID.reset();
    m_tokenProvider.setCached(std::nullopt);
    setAuthState({AuthState::SignedOut{}});
    forgetHierarchy();
    m_draft.reset(m_settings.settings().defaultReminderLeadMinutes);
}

std::optional<QString> AppState::activeWorkspaceID() const {
    if (m_currentContext) {
        return m_currentContext->entry().workspaceID;
    }
    const AppSettings& settings = m_settings.settings();
    if (settings.preferredWorkspaceID) {
        return settings.preferredWorkspaceID;
    }
    if (settings.lastLocation) {
        return settings.lastLocation->workspaceID;
    }
    if (!m_hierarchy->workspaces().isEmpty()) {
        return m_hierarchy->workspaces().constFirst().id;
    }
    return std::nullopt;
}

QCoro::Task<> AppState::restoreLastLocation() {
    QPointer<AppState> self(this);
    const std::optional<SavedLocation> location = m_settings.settings().lastLocation;
    if (!location) {
        co_return;
    }
    const QList<Workspace>& workspaces = m_hierarchy->workspaces();
    if (std::none_of(workspaces.begin(), workspaces.end(),
                     [&location](const Workspace& workspace) { return workspace.id == location->workspaceID; })) {
        // The workspace is gone, perhaps for now: the location stays for when it comes back.
        co_return;
    }
    // Made apart from the co_await: GCC 12 destroys the temporaries of a call inside it twice.
    QCoro::Task<> entriesLoad = m_hierarchy->loadEntries(location->workspaceID, false);
    co_await std::move(entriesLoad);
    if (!self) {
        co_return;
    }
    if (const std::optional<ListEntry> entry = m_hierarchy->entry(location->listID)) {
        selectLocation(*entry);
    } else {
        m_settings.set(&AppSettings::preferredWorkspaceID, location->workspaceID);
    }
}

void AppState::selectLocation(const ListEntry& entry) {
    const bool sameList = m_currentContext && m_currentContext->entry().list.id == entry.list.id;
    QString path = entry.spaceName;
    if (entry.folderName) {
        path += QStringLiteral(" › ") + *entry.folderName;
    }
    m_settings.modify([&entry, &path](AppSettings& changed) {
        changed.preferredWorkspaceID = entry.workspaceID;
        changed.lastLocation = SavedLocation{entry.workspaceID, entry.list.id, entry.list.name, path};
    });
    if (sameList) {
        return;
    }
    m_draft.clearListSpecificValues();
    auto* context = new ListContext(entry, this);
    setCurrentContext(context);
    // The load never throws; a newer selection leaves it to finish on this object unseen.
    QCoro::connect(context->load(*m_client), this, [] {});
}

void AppState::setCurrentContext(ListContext* context) {
    if (m_currentContext == context) {
        return;
    }
    if (m_currentContext) {
        m_currentContext->deleteLater();
    }
    m_currentContext = context;
    emit currentContextChanged();
}

void AppState::forgetHierarchy() {
    setCurrentContext(nullptr);
    m_hierarchy->setWorkspaces({});
    m_hierarchy->setEntriesByWorkspace({});
}

void AppState::removeStoredAccount(qint64 userID) {
    m_settings.modify([userID](AppSettings& changed) {
        changed.accounts.removeIf([userID](const StoredAccount& account) { return account.id == userID; });
        changed.accountLocations.remove(accountKey(userID));
        changed.accountPreferredWorkspaceIDs.remove(accountKey(userID));
    });
}

std::optional<qint64> AppState::activeUserID() const {
    if (const NVUser* user = m_authState.user()) {
        return user->id;
    }
    return m_settings.settings().activeAccountID;
}

void AppState::upsertAccount(const NVUser& user) {
    const StoredAccount account{user.id, user.displayName(), user.email, user.color, user.initials};
    m_settings.modify([&account](AppSettings& changed) {
        const auto found = std::find_if(changed.accounts.begin(), changed.accounts.end(),
                                        [&account](const StoredAccount& stored) { return stored.id == account.id; });
        if (found != changed.accounts.end()) {
            *found = account;
        } else {
            changed.accounts.append(account);
        }
    });
}

void AppState::stashActiveAccountNavigation() {
    const std::optional<qint64> userID = activeUserID();
    if (!userID) {
        return;
    }
    m_settings.modify([key = accountKey(*userID)](AppSettings& changed) {
        if (changed.lastLocation) {
            changed.accountLocations.insert(key, *changed.lastLocation);
        } else {
            changed.accountLocations.remove(key);
        }
        if (changed.preferredWorkspaceID) {
            changed.accountPreferredWorkspaceIDs.insert(key, *changed.preferredWorkspaceID);
        } else {
            changed.accountPreferredWorkspaceIDs.remove(key);
        }
    });
}

void AppState::restoreAccountNavigation(qint64 userID) {
    m_settings.modify([key = accountKey(userID)](AppSettings& changed) {
        changed.lastLocation =
            changed.accountLocations.contains(key) ? std::optional(changed.accountLocations.value(key)) : std::nullopt;
        changed.preferredWorkspaceID = changed.accountPreferredWorkspaceIDs.contains(key)
                                           ? std::optional(changed.accountPreferredWorkspaceIDs.value(key))
                                           : std::nullopt;
    });
}

void AppState::setCustomValue(const CustomValue& value, const QString& fieldID) {
    QMap<QString, CustomValue> custom = m_draft.custom();
    if (value.isEmpty()) {
        custom.remove(fieldID);
    } else {
        custom.insert(fieldID, value);
    }
    m_draft.setCustom(custom);
}
