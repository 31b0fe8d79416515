#pragma once

#include "core/api/AuthProvider.h"
#include "core/async/LatestWins.h"
#include "core/auth/KeychainStore.h"

#include <QMutex>
#include <QObject>
#include <QString>
#include <optional>
#include <qcoro/qcorotask.h>

// Holds the active account's personal API token in memory and moves tokens between the keychain
// items: one per account ("norvane-token-" and the user id), and the legacy item of the time before
// several accounts existed. The token is assigned on the main thread and read by requests from any
// thread.
class PersonalTokenProvider : public QObject, public AuthProvider {
    Q_OBJECT

public:
    // The secret store must outlive the provider and its operations.
    explicit PersonalTokenProvider(SecretStore* secrets, QObject* parent = nullptr);

    const KeychainStore& legacyKeychain() const { return m_legacyKeychain; }
    // The item of one account; depends on nothing but the id.
    KeychainStore keychain(qint64 forUserID) const;

    // The token in memory; starts absent.
    std::optional<QString> cached() const;
    // Main thread only. An activation still reading the keychain no longer assigns its result.
    void setCached(std::optional<QString> token);

    // The cached token, with no keychain access.
    std::optional<QString> authorizationValue() const override;

    // The token of the account's item, or when there is no id or no such item, of the legacy item,
    // which may be absent too. So an account without its own item falls back to the legacy one.
    QCoro::Task<std::optional<QString>> readToken(std::optional<qint64> userID) const;
    // Fills cached with readToken's answer. When activations overlap, the last one started wins.
    QCoro::Task<> activate(std::optional<qint64> userID);

    // After the service has accepted cached: writes it to the account's item, then removes the
    // legacy item, so the legacy token moves to its account at the first successful validation.
    // Nothing happens while cached is absent or empty. Throws PersonalTokenError::keychainFailed
    // when the write fails, the legacy item staying.
    QCoro::Task<> commitActiveToken(qint64 forUserID);

    // What a copy from a web page brings along is taken off: white space at both ends, zero-width
    // spaces, byte-order marks and no-break spaces anywhere, and a leading "Bearer " in any case.
    static QString normalize(const QString& text);

private:
    void assignCached(std::optional<QString> token);

    SecretStore* m_secrets;
    KeychainStore m_legacyKeychain;
    mutable QMutex m_mutex;
    std::optional<QString> m_cached; // guarded by m_mutex
    // Raised by each activation and assignment; an activation assigns only while it is the latest.
    LatestWins m_assignments;
};
