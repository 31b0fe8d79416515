#pragma once

#include "core/api/NorvaneClient.h"
#include "core/auth/AccountContent.h"
#include "core/auth/AuthState.h"
#include "core/auth/AuthValidationGeneration.h"
#include "core/auth/PersonalTokenProvider.h"
#include "core/settings/SettingsStore.h"

#include <QCoroTask>
#include <QObject>
#include <optional>

// Sign-in and the accounts: checks a pasted token, validates the active account's token with the
// service, and switches, removes and signs out accounts, each account's navigation memory moving with
// it. A validation that a newer sign-in, switch or sign-out has overtaken changes nothing. Main
// thread only; the async operations give up the thread at each wait.
class AuthController : public QObject {
    Q_OBJECT

public:
    // Everything given must outlive this object.
    AuthController(PersonalTokenProvider& tokenProvider, SettingsStore& settings, const NorvaneClient& client,
                   AccountContent content, QObject* parent = nullptr);

    const AuthState& authState() const { return m_authState; }
    const AuthValidationGeneration& authValidation() const { return m_authValidation; }

    // Activates the stored account and, when it has a token, validates it.
    QCoro::Task<> bootstrap();
    // Checks a pasted token with the service, stores it for its account and makes that account
    // active. Absent on success, else the message to show beside the token field.
    QCoro::Task<std::optional<QString>> signIn(QString token);
    // Makes another stored account active and validates it; `force` goes through even when that
    // account is already signed in. The old account's list, tasks, draft and token go at once,
    // before the new token is read, and the state is `validating` from then on.
    QCoro::Task<> switchAccount(qint64 userID, bool force);
    // Forgets one stored account; when it is the active one, the first remaining one takes over.
    QCoro::Task<> removeAccount(qint64 userID);
    // Ends the active account; other stored accounts stay, none becomes active.
    void signOut();

signals:
    void authStateChanged();

private:
    QCoro::Task<std::optional<QString>> validateAndLoad(qint64 generation);
    // Writes the validated token to the account's item. When a sign-out or removal of that account
    // overtook the write, the item is removed again, so no secret outlives its account.
    QCoro::Task<> commitToken(qint64 userID);
    void setAuthState(AuthState state);
    void upsertAccount(const NVUser& user);
    // The id of the account that is active by sign-in state or, failing that, by the settings.
    std::optional<qint64> activeUserID() const;
    bool isStoredAccount(qint64 userID) const;
    // Drops the account from the list and from the navigation memory.
    void removeStoredAccount(qint64 userID);

    PersonalTokenProvider& m_tokenProvider;
    SettingsStore& m_settings;
    const NorvaneClient& m_client;
    AccountContent m_content;
    AuthState m_authState;
    AuthValidationGeneration m_authValidation;
    std::optional<qint64> m_lastSignedInUserID;
};
