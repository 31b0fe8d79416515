#include "core/auth/PersonalTokenProvider.h"

#include "core/async/LoadGuard.h"
#include "core/auth/KeychainStoreError.h"
#include "core/auth/PersonalTokenError.h"

#include <QMutexLocker>

namespace {
// Copies of the items, so that nothing refers to the provider once the reads are under way.
QCoro::Task<std::optional<QString>> readEither(std::optional<KeychainStore> own, KeychainStore legacy) {
    std::optional<QString> token;
    if (own) {
        QCoro::Task<std::optional<QString>> reading = own->read();
        token = co_await std::move(reading);
    }
    if (!token) {
        QCoro::Task<std::optional<QString>> readingLegacy = legacy.read();
        token = co_await std::move(readingLegacy);
    }
    co_return token;
}
} // namespace

PersonalTokenProvider::PersonalTokenProvider(SecretStore* secrets, QObject* parent)
    : QObject(parent)
    , m_secrets(secrets)
    , m_legacyKeychain{KeychainStore::appService, QStringLiteral("norvane-personal-token"), secrets} {}

KeychainStore PersonalTokenProvider::keychain(qint64 forUserID) const {
    return {KeychainStore::appService, QStringLiteral("norvane-token-") + QString::number(forUserID), m_secrets};
}

std::optional<QString> PersonalTokenProvider::cached() const {
    const QMutexLocker lock(&m_mutex);
    return m_cached;
}

void PersonalTokenProvider::setCached(std::optional<QString> token) {
    m_assignments.raise();
    assignCached(std::move(token));
}

void PersonalTokenProvider::assignCached(std::optional<QString> token) {
    const QMutexLocker lock(&m_mutex);
    m_cached = std::move(token);
}

std::optional<QString> PersonalTokenProvider::authorizationValue() const {
    return cached();
}

QCoro::Task<std::optional<QString>> PersonalTokenProvider::readToken(std::optional<qint64> userID) const {
    return readEither(userID ? std::optional(keychain(*userID)) : std::nullopt, m_legacyKeychain);
}

QCoro::Task<> PersonalTokenProvider::activate(std::optional<qint64> userID) {
    QCoro::Task<std::optional<std::optional<QString>>> reading =
        awaitGuarded(LoadGuard(this, m_assignments), readToken(userID));
    if (std::optional<std::optional<QString>> token = co_await std::move(reading)) {
        assignCached(std::move(*token));
    }
}

QCoro::Task<> PersonalTokenProvider::commitActiveToken(qint64 forUserID) {
    const std::optional<QString> token = cached();
    if (!token || token->isEmpty()) {
        co_return;
    }
    const KeychainStore legacy = m_legacyKeychain;
    try {
        QCoro::Task<> writing = keychain(forUserID).write(*token);
        co_await std::move(writing);
    } catch (const KeychainStoreError& error) {
        throw PersonalTokenError::keychainFailed(error.errorDescription());
    }
    QCoro::Task<> removal = legacy.remove();
    co_await std::move(removal);
}

QString PersonalTokenProvider::normalize(const QString& text) {
    QString token = text.trimmed();
    token.remove(QChar(0x200B)); // zero-width space
    token.remove(QChar(0xFEFF)); // byte-order mark
    token.remove(QChar(0x00A0)); // no-break space
    const QLatin1String bearer("bearer ");
    if (token.startsWith(bearer, Qt::CaseInsensitive)) {
        token = token.sliced(bearer.size()).trimmed();
    }
    return token;
}
