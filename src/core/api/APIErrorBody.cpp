#include "core/api/APIErrorBody.h"

#include "core/json/JsonEncoding.h"

APIErrorBody APIErrorBody::fromJson(const Json::JsonObject& json) {
    return {json.optional<QString>(QStringLiteral("err")), json.optional<QString>(QStringLiteral("ECODE"))};
}

APIErrorBody APIErrorBody::fromAnswer(const QByteArray& data) {
    try {
        return Json::decode<APIErrorBody>(Json::parse(data), QStringLiteral("$"));
    } catch (const DecodingError&) {
        return {};
    }
}

QJsonObject APIErrorBody::toJson() const {
    return Json::ObjectBuilder().set(QStringLiteral("err"), err).set(QStringLiteral("ECODE"), ecode).object();
}
