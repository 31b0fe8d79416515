#include "sandbox/service/ServiceResponse.h"

#include <QJsonDocument>

ServiceResponse ServiceResponse::json(const QJsonObject& object, int status) {
    ServiceResponse response;
    response.status = status;
    response.body = QJsonDocument(object).toJson(QJsonDocument::Compact);
    return response;
}

ServiceResponse ServiceResponse::html(const QString& page) {
    ServiceResponse response;
    response.contentType = "text/html; charset=utf-8";
    response.body = page.toUtf8();
    return response;
}

ServiceResponse ServiceResponse::file(const QString& path, const QByteArray& contentType) {
    ServiceResponse response;
    response.contentType = contentType;
    response.filePath = path;
    return response;
}

ServiceResponse ServiceResponse::dropped() {
    ServiceResponse response;
    response.status = 0;
    response.dropConnection = true;
    return response;
}
