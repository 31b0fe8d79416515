#include "core/recording/FacecamStyle.h"

#include "core/json/JsonEncoding.h"

FacecamStyle FacecamStyle::fromJson(const Json::JsonObject& json) {
    return {
        .cornerRadius = json.required<double>(QStringLiteral("cornerRadius")),
        .corner = json.required<FacecamCorner>(QStringLiteral("corner")),
        .sizeFraction = json.required<double>(QStringLiteral("sizeFraction")),
        .isVisible = json.required<bool>(QStringLiteral("isVisible")),
        .backgroundKind = json.required<FacecamBackgroundKind>(QStringLiteral("backgroundKind")),
        .blurRadius = json.required<double>(QStringLiteral("blurRadius")),
        .customImagePath = json.optional<QString>(QStringLiteral("customImagePath")),
    };
}

QJsonObject FacecamStyle::toJson() const {
    return Json::ObjectBuilder()
        .set(QStringLiteral("cornerRadius"), cornerRadius)
        .set(QStringLiteral("corner"), corner)
        .set(QStringLiteral("sizeFraction"), sizeFraction)
        .set(QStringLiteral("isVisible"), isVisible)
        .set(QStringLiteral("backgroundKind"), backgroundKind)
        .set(QStringLiteral("blurRadius"), blurRadius)
        .set(QStringLiteral("customImagePath"), customImagePath)
        .object();
}
