#include "core/settings/Bookmark.h"

#include "core/json/JsonEncoding.h"

Bookmark Bookmark::fromJson(const Json::JsonObject& json) {
    return {
        .id = json.required<QUuid>(QStringLiteral("id")),
        .name = json.required<QString>(QStringLiteral("name")),
        .urlString = json.required<QString>(QStringLiteral("urlString")),
    };
}

QJsonObject Bookmark::toJson() const {
    return Json::ObjectBuilder()
        .set(QStringLiteral("id"), id)
        .set(QStringLiteral("name"), name)
        .set(QStringLiteral("urlString"), urlString)
        .object();
}
