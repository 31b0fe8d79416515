#include "support/LoopbackStorageProvider.h"

#include "core/storage/StorageProviderError.h"
#include "core/support/FileError.h"

#include <QCoroNetworkReply>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <memory>

void LoopbackStorageProvider::validateConfiguration() const {
    if (!m_baseUrl.isValid() || m_baseUrl.scheme() != QStringLiteral("http")) {
        throw StorageProviderError::missingConfiguration(QStringLiteral("Set the loopback storage address."));
    }
}

QCoro::Task<QUrl> LoopbackStorageProvider::upload(QUrl fileURL, QString filename) const {
    validateConfiguration();
    QFile file(fileURL.toLocalFile());
    if (!file.open(QIODevice::ReadOnly)) {
        throw FileError(file.fileName(), file.errorString());
    }
    const QByteArray body = file.readAll();
    QNetworkRequest request(m_baseUrl.resolved(QUrl(QStringLiteral("files/") + QUrl::toPercentEncoding(filename))));
    request.setHeader(QNetworkRequest::ContentTypeHeader, QByteArrayLiteral("application/octet-stream"));
    const std::unique_ptr<QNetworkReply> reply(m_session->put(request, body));
    QNetworkReply* const sent = reply.get();
    co_await sent;
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const QByteArray answer = reply->readAll();
    if (status < 200 || status > 299) {
        throw StorageProviderError::uploadFailed(
            QStringLiteral("Loopback storage answered %1: %2").arg(status).arg(QString::fromUtf8(answer)));
    }
    const QUrl url(QJsonDocument::fromJson(answer).object().value(QStringLiteral("url")).toString());
    if (!url.isValid() || url.isEmpty()) {
        throw StorageProviderError::invalidResponse();
    }
    co_return url;
}
