#include "core/settings/SavedLocation.h"

#include "core/json/JsonEncoding.h"

SavedLocation SavedLocation::fromJson(const Json::JsonObject& json) {
    return {
        .workspaceID = json.required<QString>(QStringLiteral("workspaceID")),
        .listID = json.required<QString>(QStringLiteral("listID")),
        .listName = json.required<QString>(QStringLiteral("listName")),
        .pathDescription = json.required<QString>(QStringLiteral("pathDescription")),
    };
}

QJsonObject SavedLocation::toJson() const {
    return Json::ObjectBuilder()
        .set(QStringLiteral("workspaceID"), workspaceID)
        .set(QStringLiteral("listID"), listID)
        .set(QStringLiteral("listName"), listName)
        .set(QStringLiteral("pathDescription"), pathDescription)
        .object();
}
