#include "auth/StorageCredentialStore.h"

#include "auth/KeychainStoreError.h"
#include "auth/StorageCredentialError.h"
#include "support/DoubleText.h"
#include "support/EpochSeconds.h"

namespace {
KeychainStore item(const char* account, SecretStore* secrets) {
    return {KeychainStore::appService, QLatin1String(account), secrets};
}

QCoro::Task<> write(KeychainStore item, QString value) {
    try {
        co_await item.write(std::move(value));
    } catch (const KeychainStoreError& error) {
        throw StorageCredentialError::keychainFailed(error.errorDescription());
    }
}
} // namespace

StorageCredentialStore::StorageCredentialStore(SecretStore* secrets)
    : accessKeyStore(item("cloudflare-r2-access-key", secrets))
    , secretKeyStore(item("cloudflare-r2-secret-key", secrets))
    , googleAccessTokenStore(item("google-drive-access-token", secrets))
    , googleRefreshTokenStore(item("google-drive-refresh-token", secrets))
    , googleAccessTokenExpiryStore(item("google-drive-access-token-expiry", secrets)) {}

// Each operation copies the items it needs before its first suspension, so the store may go while
// the operation runs.

QCoro::Task<> StorageCredentialStore::setR2Credentials(QString accessKeyID, QString secretAccessKey) const {
    const KeychainStore accessKey = accessKeyStore;
    const KeychainStore secretKey = secretKeyStore;
    const QString access = accessKeyID.trimmed();
    const QString secret = secretAccessKey.trimmed();
    if (access.isEmpty() || secret.isEmpty()) {
        co_return;
    }
    co_await write(accessKey, access);
    co_await write(secretKey, secret);
}

QCoro::Task<> StorageCredentialStore::setGoogleTokens(QString accessToken, std::optional<QString> refreshToken,
                                                      QDateTime expiresAt) const {
    const KeychainStore access = googleAccessTokenStore;
    const KeychainStore refresh = googleRefreshTokenStore;
    const KeychainStore expiry = googleAccessTokenExpiryStore;
    co_await write(access, std::move(accessToken));
    if (refreshToken && !refreshToken->isEmpty()) {
        co_await write(refresh, std::move(*refreshToken));
    }
    co_await write(expiry, DoubleText::shortest(EpochSeconds::of(expiresAt)));
}

QCoro::Task<std::optional<QDateTime>> StorageCredentialStore::readGoogleAccessTokenExpiry() const {
    const std::optional<QString> text = co_await googleAccessTokenExpiryStore.read();
    if (!text) {
        co_return std::nullopt;
    }
    const std::optional<double> seconds = DoubleText::parse(*text);
    if (!seconds) {
        co_return std::nullopt;
    }
    co_return EpochSeconds::toInstant(*seconds);
}

QCoro::Task<> StorageCredentialStore::clearGoogleTokens() const {
    const KeychainStore access = googleAccessTokenStore;
    const KeychainStore refresh = googleRefreshTokenStore;
    const KeychainStore expiry = googleAccessTokenExpiryStore;
    co_await access.remove();
    co_await refresh.remove();
    co_await expiry.remove();
}
