#pragma once

#include "core/app/AppState.h"
#include "core/storage/AttachmentStorageSettings.h"

#include <QObject>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

// The "Attachments" tab: where a task's files go (Norvane itself, Cloudinary, Cloudflare R2 or
// Google Drive) and each provider's settings. Settings are saved as they change; the R2 key pair is
// kept in the secret store when "Test connection" runs, and is read back when the tab appears.
class AttachmentStorageViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The settings window builds its view models.")
    Q_PROPERTY(QStringList providerNames READ providerNames CONSTANT)
    Q_PROPERTY(int providerIndex READ providerIndex WRITE setProviderIndex NOTIFY settingsChanged)
    Q_PROPERTY(QString cloudinaryCloudName READ cloudinaryCloudName WRITE setCloudinaryCloudName NOTIFY settingsChanged)
    Q_PROPERTY(QString cloudinaryUploadPreset READ cloudinaryUploadPreset WRITE setCloudinaryUploadPreset NOTIFY
                   settingsChanged)
    Q_PROPERTY(QString r2AccountID READ r2AccountID WRITE setR2AccountID NOTIFY settingsChanged)
    Q_PROPERTY(QString r2Bucket READ r2Bucket WRITE setR2Bucket NOTIFY settingsChanged)
    Q_PROPERTY(QString r2PublicURLBase READ r2PublicURLBase WRITE setR2PublicURLBase NOTIFY settingsChanged)
    Q_PROPERTY(QString r2AccessKeyID READ r2AccessKeyID WRITE setR2AccessKeyID NOTIFY r2CredentialsChanged)
    Q_PROPERTY(QString r2SecretAccessKey READ r2SecretAccessKey WRITE setR2SecretAccessKey NOTIFY r2CredentialsChanged)
    Q_PROPERTY(QString googleDriveFolderID READ googleDriveFolderID WRITE setGoogleDriveFolderID NOTIFY settingsChanged)
    Q_PROPERTY(QString testResult READ testResult NOTIFY stateChanged)
    Q_PROPERTY(bool testSucceeded READ testSucceeded NOTIFY stateChanged)
    Q_PROPERTY(bool isTesting READ isTesting NOTIFY stateChanged)
    Q_PROPERTY(bool googleConnected READ googleConnected NOTIFY stateChanged)
    Q_PROPERTY(bool isConnectingGoogle READ isConnectingGoogle NOTIFY stateChanged)

public:
    AttachmentStorageViewModel(AppState& app, QObject* parent = nullptr);

    // "Norvane", "Cloudinary", "Cloudflare R2", "Google Drive": the kinds in their order.
    static QStringList providerNames();
    int providerIndex() const { return int(settings().storageProvider); }
    void setProviderIndex(int index);

    const QString& cloudinaryCloudName() const { return settings().cloudinaryCloudName; }
    void setCloudinaryCloudName(const QString& name);
    const QString& cloudinaryUploadPreset() const { return settings().cloudinaryUploadPreset; }
    void setCloudinaryUploadPreset(const QString& preset);
    const QString& r2AccountID() const { return settings().cloudflareR2AccountID; }
    void setR2AccountID(const QString& accountID);
    const QString& r2Bucket() const { return settings().cloudflareR2Bucket; }
    void setR2Bucket(const QString& bucket);
    const QString& r2PublicURLBase() const { return settings().cloudflareR2PublicURLBase; }
    void setR2PublicURLBase(const QString& base);
    const QString& googleDriveFolderID() const { return settings().googleDriveFolderID; }
    void setGoogleDriveFolderID(const QString& folderID);

    // The key pair as typed, kept only here until it is stored.
    const QString& r2AccessKeyID() const { return m_pane.r2AccessKeyID(); }
    void setR2AccessKeyID(const QString& accessKeyID);
    const QString& r2SecretAccessKey() const { return m_pane.r2SecretAccessKey(); }
    void setR2SecretAccessKey(const QString& secretAccessKey);

    const QString& testResult() const { return m_pane.testResult(); }
    bool testSucceeded() const { return m_pane.testSucceeded(); }
    bool isTesting() const { return m_pane.isTesting(); }
    bool googleConnected() const { return m_pane.googleConnected(); }
    bool isConnectingGoogle() const { return m_pane.isConnectingGoogle(); }

    // The tab came into view: the key pair and the Google connection are read afresh.
    void appeared();
    Q_INVOKABLE void testConnection();
    // "Sign in with Google", its "Cancel" while the browser is out, and "Disconnect".
    Q_INVOKABLE void connectGoogle();
    Q_INVOKABLE void cancelConnectingGoogle();
    Q_INVOKABLE void disconnectGoogle();

signals:
    void settingsChanged();
    void r2CredentialsChanged();
    void stateChanged();

private:
    const AppSettings& settings() const { return m_app.settings().settings(); }
    void setText(QString AppSettings::*field, const QString& text);

    AppState& m_app;
    AttachmentStorageSettings m_pane;
};
