#pragma once

#include "core/api/FieldRecords.h"
#include "core/json/JsonDecoding.h"

#include <QJsonObject>
#include <QList>
#include <QString>
#include <optional>

// The workspace tree: workspaces (the service calls them teams), spaces, folders and lists.

struct Workspace {
    QString id;
    QString name;
    std::optional<QString> color;
    std::optional<QString> avatar;

    static Workspace fromJson(const Json::JsonObject& json);
    QJsonObject toJson() const;
    bool operator==(const Workspace&) const = default;
};

// The answer to GET team.
struct TeamsResponse {
    QList<Workspace> teams;

    static TeamsResponse fromJson(const Json::JsonObject& json);
    QJsonObject toJson() const;
    bool operator==(const TeamsResponse&) const = default;
};

struct Space {
    QString id;
    QString name;
    std::optional<QList<NVStatus>> statuses;
    std::optional<bool> archived;

    static Space fromJson(const Json::JsonObject& json);
    QJsonObject toJson() const;
    bool operator==(const Space&) const = default;
};

// The answer to GET team/{id}/space.
struct SpacesResponse {
    QList<Space> spaces;

    static SpacesResponse fromJson(const Json::JsonObject& json);
    QJsonObject toJson() const;
    bool operator==(const SpacesResponse&) const = default;
};

struct NVList {
    QString id;
    QString name;
    std::optional<QList<NVStatus>> statuses;
    std::optional<bool> archived;

    static NVList fromJson(const Json::JsonObject& json);
    QJsonObject toJson() const;
    bool operator==(const NVList&) const = default;
};

// The answer to GET space/{id}/list.
struct ListsResponse {
    QList<NVList> lists;

    static ListsResponse fromJson(const Json::JsonObject& json);
    QJsonObject toJson() const;
    bool operator==(const ListsResponse&) const = default;
};

struct Folder {
    QString id;
    QString name;
    std::optional<QList<NVList>> lists;
    std::optional<bool> archived;

    static Folder fromJson(const Json::JsonObject& json);
    QJsonObject toJson() const;
    bool operator==(const Folder&) const = default;
};

// The answer to GET space/{id}/folder.
struct FoldersResponse {
    QList<Folder> folders;

    static FoldersResponse fromJson(const Json::JsonObject& json);
    QJsonObject toJson() const;
    bool operator==(const FoldersResponse&) const = default;
};
