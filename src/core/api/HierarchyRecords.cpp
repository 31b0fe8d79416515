#include "api/HierarchyRecords.h"

#include "json/JsonEncoding.h"

Workspace Workspace::fromJson(const Json::JsonObject& json) {
    return {json.required<QString>(QStringLiteral("id")), json.required<QString>(QStringLiteral("name")),
            json.optional<QString>(QStringLiteral("color")), json.optional<QString>(QStringLiteral("avatar"))};
}

QJsonObject Workspace::toJson() const {
    return Json::ObjectBuilder()
        .set(QStringLiteral("id"), id)
        .set(QStringLiteral("name"), name)
        .set(QStringLiteral("color"), color)
        .set(QStringLiteral("avatar"), avatar)
        .object();
}

TeamsResponse TeamsResponse::fromJson(const Json::JsonObject& json) {
    return {json.required<QList<Workspace>>(QStringLiteral("teams"))};
}

QJsonObject TeamsResponse::toJson() const {
    return Json::ObjectBuilder().set(QStringLiteral("teams"), teams).object();
}

Space Space::fromJson(const Json::JsonObject& json) {
    return {json.required<QString>(QStringLiteral("id")), json.required<QString>(QStringLiteral("name")),
            json.optional<QList<NVStatus>>(QStringLiteral("statuses")),
            json.optional<bool>(QStringLiteral("archived"))};
}

QJsonObject Space::toJson() const {
    return Json::ObjectBuilder()
        .set(QStringLiteral("id"), id)
        .set(QStringLiteral("name"), name)
        .set(QStringLiteral("statuses"), statuses)
        .set(QStringLiteral("archived"), archived)
        .object();
}

SpacesResponse SpacesResponse::fromJson(const Json::JsonObject& json) {
    return {json.required<QList<Space>>(QStringLiteral("spaces"))};
}

QJsonObject SpacesResponse::toJson() const {
    return Json::ObjectBuilder().set(QStringLiteral("spaces"), spaces).object();
}

NVList NVList::fromJson(const Json::JsonObject& json) {
    return {json.required<QString>(QStringLiteral("id")), json.required<QString>(QStringLiteral("name")),
            json.optional<QList<NVStatus>>(QStringLiteral("statuses")),
            json.optional<bool>(QStringLiteral("archived"))};
}

QJsonObject NVList::toJson() const {
    return Json::ObjectBuilder()
        .set(QStringLiteral("id"), id)
        .set(QStringLiteral("name"), name)
        .set(QStringLiteral("statuses"), statuses)
        .set(QStringLiteral("archived"), archived)
        .object();
}

ListsResponse ListsResponse::fromJson(const Json::JsonObject& json) {
    return {json.required<QList<NVList>>(QStringLiteral("lists"))};
}

QJsonObject ListsResponse::toJson() const {
    return Json::ObjectBuilder().set(QStringLiteral("lists"), lists).object();
}

Folder Folder::fromJson(const Json::JsonObject& json) {
    return {json.required<QString>(QStringLiteral("id")), json.required<QString>(QStringLiteral("name")),
            json.optional<QList<NVList>>(QStringLiteral("lists")), json.optional<bool>(QStringLiteral("archived"))};
}

QJsonObject Folder::toJson() const {
    return Json::ObjectBuilder()
        .set(QStringLiteral("id"), id)
        .set(QStringLiteral("name"), name)
        .set(QStringLiteral("lists"), lists)
        .set(QStringLiteral("archived"), archived)
        .object();
}

FoldersResponse FoldersResponse::fromJson(const Json::JsonObject& json) {
    return {json.required<QList<Folder>>(QStringLiteral("folders"))};
}

QJsonObject FoldersResponse::toJson() const {
    return Json::ObjectBuilder().set(QStringLiteral("folders"), folders).object();
}
