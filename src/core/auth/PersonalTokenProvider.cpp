#include "auth/PersonalTokenProvider.h"

#include "auth/KeychainStoreError.h"
#include "auth/PersonalTokenError.h"

#include <QMutexLocker>
#include <QPointer>

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

QCoro::Task<> PersonalTokenProvider::activate(std::optional<qint64> userID) {
    const qint64 activation = m_assignments.raise();
    const QPointer<PersonalTokenProvider> self(this);
    const KeychainStore legacy = m_legacyKeychain;
    std::optional<QString> token;
    if (userID) {
        token = co_await keychain(*userID).read();
    }
    if (!token) {
        token = co_await legacy.read();
    }
    if (self && self->m_assignments.isCurrent(activation)) {
        self->assignCached(std::move(token));
    }
}

QCoro::Task<> PersonalTokenProvider::commitActiveToken(qint64 forUserID) {
    const std::optional<QString> token = cached();
    if (!token || token->isEmpty()) {
        co_return;
    }
    const KeychainStore legacy = m_legacyKeychain;
    try {
        co_await keychain(forUserID).write(*token);
    } catch (const KeychainStoreError& error) {
        throw PersonalTokenError::keychainFailed(error.errorDescription());
    }
    co_await legacy.remove();
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
