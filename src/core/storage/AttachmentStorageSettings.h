#pragma once

#include "core/auth/StorageCredentialStore.h"
#include "core/settings/SettingsStore.h"
#include "core/storage/GoogleDriveAuthManager.h"
#include "core/storage/StorageProviderRegistry.h"

#include <QObject>
#include <QString>
#include <qcoro/qcorotask.h>

// What the "Attachments" tab of the settings knows and does besides the settings it binds: the R2
// key pair being typed, which is stored in the secret store and never in the settings file, the
// result of "Test connection" or of a Google sign-in, and whether Google Drive is connected. A
// failure is shown as the result; nothing here throws.
class AttachmentStorageSettings : public QObject {
    Q_OBJECT

public:
    // All four must outlive this object.
    AttachmentStorageSettings(SettingsStore& settings, const StorageProviderRegistry& providers,
                              const StorageCredentialStore& credentials, GoogleDriveAuthManager& googleAuth,
                              QObject* parent = nullptr);

    // The key pair as typed.
    const QString& r2AccessKeyID() const { return m_r2AccessKeyID; }
    void setR2AccessKeyID(QString accessKeyID);
    const QString& r2SecretAccessKey() const { return m_r2SecretAccessKey; }
    void setR2SecretAccessKey(QString secretAccessKey);

    const QString& testResult() const { return m_testResult; }
    bool testSucceeded() const { return m_testSucceeded; }
    bool isTesting() const { return m_isTesting; }
    bool googleConnected() const { return m_googleAuth.isConnected(); }
    bool isConnectingGoogle() const { return m_isConnectingGoogle; }

    // Fills the two key fields from the secret store, as the tab appears; what is typed while the
    // store answers stays.
    QCoro::Task<> loadR2Credentials();
    // Stores the two key fields, each trimmed, unless either is then empty; a failure to store them
    // becomes the result.
    QCoro::Task<> saveR2Credentials();
    // Saves the key pair, then checks the chosen provider's configuration as it stands, without a
    // request to the provider.
    QCoro::Task<> testConnection();
    // Connected while the refresh token, or failing that the access token, can be read; the Drive
    // provider's validation sees the same.
    QCoro::Task<> refreshGoogleConnectionState();
    // Signs in to Google in the browser; the result says "Connected to Google Drive." or why not.
    // Either way the connection state is read again.
    QCoro::Task<> connectGoogle();
    // Ends a sign-in that waits for the browser, as the browser itself never reports a cancel.
    void cancelConnectingGoogle();
    // Forgets the Google tokens.
    QCoro::Task<> disconnectGoogle();

signals:
    // The result, its success, whether a test or a sign-in runs, or the Google connection changed.
    void stateChanged();
    // The key fields were filled from the secret store.
    void r2CredentialsLoaded();

private:
    void showResult(QString text, bool succeeded);

    SettingsStore& m_settings;
    const StorageProviderRegistry& m_providers;
    const StorageCredentialStore& m_credentials;
    GoogleDriveAuthManager& m_googleAuth;
    QString m_r2AccessKeyID;
    QString m_r2SecretAccessKey;
    // Counts the edits of the key fields, so that a reading of the store doesn't overwrite one.
    quint64 m_r2Edits = 0;
    QString m_testResult;
    bool m_testSucceeded = false;
    bool m_isTesting = false;
    bool m_isConnectingGoogle = false;
};
