#include "core/auth/AuthController.h"

#include "core/async/LoadGuard.h"
#include "core/async/StartTask.h"
#include "core/auth/AccountNavigation.h"
#include "core/auth/PersonalTokenError.h"
#include "core/auth/StaticTokenAuth.h"

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
                               const NorvaneClient& client, AccountContent content, QObject* parent)
    : QObject(parent)
    , m_tokenProvider(tokenProvider)
    , m_settings(settings)
    , m_client(client)
    , m_content(std::move(content)) {}

void AuthController::setAuthState(AuthState state) {
    if (m_authState == state) {
        return;
    }
    m_authState = std::move(state);
    emit authStateChanged();
}

QCoro::Task<> AuthController::bootstrap() {
    QCoro::Task<> activation = m_tokenProvider.activate(m_settings.settings().activeAccountID);
    QCoro::Task<bool> activating = awaitGuarded(LoadGuard(this), std::move(activation));
    if (!co_await std::move(activating)) {
        co_return;
    }
    const std::optional<QString> token = m_tokenProvider.cached();
    if (!token || token->isEmpty()) {
        co_return;
    }
    QCoro::Task<std::optional<QString>> validation = validateAndLoad(m_authValidation.raise());
    co_await std::move(validation);
}

QCoro::Task<std::optional<QString>> AuthController::validateAndLoad(qint64 generation) {
    // What lands after a newer sign-in, switch or sign-out has raised the generation changes nothing.
    const LoadGuard guard(this, m_authValidation, generation);
    setAuthState({AuthState::Validating{}});
    NVUser user;
    try {
        QCoro::Task<std::optional<UserResponse>> asking = awaitGuarded(guard, fetchUser(m_client));
        const std::optional<UserResponse> answer = co_await std::move(asking);
        if (!answer) {
            co_return std::nullopt;
        }
        user = answer->user;
    } catch (const std::exception& error) {
        setAuthState({AuthState::SignedOut{}});
        if (isUnauthorized(error)) {
            m_tokenProvider.setCached(std::nullopt);
            m_lastSignedInUserID.reset();
        }
        co_return describe(error);
    }
    if (m_lastSignedInUserID && *m_lastSignedInUserID != user.id) {
        m_content.forgetHierarchy();
        m_settings.modify([userID = user.id](AppSettings& changed) { AccountNavigation::restore(changed, userID); });
    }
    m_lastSignedInUserID = user.id;
    upsertAccount(user);
    m_settings.set(&AppSettings::activeAccountID, user.id);
    QCoro::Task<bool> committing = awaitGuarded(guard, commitToken(user.id));
    if (!co_await std::move(committing)) {
        co_return std::nullopt;
    }
    setAuthState({AuthState::SignedIn{user}});
    QCoro::Task<bool> workspacesLoad = awaitGuarded(guard, m_content.loadWorkspaces());
    if (!co_await std::move(workspacesLoad)) {
        co_return std::nullopt;
    }
    QCoro::Task<> restoring = m_content.restoreLastLocation();
    co_await std::move(restoring);
    co_return std::nullopt;
}

QCoro::Task<> AuthController::commitToken(qint64 userID) {
    QCoro::Task<bool> committing = awaitGuarded(LoadGuard(this), m_tokenProvider.commitActiveToken(userID));
    try {
        if (!co_await std::move(committing)) {
            co_return;
        }
    } catch (const PersonalTokenError&) {
        // The session goes on with the token in memory; the next launch falls back as before.
        co_return;
    }
    if (!isStoredAccount(userID)) {
        QCoro::Task<> removal = m_tokenProvider.keychain(userID).remove();
        co_await std::move(removal);
    }
}

QCoro::Task<std::optional<QString>> AuthController::signIn(QString token) {
    const QString cleaned = PersonalTokenProvider::normalize(token);
    if (!cleaned.startsWith(QStringLiteral("pk_")) || cleaned.size() < 4) {
        co_return PersonalTokenError::invalidFormat().errorDescription();
    }

    // A client of its own, so the running account and its state stay untouched while it asks.
    const StaticTokenAuth probeAuth(cleaned);
    const NorvaneClient probe = m_client.withAuth(probeAuth);
    const LoadGuard alive(this);
    NVUser user;
    try {
        QCoro::Task<std::optional<UserResponse>> asking = awaitGuarded(alive, fetchUser(probe));
        const std::optional<UserResponse> answer = co_await std::move(asking);
        if (!answer) {
            co_return std::nullopt;
        }
        user = answer->user;
    } catch (const std::exception& error) {
        co_return describe(error);
    }
    QCoro::Task<bool> writing = awaitGuarded(alive, m_tokenProvider.keychain(user.id).write(cleaned));
    try {
        if (!co_await std::move(writing)) {
            co_return std::nullopt;
        }
    } catch (const std::exception& error) {
        co_return PersonalTokenError::keychainFailed(describe(error)).errorDescription();
    }
    upsertAccount(user);
    QCoro::Task<> switching = switchAccount(user.id, true);
    co_await std::move(switching);
    co_return std::nullopt;
}

QCoro::Task<> AuthController::switchAccount(qint64 userID, bool force) {
    const NVUser* signedIn = m_authState.user();
    if (!force && signedIn && signedIn->id == userID) {
        co_return;
    }
    if (const std::optional<qint64> activeID = activeUserID()) {
        m_settings.modify([userID = *activeID](AppSettings& changed) { AccountNavigation::stash(changed, userID); });
    }
    m_settings.modify([userID](AppSettings& changed) {
        changed.activeAccountID = userID;
        AccountNavigation::restore(changed, userID);
    });
    // From here on nothing of the account left stays in sight or serves a request, and whatever it
    // still had under way lands unseen; a newer switch or a sign-out overrules this one in turn.
    const qint64 generation = m_authValidation.raise();
    m_tokenProvider.setCached(std::nullopt);
    setAuthState({AuthState::Validating{}});
    m_content.forgetHierarchy();
    m_content.emptyTasks();
    m_content.resetDraft(m_settings.settings().defaultReminderLeadMinutes);
    const LoadGuard guard(this, m_authValidation, generation);
    QCoro::Task<std::optional<std::optional<QString>>> reading = awaitGuarded(guard, m_tokenProvider.readToken(userID));
    const std::optional<std::optional<QString>> token = co_await std::move(reading);
    if (!token) {
        co_return;
    }
    m_tokenProvider.setCached(*token);
    QCoro::Task<std::optional<QString>> validation = validateAndLoad(generation);
    co_await std::move(validation);
}

QCoro::Task<> AuthController::removeAccount(qint64 userID) {
    QCoro::Task<bool> removal = awaitGuarded(LoadGuard(this), m_tokenProvider.keychain(userID).remove());
    if (!co_await std::move(removal)) {
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
    QCoro::Task<> switching = switchAccount(m_settings.settings().accounts.constFirst().id, true);
    co_await std::move(switching);
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
    m_content.forgetHierarchy();
    m_content.emptyTasks();
    m_content.resetDraft(m_settings.settings().defaultReminderLeadMinutes);
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
