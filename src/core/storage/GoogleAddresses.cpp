#include "core/storage/GoogleAddresses.h"

namespace {
// `base` with `path` added to its own path.
QUrl under(QUrl base, const QString& path) {
    QString basePath = base.path();
    if (basePath.endsWith(u'/')) {
        basePath.chop(1);
    }
    base.setPath(basePath + path);
    return base;
}

void replace(QUrl& address, const std::optional<QString>& setting) {
    if (setting) {
        address = QUrl(*setting);
    }
}
} // namespace

GoogleAddresses GoogleAddresses::builtIn() {
    return {QUrl(QStringLiteral("https://accounts.google.com")), QUrl(QStringLiteral("https://oauth2.googleapis.com")),
            QUrl(QStringLiteral("https://www.googleapis.com")), QUrl(QStringLiteral("https://www.googleapis.com")),
            QUrl(QStringLiteral("https://drive.google.com"))};
}

GoogleAddresses GoogleAddresses::from(const AppSettings& settings) {
    GoogleAddresses addresses = builtIn();
    replace(addresses.accountsBaseURL, settings.googleAccountsBaseURL);
    replace(addresses.tokenBaseURL, settings.googleOAuthTokenBaseURL);
    replace(addresses.driveAPIBaseURL, settings.googleDriveAPIBaseURL);
    replace(addresses.driveUploadBaseURL, settings.googleDriveUploadBaseURL);
    replace(addresses.driveWebBaseURL, settings.googleDriveWebBaseURL);
    return addresses;
}

QUrl GoogleAddresses::authorizationURL() const {
    return under(accountsBaseURL, QStringLiteral("/o/oauth2/v2/auth"));
}

QUrl GoogleAddresses::tokenURL() const {
    return under(tokenBaseURL, QStringLiteral("/token"));
}

QUrl GoogleAddresses::uploadURL() const {
    QUrl address = under(driveUploadBaseURL, QStringLiteral("/upload/drive/v3/files"));
    address.setQuery(QStringLiteral("uploadType=multipart&fields=id,webViewLink"));
    return address;
}

QUrl GoogleAddresses::permissionsURL(const QString& fileID) const {
    return under(driveAPIBaseURL, QStringLiteral("/drive/v3/files/") + fileID + QStringLiteral("/permissions"));
}

QUrl GoogleAddresses::fileViewURL(const QString& fileID) const {
    return under(driveWebBaseURL, QStringLiteral("/file/d/") + fileID + QStringLiteral("/view"));
}
