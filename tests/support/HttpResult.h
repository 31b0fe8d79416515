#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QList>
#include <QNetworkReply>
#include <QPair>

// The whole answer to one request of SyncHttpClient: what a test checks.
struct HttpResult {
    int status = 0;
    QByteArray body;
    QList<QPair<QByteArray, QByteArray>> headers;
    QNetworkReply::NetworkError error = QNetworkReply::NoError;
    QString errorString;
    bool timedOut = false;
    qint64 elapsedMs = 0;

    QByteArray header(QByteArrayView name) const {
        for (const auto& [key, value] : headers) {
            if (key.compare(name, Qt::CaseInsensitive) == 0) {
                return value;
            }
        }
        return {};
    }
    QJsonObject json() const { return QJsonDocument::fromJson(body).object(); }
    // Whether an answer arrived at all: false for a refused, dropped or timed-out connection.
    bool answered() const { return status != 0; }
};
