#include "core/api/HierarchyRecords.h"

#include "core/json/JsonEncoding.h"

namespace {
// Spaces, folders and lists share one shape: an id, a name, an optional array (statuses, or a
// folder's lists) and an optional archived flag.
template <typename T, typename Element> T decodeNode(const Json::JsonObject& json, const QString& arrayKey) {
    return {json.required<QString>(QStringLiteral("id")), json.required<QString>(QStringLiteral("name")),
            json.optional<QList<Element>>(arrayKey), json.optional<bool>(QStringLiteral("archived"))};
}

template <typename T> QJsonObject encodeNode(const T& node, const QString& arrayKey, const auto& array) {
    return Json::ObjectBuilder()
        .set(QStringLiteral("id"), node.id)
        .set(QStringLiteral("name"), node.name)
        .set(arrayKey, array)
        .set(QStringLiteral("archived"), node.archived)
        .object();
}
} // namespace

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
    return decodeNode<Space, NVStatus>(json, QStringLiteral("statuses"));
}

QJsonObject Space::toJson() const {
    return encodeNode(*this, QStringLiteral("statuses"), statuses);
}

SpacesResponse SpacesResponse::fromJson(const Json::JsonObject& json) {
    return {json.required<QList<Space>>(QStringLiteral("spaces"))};
}

QJsonObject SpacesResponse::toJson() const {
    return Json::ObjectBuilder().set(QStringLiteral("spaces"), spaces).object();
}

NVList NVList::fromJson(const Json::JsonObject& json) {
    return decodeNode<NVList, NVStatus>(json, QStringLiteral("statuses"));
}

QJsonObject NVList::toJson() const {
    return encodeNode(*this, QStringLiteral("statuses"), statuses);
}

ListsResponse ListsResponse::fromJson(const Json::JsonObject& json) {
    return {json.required<QList<NVList>>(QStringLiteral("lists"))};
}

QJsonObject ListsResponse::toJson() const {
    return Json::ObjectBuilder().set(QStringLiteral("lists"), lists).object();
}

Folder Folder::fromJson(const Json::JsonObject& json) {
    return decodeNode<Folder, NVList>(json, QStringLiteral("lists"));
}

QJsonObject Folder::toJson() const {
    return encodeNode(*this, QStringLiteral("lists"), lists);
}

FoldersResponse FoldersResponse::fromJson(const Json::JsonObject& json) {
    return {json.required<QList<Folder>>(QStringLiteral("folders"))};
}

QJsonObject FoldersResponse::toJson() const {
    return Json::ObjectBuilder().set(QStringLiteral("folders"), folders).object();
}
