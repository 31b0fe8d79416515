#include "core/settings/StoredAccount.h"

#include "core/json/JsonEncoding.h"

StoredAccount StoredAccount::fromJson(const Json::JsonObject& json) {
    return {
        .id = json.required<qint64>(QStringLiteral("id")),
        .displayName = json.required<QString>(QStringLiteral("displayName")),
        .email = json.optional<QString>(QStringLiteral("email")),
        .color = json.optional<QString>(QStringLiteral("color")),
        .initials = json.optional<QString>(QStringLiteral("initials")),
    };
}

QJsonObject StoredAccount::toJson() const {
    return Json::ObjectBuilder()
        .set(QStringLiteral("id"), id)
        .set(QStringLiteral("displayName"), displayName)
        .set(QStringLiteral("email"), email)
        .set(QStringLiteral("color"), color)
        .set(QStringLiteral("initials"), initials)
        .object();
}
