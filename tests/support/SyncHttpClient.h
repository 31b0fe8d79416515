#pragma once

#include "support/HttpResult.h"

#include <QNetworkAccessManager>
#include <QUrl>

class QHttpMultiPart;

// Blocking HTTP for tests: each call runs a QNetworkAccessManager request to its end in a local
// event loop and returns everything about the answer. The service's token goes into the
// Authorization header as it is, as the client sends it.
class SyncHttpClient {
public:
    using Headers = QList<QPair<QByteArray, QByteArray>>;

    static constexpr int defaultTimeoutMs = 60'000;

    SyncHttpClient();

    HttpResult send(const QByteArray& method, const QUrl& url, const Headers& headers = {}, const QByteArray& body = {},
                    int timeoutMs = defaultTimeoutMs);
    // Sends a multipart body that Qt streams from its parts' devices.
    HttpResult sendMultipart(const QUrl& url, const Headers& headers, QHttpMultiPart* body,
                             int timeoutMs = defaultTimeoutMs);

    HttpResult get(const QUrl& url, const QString& token = {});
    HttpResult postJson(const QUrl& url, const QString& token, const QJsonObject& body);
    HttpResult putJson(const QUrl& url, const QString& token, const QJsonObject& body);

    static Headers authorization(const QString& token);

private:
    HttpResult wait(QNetworkReply* reply, int timeoutMs);

    QNetworkAccessManager m_manager;
};
