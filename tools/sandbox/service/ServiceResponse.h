#pragma once

#include "sandbox/service/ServiceRequest.h"

#include <QJsonObject>

// One answer of the service, apart from the socket it goes out through.
struct ServiceResponse {
    int status = 200;
    HeaderItems headers;
    QByteArray contentType = "application/json";
    QByteArray body;
    // When set, the body is streamed from this file instead.
    QString filePath;
    // Close the connection without any answer.
    bool dropConnection = false;

    static ServiceResponse json(const QJsonObject& object, int status = 200);
    static ServiceResponse html(const QString& page);
    static ServiceResponse file(const QString& path, const QByteArray& contentType);
    static ServiceResponse dropped();
};
