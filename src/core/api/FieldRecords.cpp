#include "core/api/FieldRecords.h"

#include "core/json/JsonEncoding.h"

NVStatus NVStatus::fromJson(const Json::JsonObject& json) {
    return {json.required<QString>(QStringLiteral("status")), json.optional<QString>(QStringLiteral("color")),
            json.optional<QString>(QStringLiteral("type"))};
}

QJsonObject NVStatus::toJson() const {
    return Json::ObjectBuilder()
        .set(QStringLiteral("status"), status)
        .set(QStringLiteral("color"), color)
        .set(QStringLiteral("type"), type)
        .object();
}

NVTag NVTag::fromJson(const Json::JsonObject& json) {
    return {json.required<QString>(QStringLiteral("name")), json.optional<QString>(QStringLiteral("tag_fg")),
            json.optional<QString>(QStringLiteral("tag_bg"))};
}

QJsonObject NVTag::toJson() const {
    return Json::ObjectBuilder()
        .set(QStringLiteral("name"), name)
        .set(QStringLiteral("tag_fg"), tagFg)
        .set(QStringLiteral("tag_bg"), tagBg)
        .object();
}

TagsResponse TagsResponse::fromJson(const Json::JsonObject& json) {
    return {json.required<QList<NVTag>>(QStringLiteral("tags"))};
}

QJsonObject TagsResponse::toJson() const {
    return Json::ObjectBuilder().set(QStringLiteral("tags"), tags).object();
}

CustomField::TypeConfig::Option CustomField::TypeConfig::Option::fromJson(const Json::JsonObject& json) {
    return {json.required<QString>(QStringLiteral("id")), json.optional<QString>(QStringLiteral("name")),
            json.optional<QString>(QStringLiteral("label")), json.optional<QString>(QStringLiteral("color"))};
}

QJsonObject CustomField::TypeConfig::Option::toJson() const {
    return Json::ObjectBuilder()
        .set(QStringLiteral("id"), id)
        .set(QStringLiteral("name"), name)
        .set(QStringLiteral("label"), label)
        .set(QStringLiteral("color"), color)
        .object();
}

CustomField::TypeConfig CustomField::TypeConfig::fromJson(const Json::JsonObject& json) {
    return {json.optional<QList<Option>>(QStringLiteral("options"))};
}

QJsonObject CustomField::TypeConfig::toJson() const {
    return Json::ObjectBuilder().set(QStringLiteral("options"), options).object();
}

const QSet<QString>& CustomField::editableTypes() {
    static const QSet<QString> types{
        QStringLiteral("text"),   QStringLiteral("short_text"), QStringLiteral("number"),   QStringLiteral("drop_down"),
        QStringLiteral("labels"), QStringLiteral("date"),       QStringLiteral("checkbox"), QStringLiteral("url"),
        QStringLiteral("email"),  QStringLiteral("phone"),
    };
    return types;
}

CustomField CustomField::fromJson(const Json::JsonObject& json) {
    return {json.required<QString>(QStringLiteral("id")), json.required<QString>(QStringLiteral("name")),
            json.required<QString>(QStringLiteral("type")), json.optional<TypeConfig>(QStringLiteral("type_config")),
            json.optional<bool>(QStringLiteral("required"))};
}

QJsonObject CustomField::toJson() const {
    return Json::ObjectBuilder()
        .set(QStringLiteral("id"), id)
        .set(QStringLiteral("name"), name)
        .set(QStringLiteral("type"), type)
        .set(QStringLiteral("type_config"), typeConfig)
        .set(QStringLiteral("required"), required)
        .object();
}

FieldsResponse FieldsResponse::fromJson(const Json::JsonObject& json) {
    return {json.required<QList<CustomField>>(QStringLiteral("fields"))};
}

QJsonObject FieldsResponse::toJson() const {
    return Json::ObjectBuilder().set(QStringLiteral("fields"), fields).object();
}
