#include "auth/AuthController.h"

#include "async/StartTask.h"
#include "auth/PersonalTokenError.h"
#include "auth/StaticTokenAuth.h"
#include "hierarchy/AccountNavigation.h"

#include <QPointer>
#include <algorithm>

namespace {
// The text the user sees for a failure of any kind.
QString describe(const std::exception& error) {
    if (const auto* serviceError = dynamic_cast<const NVError*>(&error)) {
        return serviceError->errorDescription();
    }
    return QString::fromUtf8(error.what());
}

bool isUnauthorized(const std::exception& error) {
    const auto* serviceError = dynamic_cast<const NVError*>(&error);
    return serviceError && serviceError->is<NVError::Unauthorized>();
}

// The one check that a token is good.
QCoro::Task<UserResponse> fetchUser(const NorvaneClient& client) {
    QCoro::Task<UserResponse> request = client.get<UserResponse>(QStringLiteral("user"));
    co_return co_await std::move(request);
}
} // namespace

AuthController::AuthController(PersonalTokenProvider& tokenProvider, SettingsStore& settings,
                               const NorvaneClient& client, HierarchyStore& hierarchy, LocationMemory& location,
                               MyDayStore& myDay, TaskDraft& draft, QObject* parent)
    : QObject(parent)
    , m_tokenProvider(tokenProvider)
    , m_settings(settings)
    , m_client(client)
    , m_hierarchy(hierarchy)
    , m_location(location)
    , m_myDay(myDay)
    , m_draft(draft) {}

void AuthController::setAuthState(AuthState state) {
    if (m_authState == state) {
        return;
    }
    m_authState = std::move(state);
    emit authStateChanged();
}

QCoro::Task<> AuthController::bootstrap() {
    QPointer<AuthController> self(this);
    QCoro::Task<> activation = m_tokenProvider.activate(m_settings.settings().activeAccountID);
    co_await std::move(activation);
    if (!self) {
        co_return;
    }
    const std::optional<QString> token = m_tokenProvider.cached();
    if (!token || token->isEmpty()) {
        co_return;
    }
    co_await validateAndLoad(m_authValidation.raise());
}

QCoro::Task<std::optional<QString>> AuthController::validateAndLoad(qint64 generation) {
    QPointer<AuthController> self(this);
    setAuthState({AuthState::Validating{}});
    NVUser user;
    try {
        user = (co_await fetchUser(m_client)).user;
    } catch (const std::exception& error) {
        if (!self || !m_authValidation.isCurrent(generation)) {
            co_return std::nullopt;
        }
        setAuthState({AuthState::SignedOut{}});
        if (isUnauthorized(error)) {
            m_tokenProvider.setCached(std::nullopt);
            m_lastSignedInUserID.reset();
        }
        co_return describe(error);
    }
    if (!self || !m_authValidation.isCurrent(generation)) {
        co_return std::nullopt;
    }
    if (m_lastSignedInUserID && *m_lastSignedInUserID != user.id) {
        m_location.forgetHierarchy();
        m_settings.modify([userID = user.id](AppSettings& changed) { AccountNavigation::restore(changed, userID); });
    }
    m_lastSignedInUserID = user.id;
    upsertAccount(user);
    m_settings.set(&AppSettings::activeAccountID, user.id);
    try {
        co_await commitToken(user.id);
    } catch (const PersonalTokenError&) {
        // The session goes on with the token in memory; the next launch falls back as before.
    }
    if (!self || !m_authValidation.isCurrent(generation)) {
        co_return std::nullopt;
    }
    setAuthState({AuthState::SignedIn{user}});
    QCoro::Task<> workspacesLoad = m_hierarchy.loadWorkspaces(false);
    co_await std::move(workspacesLoad);
    if (!self || !m_authValidation.isCurrent(generation)) {
        co_return std::nullopt;
    }
    co_await m_location.restoreLastLocation();
    co_return std::nullopt;
}

QCoro::Task<> AuthController::commitToken(qint64 userID) {
    QPointer<AuthController> self(this);
    co_await m_tokenProvider.commitActiveToken(userID);
    if (self && !isStoredAccount(userID)) {
        co_await m_tokenProvider.keychain(userID).remove();
    }
}

QCoro::Task<std::optional<QString>> AuthController::signIn(QString token) {
    QPointer<AuthController> self(this);
    const QString cleaned = PersonalTokenProvider::normalize(token);
    if (!cleaned.startsWith(QStringLiteral("pk_")) || cleaned.size() < 4) {
        co_return PersonalTokenError::invalidFormat().errorDescription();
    }

    // A client of its own, so the running account and its state stay untouched while it asks.
    const StaticTokenAuth probeAuth(cleaned);
    const NorvaneClient probe = m_client.withAuth(probeAuth);
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

QCoro::Task<> AuthController::switchAccount(qint64 userID, bool force) {
    QPointer<AuthController> self(this);
    const NVUser* signedIn = m_authState.user();
    if (!force && signedIn && signedIn->id == userID) {
        co_return;
    }
    if (const std::optional<qint64> activeID = activeUserID()) {
        m_settings.modify([userID = *activeID](AppSettings& changed) { AccountNavigation::stash(changed, userID); });
    }
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
    m_settings.modify([userID](AppSettings& changed) { AccountNavigation::restore(changed, userID); });
    m_location.forgetHierarchy();
    m_myDay.emptyTasks();
    m_draft.reset(m_settings.settings().defaultReminderLeadMinutes);
    co_await validateAndLoad(m_authValidation.raise());
}

QCoro::Task<> AuthController::removeAccount(qint64 userID) {
    QPointer<AuthController> self(this);
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

void AuthController::signOut() {
    m_authValidation.raise();
    if (const std::optional<qint64> userID = activeUserID()) {
        // The item goes in the background; a failure to delete it is of no interest.
        startTask(this, m_tokenProvider.keychain(*userID).remove());
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
    m_location.forgetHierarchy();
    m_myDay.emptyTasks();
    m_draft.reset(m_settings.settings().defaultReminderLeadMinutes);
}

void AuthController::removeStoredAccount(qint64 userID) {
    m_settings.modify([userID](AppSettings& changed) {
        changed.accounts.removeIf([userID](const StoredAccount& account) { return account.id == userID; });
        AccountNavigation::forget(changed, userID);
    });
}

bool AuthController::isStoredAccount(qint64 userID) const {
    const QList<StoredAccount>& accounts = m_settings.settings().accounts;
    return std::any_of(accounts.begin(), accounts.end(),
                       [userID](const StoredAccount& account) { return account.id == userID; });
}

std::optional<qint64> AuthController::activeUserID() const {
    if (const NVUser* user = m_authState.user()) {
        return user->id;
    }
    return m_settings.settings().activeAccountID;
}

void AuthController::upsertAccount(const NVUser& user) {
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
