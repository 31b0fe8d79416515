#include "core/storage/AttachmentStorageSettings.h"

#include "core/auth/StorageCredentialError.h"
#include "core/storage/StorageProviderError.h"

#include <QCoreApplication>
#include <QPointer>

AttachmentStorageSettings::AttachmentStorageSettings(SettingsStore& settings, const StorageProviderRegistry& providers,
                                                     const StorageCredentialStore& credentials,
                                                     GoogleDriveAuthManager& googleAuth, QObject* parent)
    : QObject(parent)
    , m_settings(settings)
    , m_providers(providers)
    , m_credentials(credentials)
    , m_googleAuth(googleAuth) {
    connect(&googleAuth, &GoogleDriveAuthManager::connectedChanged, this, &AttachmentStorageSettings::stateChanged);
}

void AttachmentStorageSettings::setR2AccessKeyID(QString accessKeyID) {
    m_r2AccessKeyID = std::move(accessKeyID);
    ++m_r2Edits;
}

void AttachmentStorageSettings::setR2SecretAccessKey(QString secretAccessKey) {
    m_r2SecretAccessKey = std::move(secretAccessKey);
    ++m_r2Edits;
}

QCoro::Task<> AttachmentStorageSettings::loadR2Credentials() {
    QPointer<AttachmentStorageSettings> self(this);
    const quint64 editsBefore = m_r2Edits;
    QCoro::Task<std::optional<QString>> readingAccessKey = m_credentials.accessKeyStore.read();
    const std::optional<QString> accessKeyID = co_await std::move(readingAccessKey);
    if (!self) {
        co_return;
    }
    QCoro::Task<std::optional<QString>> readingSecret = m_credentials.secretKeyStore.read();
    const std::optional<QString> secretAccessKey = co_await std::move(readingSecret);
    if (!self || m_r2Edits != editsBefore) {
        co_return;
    }
    m_r2AccessKeyID = accessKeyID.value_or(QString());
    m_r2SecretAccessKey = secretAccessKey.value_or(QString());
    emit r2CredentialsLoaded();
}

QCoro::Task<> AttachmentStorageSettings::saveR2Credentials() {
    const QString accessKeyID = m_r2AccessKeyID.trimmed();
    const QString secretAccessKey = m_r2SecretAccessKey.trimmed();
    if (accessKeyID.isEmpty() || secretAccessKey.isEmpty()) {
        co_return;
    }
    QPointer<AttachmentStorageSettings> self(this);
    try {
        QCoro::Task<> storing = m_credentials.setR2Credentials(accessKeyID, secretAccessKey);
        co_await std::move(storing);
    } catch (const StorageCredentialError& error) {
        if (self) {
            showResult(error.errorDescription(), false);
        }
    }
}

QCoro::Task<> AttachmentStorageSettings::testConnection() {
    QPointer<AttachmentStorageSettings> self(this);
    QCoro::Task<> saving = saveR2Credentials();
    co_await std::move(saving);
    if (!self) {
        co_return;
    }
    m_isTesting = true;
    m_testResult.clear();
    emit stateChanged();
    // The provider is made from what is stored, the key pair read back from the keyring.
    QCoro::Task<std::shared_ptr<const ExternalStorageProvider>> making =
        m_providers.makeProvider(m_settings.settings());
    const std::shared_ptr<const ExternalStorageProvider> provider = co_await std::move(making);
    if (!self) {
        co_return;
    }
    m_isTesting = false;
    if (!provider) {
        showResult(tr("Select an external storage provider first."), false);
        co_return;
    }
    try {
        provider->validateConfiguration();
        showResult(provider->displayName() + tr(" configuration looks valid."), true);
    } catch (const StorageProviderError& error) {
        showResult(error.errorDescription(), false);
    }
}

QCoro::Task<> AttachmentStorageSettings::refreshGoogleConnectionState() {
    QCoro::Task<> refreshing = m_googleAuth.refreshConnectionState();
    co_await std::move(refreshing);
}

QCoro::Task<> AttachmentStorageSettings::connectGoogle() {
    if (m_isConnectingGoogle) {
        co_return;
    }
    QPointer<AttachmentStorageSettings> self(this);
    m_isConnectingGoogle = true;
    emit stateChanged();
    std::optional<QString> failure;
    try {
        QCoro::Task<> signingIn = m_googleAuth.signIn();
        co_await std::move(signingIn);
    } catch (const std::exception& error) {
        // Every failure of a sign-in carries the text the user sees.
        failure = QString::fromUtf8(error.what());
    }
    if (!self) {
        co_return;
    }
    m_isConnectingGoogle = false;
    if (failure) {
        showResult(*failure, false);
    } else {
        showResult(tr("Connected to Google Drive."), true);
    }
    QCoro::Task<> refreshing = refreshGoogleConnectionState();
    co_await std::move(refreshing);
}

void AttachmentStorageSettings::cancelConnectingGoogle() {
    m_googleAuth.cancelSignIn();
}

QCoro::Task<> AttachmentStorageSettings::disconnectGoogle() {
    QPointer<AttachmentStorageSettings> self(this);
    QCoro::Task<> signingOut = m_googleAuth.signOut();
    co_await std::move(signingOut);
    if (!self) {
        co_return;
    }
    QCoro::Task<> refreshing = refreshGoogleConnectionState();
    co_await std::move(refreshing);
}

void AttachmentStorageSettings::showResult(QString text, bool succeeded) {
    m_testResult = std::move(text);
    m_testSucceeded = succeeded;
    emit stateChanged();
}
