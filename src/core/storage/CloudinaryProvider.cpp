#include "core/storage/CloudinaryProvider.h"

#include "core/api/Multipart.h"
#include "core/async/Background.h"
#include "core/storage/CloudinaryErrorResponse.h"
#include "core/storage/CloudinaryUploadResponse.h"
#include "core/storage/StorageProviderError.h"
#include "core/storage/StorageTransfer.h"
#include "core/support/FileError.h"
#include "core/support/StrictUtf8.h"

#include <QCoreApplication>
#include <QFile>
#include <QNetworkAccessManager>
#include <cstring>

namespace {

const QByteArray lineEnd = QByteArrayLiteral("\r\n");

// Everything of the body before the file's bytes.
QByteArray bodyHead(const QString& boundary, const QString& uploadPreset, const QString& filename) {
    const QByteArray delimiter = "--" + boundary.toUtf8() + lineEnd;
    return delimiter + "Content-Disposition: form-data; name=\"upload_preset\"" + lineEnd + lineEnd +
           uploadPreset.toUtf8() + lineEnd + delimiter + "Content-Disposition: form-data; name=\"file\"; filename=\"" +
           filename.toUtf8() + '"' + lineEnd + "Content-Type: application/octet-stream" + lineEnd + lineEnd;
}

// Everything of the body after the file's bytes.
QByteArray bodyTail(const QString& boundary) {
    return lineEnd + "--" + boundary.toUtf8() + "--" + lineEnd;
}

// The body with the file at `path` read straight into its place, so that the file is in memory once.
QByteArray bodyAroundFile(const QString& path, const QByteArray& head, const QByteArray& tail) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        throw FileError(path, file.errorString());
    }
    QByteArray body(head.size() + file.size(), Qt::Uninitialized);
    std::memcpy(body.data(), head.constData(), static_cast<size_t>(head.size()));
    const qint64 read = file.read(body.data() + head.size(), file.size());
    if (read < 0) {
        throw FileError(path, file.errorString());
    }
    body.resize(head.size() + read);
    return body + tail;
}

// Qt's own words for a request ended on purpose: the session went away before the upload began.
StorageTransferError sessionEnded() {
    return StorageTransferError(QNetworkReply::OperationCanceledError,
                                QCoreApplication::translate("QNetworkReply", "Operation canceled"));
}

} // namespace

QUrl CloudinaryProvider::defaultAPIBaseURL() {
    return QUrl(QStringLiteral("https://api.cloudinary.com"));
}

CloudinaryProvider::CloudinaryProvider(QString cloudName, QString uploadPreset, QNetworkAccessManager* session,
                                       QUrl apiBaseURL)
    : m_cloudName(std::move(cloudName))
    , m_uploadPreset(std::move(uploadPreset))
    , m_session(session)
    , m_apiBaseURL(std::move(apiBaseURL)) {}

std::shared_ptr<const CloudinaryProvider> CloudinaryProvider::fromSettings(const AppSettings& settings,
                                                                           QNetworkAccessManager* session) {
    const QUrl base = settings.cloudinaryAPIBaseURL ? QUrl(*settings.cloudinaryAPIBaseURL) : defaultAPIBaseURL();
    return std::make_shared<CloudinaryProvider>(settings.cloudinaryCloudName, settings.cloudinaryUploadPreset, session,
                                                base);
}

void CloudinaryProvider::validateConfiguration() const {
    if (m_cloudName.isEmpty()) {
        throw StorageProviderError::missingConfiguration(
            QCoreApplication::translate("CloudinaryProvider", "Cloudinary cloud name is required."));
    }
    if (m_uploadPreset.isEmpty()) {
        throw StorageProviderError::missingConfiguration(
            QCoreApplication::translate("CloudinaryProvider", "Cloudinary upload preset is required."));
    }
}

QCoro::Task<QUrl> CloudinaryProvider::upload(QUrl fileURL, QString filename) const {
    validateConfiguration();
    const QString boundary = Multipart::newBoundary();
    std::function<QByteArray()> build = [path = fileURL.toLocalFile(),
                                         head = bodyHead(boundary, m_uploadPreset, filename),
                                         tail = bodyTail(boundary)] { return bodyAroundFile(path, head, tail); };
    QCoro::Task<QByteArray> building = runInBackground<QByteArray>(std::move(build));
    const QByteArray body = co_await std::move(building);
    if (!m_session) {
        throw sessionEnded();
    }
    QCoro::Task<StorageTransfer::Answer> sending = StorageTransfer::send(
        m_session, uploadRequest(uploadURL(m_apiBaseURL, m_cloudName), boundary), QByteArrayLiteral("POST"), body);
    const StorageTransfer::Answer answer = co_await std::move(sending);
    if (!answer.status) {
        throw StorageProviderError::invalidResponse();
    }
    co_return decodeResponse(*answer.status, answer.body);
}

QUrl CloudinaryProvider::uploadURL(const QUrl& apiBaseURL, const QString& cloudName) {
    QUrl url = apiBaseURL;
    QString path = url.path();
    while (path.endsWith(QLatin1Char('/'))) {
        path.chop(1);
    }
    url.setPath(path + QStringLiteral("/v1_1/") + cloudName + QStringLiteral("/auto/upload"));
    return url;
}

QNetworkRequest CloudinaryProvider::uploadRequest(const QUrl& url, const QString& boundary) {
    QNetworkRequest request(url);
    request.setTransferTimeout(transferTimeoutMs);
    request.setHeader(QNetworkRequest::ContentTypeHeader, Multipart::contentType(boundary));
    return request;
}

QByteArray CloudinaryProvider::multipartBody(const QString& boundary, const QString& uploadPreset,
                                             const QString& filename, const QByteArray& fileData) {
    return bodyHead(boundary, uploadPreset, filename) + fileData + bodyTail(boundary);
}

QUrl CloudinaryProvider::decodeResponse(int status, const QByteArray& body) {
    if (status < 200 || status > 299) {
        throw StorageProviderError::uploadFailed(errorMessage(body).value_or(
            QCoreApplication::translate("CloudinaryProvider", "Cloudinary upload failed (HTTP %1).").arg(status)));
    }
    const CloudinaryUploadResponse response =
        CloudinaryUploadResponse::fromJson(Json::JsonObject::from(Json::parse(body)));
    const QUrl url(response.secureURL.value_or(QString()), QUrl::StrictMode);
    if (url.isEmpty() || !url.isValid()) {
        throw StorageProviderError::invalidResponse();
    }
    return url;
}

std::optional<QString> CloudinaryProvider::errorMessage(const QByteArray& body) {
    try {
        const CloudinaryErrorResponse response =
            CloudinaryErrorResponse::fromJson(Json::JsonObject::from(Json::parse(body)));
        return response.error ? response.error->message : std::nullopt;
    } catch (const DecodingError&) {
        return strictUtf8(body);
    }
}
