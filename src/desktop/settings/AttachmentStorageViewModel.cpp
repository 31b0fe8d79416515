#include "desktop/settings/AttachmentStorageViewModel.h"

#include "core/async/StartTask.h"

AttachmentStorageViewModel::AttachmentStorageViewModel(AppState& app, QObject* parent)
    : QObject(parent)
    , m_app(app)
    , m_pane(app.settings(), app.storageProviders(), app.storageCredentials(), app.googleDriveAuth()) {
    connect(&app.settings(), &SettingsStore::settingsChanged, this, &AttachmentStorageViewModel::settingsChanged);
    connect(&m_pane, &AttachmentStorageSettings::stateChanged, this, &AttachmentStorageViewModel::stateChanged);
    connect(&m_pane, &AttachmentStorageSettings::r2CredentialsLoaded, this,
            &AttachmentStorageViewModel::r2CredentialsChanged);
}

QStringList AttachmentStorageViewModel::providerNames() {
    return {tr("Norvane"), StorageProviderRegistry::displayName(StorageProviderKind::cloudinary),
            StorageProviderRegistry::displayName(StorageProviderKind::cloudflareR2),
            StorageProviderRegistry::displayName(StorageProviderKind::googleDrive)};
}

void AttachmentStorageViewModel::setProviderIndex(int index) {
    if (index < int(StorageProviderKind::norvane) || index > int(StorageProviderKind::googleDrive)) {
        return;
    }
    m_app.settings().set(&AppSettings::storageProvider, StorageProviderKind(index));
}

void AttachmentStorageViewModel::setCloudinaryCloudName(const QString& name) {
    setText(&AppSettings::cloudinaryCloudName, name);
}

void AttachmentStorageViewModel::setCloudinaryUploadPreset(const QString& preset) {
    setText(&AppSettings::cloudinaryUploadPreset, preset);
}

void AttachmentStorageViewModel::setR2AccountID(const QString& accountID) {
    setText(&AppSettings::cloudflareR2AccountID, accountID);
}

void AttachmentStorageViewModel::setR2Bucket(const QString& bucket) {
    setText(&AppSettings::cloudflareR2Bucket, bucket);
}

void AttachmentStorageViewModel::setR2PublicURLBase(const QString& base) {
    setText(&AppSettings::cloudflareR2PublicURLBase, base);
}

void AttachmentStorageViewModel::setGoogleDriveFolderID(const QString& folderID) {
    setText(&AppSettings::googleDriveFolderID, folderID);
}

void AttachmentStorageViewModel::setR2AccessKeyID(const QString& accessKeyID) {
    m_pane.setR2AccessKeyID(accessKeyID);
    emit r2CredentialsChanged();
}

void AttachmentStorageViewModel::setR2SecretAccessKey(const QString& secretAccessKey) {
    m_pane.setR2SecretAccessKey(secretAccessKey);
    emit r2CredentialsChanged();
}

void AttachmentStorageViewModel::appeared() {
    startTask(this, m_pane.loadR2Credentials());
    startTask(this, m_pane.refreshGoogleConnectionState());
}

void AttachmentStorageViewModel::testConnection() {
    startTask(this, m_pane.testConnection());
}

void AttachmentStorageViewModel::connectGoogle() {
    startTask(this, m_pane.connectGoogle());
}

void AttachmentStorageViewModel::cancelConnectingGoogle() {
    m_pane.cancelConnectingGoogle();
}

void AttachmentStorageViewModel::disconnectGoogle() {
    startTask(this, m_pane.disconnectGoogle());
}

void AttachmentStorageViewModel::setText(QString AppSettings::*field, const QString& text) {
    m_app.settings().set(field, text);
}
