#pragma once

#include "core/auth/KeychainStore.h"

#include <QDateTime>
#include <QString>
#include <optional>
#include <qcoro/qcorotask.h>

// The keychain items of the external storage providers: the Cloudflare R2 key pair and the Google
// Drive tokens. It holds no state of its own; the other readings are read() on the item in question.
// One instance serves the program; it is made where the secret store is.
class StorageCredentialStore {
public:
    // The secret store must outlive every operation.
    explicit StorageCredentialStore(SecretStore* secrets);

    const KeychainStore accessKeyStore;
    const KeychainStore secretKeyStore;
    const KeychainStore googleAccessTokenStore;
    const KeychainStore googleRefreshTokenStore;
    // Seconds since 1970 as decimal text.
    const KeychainStore googleAccessTokenExpiryStore;

    // Trims white space from both. If either is then empty, nothing changes and nothing fails: the
    // key pair is never deleted. Writes the access key, then the secret; a failed second write
    // leaves the first done. Throws StorageCredentialError.
    QCoro::Task<> setR2Credentials(QString accessKeyID, QString secretAccessKey) const;

    // Writes the access token, the refresh token when given and not empty (else the stored one
    // stays), and the expiry as the shortest decimal text of its seconds since 1970. The first
    // failure stops and throws StorageCredentialError.
    QCoro::Task<> setGoogleTokens(QString accessToken, std::optional<QString> refreshToken, QDateTime expiresAt) const;

    // Absent when the item is missing or its text isn't wholly a number without white space before it.
    QCoro::Task<std::optional<QDateTime>> readGoogleAccessTokenExpiry() const;

    // Removes the Google access token, refresh token and expiry; failures go unnoticed.
    QCoro::Task<> clearGoogleTokens() const;
};
