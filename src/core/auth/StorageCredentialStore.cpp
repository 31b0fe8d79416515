#include "core/auth/StorageCredentialStore.h"

#include "core/auth/KeychainStoreError.h"
#include "core/auth/StorageCredentialError.h"
#include "core/support/DoubleText.h"
#include "core/support/EpochSeconds.h"

namespace {
KeychainStore item(const char* account, SecretStore* secrets) {
    return {KeychainStore::appService, QLatin1String(account), secrets};
}

QCoro::Task<> write(KeychainStore item, QString value) {
    try {
        QCoro::Task<> writing = item.write(std::move(value));
        co_await std::move(writing);
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
    QCoro::Task<> accessWrite = write(accessKey, access);
    co_await std::move(accessWrite);
    QCoro::Task<> secretWrite = write(secretKey, secret);
    co_await std::move(secretWrite);
}

QCoro::Task<> StorageCredentialStore::setGoogleTokens(QString accessToken, std::optional<QString> refreshToken,
                                                      QDateTime expiresAt) const {
    const KeychainStore access = googleAccessTokenStore;
    const KeychainStore refresh = googleRefreshTokenStore;
    const KeychainStore expiry = googleAccessTokenExpiryStore;
    QCoro::Task<> accessWrite = write(access, std::move(accessToken));
    co_await std::move(accessWrite);
    if (refreshToken && !refreshToken->isEmpty()) {
        QCoro::Task<> refreshWrite = write(refresh, std::move(*refreshToken));
        co_await std::move(refreshWrite);
    }
    QCoro::Task<> expiryWrite = write(expiry, DoubleText::shortest(EpochSeconds::of(expiresAt)));
    co_await std::move(expiryWrite);
}

QCoro::Task<std::optional<QDateTime>> StorageCredentialStore::readGoogleAccessTokenExpiry() const {
    QCoro::Task<std::optional<QString>> reading = googleAccessTokenExpiryStore.read();
    const std::optional<QString> text = co_await std::move(reading);
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
    QCoro::Task<> accessRemoval = access.remove();
    co_await std::move(accessRemoval);
    QCoro::Task<> refreshRemoval = refresh.remove();
    co_await std::move(refreshRemoval);
    QCoro::Task<> expiryRemoval = expiry.remove();
    co_await std::move(expiryRemoval);
}
