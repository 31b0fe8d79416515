#include "support/SyncHttpClient.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QHttpMultiPart>
#include <QNetworkProxy>
#include <QTimer>

SyncHttpClient::SyncHttpClient() {
    // Loopback only: a proxy from the environment must not stand between a test and the sandbox.
    m_manager.setProxy(QNetworkProxy::NoProxy);
}

SyncHttpClient::Headers SyncHttpClient::authorization(const QString& token) {
    return token.isEmpty() ? Headers{} : Headers{{"Authorization", token.toUtf8()}};
}

HttpResult SyncHttpClient::wait(QNetworkReply* reply, int timeoutMs) {
    QElapsedTimer clock;
    clock.start();
    QEventLoop loop;
    QTimer timer;
    timer.setSingleShot(true);
    QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    QObject::connect(&timer, &QTimer::timeout, &loop, &QEventLoop::quit);
    timer.start(timeoutMs);
    if (!reply->isFinished()) {
        loop.exec();
    }
    HttpResult result;
    result.timedOut = !reply->isFinished();
    if (result.timedOut) {
        reply->abort();
    }
    result.elapsedMs = clock.elapsed();
    result.status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    result.body = reply->readAll();
    result.headers = reply->rawHeaderPairs();
    result.error = reply->error();
    result.errorString = reply->errorString();
    reply->deleteLater();
    return result;
}

HttpResult SyncHttpClient::send(const QByteArray& method, const QUrl& url, const Headers& headers,
                                const QByteArray& body, int timeoutMs) {
    QNetworkRequest request(url);
    for (const auto& [name, value] : headers) {
        request.setRawHeader(name, value);
    }
    return wait(m_manager.sendCustomRequest(request, method, body), timeoutMs);
}

HttpResult SyncHttpClient::sendMultipart(const QUrl& url, const Headers& headers, QHttpMultiPart* body, int timeoutMs) {
    QNetworkRequest request(url);
    for (const auto& [name, value] : headers) {
        request.setRawHeader(name, value);
    }
    return wait(m_manager.post(request, body), timeoutMs);
}

HttpResult SyncHttpClient::get(const QUrl& url, const QString& token) {
    return send("GET", url, authorization(token));
}

HttpResult SyncHttpClient::postJson(const QUrl& url, const QString& token, const QJsonObject& body) {
    Headers headers = authorization(token);
    headers.append(qMakePair(QByteArray("Content-Type"), QByteArray("application/json")));
    return send("POST", url, headers, QJsonDocument(body).toJson(QJsonDocument::Compact));
}

HttpResult SyncHttpClient::putJson(const QUrl& url, const QString& token, const QJsonObject& body) {
    Headers headers = authorization(token);
    headers.append(qMakePair(QByteArray("Content-Type"), QByteArray("application/json")));
    return send("PUT", url, headers, QJsonDocument(body).toJson(QJsonDocument::Compact));
}
