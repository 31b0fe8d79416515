#include "core/storage/GoogleDriveProvider.h"

#include "core/storage/StorageProviderError.h"
#include "core/storage/StorageTransfer.h"
#include "core/support/FileError.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUuid>

namespace {
QString translated(const char* text) {
    return QCoreApplication::translate("GoogleDriveProvider", text);
}

QString notSignedInText() {
    return translated("Sign in with Google to connect Drive.");
}

QNetworkRequest authorized(const QUrl& url, const QString& accessToken, const QByteArray& contentType) {
    QNetworkRequest request(url);
    request.setRawHeader(QByteArrayLiteral("Authorization"), QByteArrayLiteral("Bearer ") + accessToken.toUtf8());
    request.setHeader(QNetworkRequest::ContentTypeHeader, contentType);
    return request;
}

StorageProviderError failure(const StorageTransfer::Answer& answer, const char* fallback) {
    return StorageProviderError::uploadFailed(
        DriveErrorResponse::messageIn(answer.body).value_or(translated(fallback)));
}

QByteArray readWhole(const QUrl& fileURL) {
    QFile file(fileURL.toLocalFile());
    if (!file.open(QIODevice::ReadOnly)) {
        throw FileError(file.fileName(), file.errorString());
    }
    return file.readAll();
}

QCoro::Task<bool> tokenStored(StorageCredentialStore credentials) {
    QCoro::Task<std::optional<QString>> readingAccess = credentials.googleAccessTokenStore.read();
    if ((co_await std::move(readingAccess)).has_value()) {
        co_return true;
    }
    QCoro::Task<std::optional<QString>> readingRefresh = credentials.googleRefreshTokenStore.read();
    co_return (co_await std::move(readingRefresh)).has_value();
}
} // namespace

GoogleDriveProvider::GoogleDriveProvider(QString folderID, GoogleDriveAuthManager& auth, QNetworkAccessManager* session,
                                         GoogleAddresses addresses)
    : m_folderID(std::move(folderID))
    , m_auth(auth)
    , m_session(session)
    , m_addresses(std::move(addresses)) {}

QString GoogleDriveProvider::displayName() const {
    return QStringLiteral("Google Drive");
}

void GoogleDriveProvider::validateConfiguration() const {
    if (!m_auth.isConnected()) {
        throw StorageProviderError::missingConfiguration(notSignedInText());
    }
}

QByteArray GoogleDriveProvider::metadata(const QString& filename, const QString& folderID) {
    QJsonObject metadata{{QStringLiteral("name"), filename}};
    if (!folderID.isEmpty()) {
        metadata.insert(QStringLiteral("parents"), QJsonArray{folderID});
    }
    return QJsonDocument(metadata).toJson(QJsonDocument::Compact);
}

QCoro::Task<QUrl> GoogleDriveProvider::upload(QUrl fileURL, QString filename) const {
    // The keychain is asked rather than what the sign-in last knew, which may not be known yet.
    QCoro::Task<bool> checking = tokenStored(m_auth.credentials());
    if (!co_await std::move(checking)) {
        throw StorageProviderError::missingConfiguration(notSignedInText());
    }
    // One token serves both requests.
    QCoro::Task<QString> authorizing = m_auth.validAccessToken();
    const QString accessToken = co_await std::move(authorizing);
    QCoro::Task<DriveFileResponse> uploading = uploadFile(readWhole(fileURL), filename, accessToken);
    const DriveFileResponse file = co_await std::move(uploading);
    QCoro::Task<> sharing = makePubliclyViewable(file.id, accessToken);
    co_await std::move(sharing);
    const QUrl link(file.webViewLink.value_or(QString()), QUrl::StrictMode);
    co_return file.webViewLink&& link.isValid() ? link : m_addresses.fileViewURL(file.id);
}

QCoro::Task<DriveFileResponse> GoogleDriveProvider::uploadFile(QByteArray data, QString filename,
                                                               QString accessToken) const {
    const QByteArray boundary = "norvanebar-" + QUuid::createUuid().toByteArray(QUuid::WithoutBraces);
    QByteArray body;
    body.reserve(data.size() + 512);
    body += "--" + boundary + "\r\n";
    body += "Content-Type: application/json; charset=UTF-8\r\n\r\n";
    body += metadata(filename, m_folderID);
    body += "\r\n--" + boundary + "\r\n";
    body += "Content-Type: application/octet-stream\r\n\r\n";
    body += data;
    data.clear();
    body += "\r\n--" + boundary + "--\r\n";
    const QNetworkRequest request =
        authorized(m_addresses.uploadURL(), accessToken, "multipart/related; boundary=" + boundary);
    QCoro::Task<StorageTransfer::Answer> sending =
        StorageTransfer::send(m_session, request, QByteArrayLiteral("POST"), std::move(body));
    const StorageTransfer::Answer answer = co_await std::move(sending);
    if (!answer.succeeded()) {
        throw failure(answer, QT_TRANSLATE_NOOP("GoogleDriveProvider", "Google Drive upload failed."));
    }
    co_return Json::decode<DriveFileResponse>(Json::parse(answer.body), QStringLiteral("$"));
}

QCoro::Task<> GoogleDriveProvider::makePubliclyViewable(QString fileID, QString accessToken) const {
    const QNetworkRequest request =
        authorized(m_addresses.permissionsURL(fileID), accessToken, QByteArrayLiteral("application/json"));
    const QByteArray body = QJsonDocument(QJsonObject{{QStringLiteral("type"), QStringLiteral("anyone")},
                                                      {QStringLiteral("role"), QStringLiteral("reader")}})
                                .toJson(QJsonDocument::Compact);
    QCoro::Task<StorageTransfer::Answer> sending =
        StorageTransfer::send(m_session, request, QByteArrayLiteral("POST"), body);
    const StorageTransfer::Answer answer = co_await std::move(sending);
    if (!answer.succeeded()) {
        throw failure(answer, QT_TRANSLATE_NOOP("GoogleDriveProvider", "Could not make the file viewable."));
    }
}
