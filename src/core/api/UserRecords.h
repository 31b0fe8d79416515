#pragma once

#include "core/json/JsonDecoding.h"

#include <QJsonObject>
#include <QList>
#include <QString>
#include <optional>

// The signed-in user, as the service describes the owner of a token.
struct NVUser {
    qint64 id = 0;
    std::optional<QString> username;
    std::optional<QString> email;
    std::optional<QString> color;
    std::optional<QString> profilePicture;
    std::optional<QString> initials;

    // The user name if there is one, even an empty one; else the email; else "User " and the id.
    QString displayName() const;

    static NVUser fromJson(const Json::JsonObject& json);
    QJsonObject toJson() const;
    bool operator==(const NVUser&) const = default;
};

// A member of a list, offered as an assignee.
struct Member {
    qint64 id = 0;
    std::optional<QString> username;
    std::optional<QString> email;
    std::optional<QString> color;
    std::optional<QString> initials;
    std::optional<QString> profilePicture;

    // The same rule as NVUser::displayName.
    QString displayName() const;

    static Member fromJson(const Json::JsonObject& json);
    QJsonObject toJson() const;
    bool operator==(const Member&) const = default;
};

// The answer to GET user.
struct UserResponse {
    NVUser user;

    static UserResponse fromJson(const Json::JsonObject& json);
    QJsonObject toJson() const;
    bool operator==(const UserResponse&) const = default;
};

// The answer to GET list/{id}/member.
struct MembersResponse {
    QList<Member> members;

    static MembersResponse fromJson(const Json::JsonObject& json);
    QJsonObject toJson() const;
    bool operator==(const MembersResponse&) const = default;
};
