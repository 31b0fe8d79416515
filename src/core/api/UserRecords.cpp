#include "core/api/UserRecords.h"

#include "core/json/JsonEncoding.h"

namespace {
QString displayNameOf(qint64 id, const std::optional<QString>& username, const std::optional<QString>& email) {
    if (username) {
        return *username;
    }
    if (email) {
        return *email;
    }
    return QStringLiteral("User ") + QString::number(id);
}
} // namespace

QString NVUser::displayName() const {
    return displayNameOf(id, username, email);
}

NVUser NVUser::fromJson(const Json::JsonObject& json) {
    return {json.required<qint64>(QStringLiteral("id")),
            json.optional<QString>(QStringLiteral("username")),
            json.optional<QString>(QStringLiteral("email")),
            json.optional<QString>(QStringLiteral("color")),
            json.optional<QString>(QStringLiteral("profilePicture")),
            json.optional<QString>(QStringLiteral("initials"))};
}

QJsonObject NVUser::toJson() const {
    return Json::ObjectBuilder()
        .set(QStringLiteral("id"), id)
        .set(QStringLiteral("username"), username)
        .set(QStringLiteral("email"), email)
        .set(QStringLiteral("color"), color)
        .set(QStringLiteral("profilePicture"), profilePicture)
        .set(QStringLiteral("initials"), initials)
        .object();
}

QString Member::displayName() const {
    return displayNameOf(id, username, email);
}

Member Member::fromJson(const Json::JsonObject& json) {
    return {
        json.required<qint64>(QStringLiteral("id")),        json.optional<QString>(QStringLiteral("username")),
        json.optional<QString>(QStringLiteral("email")),    json.optional<QString>(QStringLiteral("color")),
        json.optional<QString>(QStringLiteral("initials")), json.optional<QString>(QStringLiteral("profilePicture"))};
}

QJsonObject Member::toJson() const {
    return Json::ObjectBuilder()
        .set(QStringLiteral("id"), id)
        .set(QStringLiteral("username"), username)
        .set(QStringLiteral("email"), email)
        .set(QStringLiteral("color"), color)
        .set(QStringLiteral("initials"), initials)
        .set(QStringLiteral("profilePicture"), profilePicture)
        .object();
}

UserResponse UserResponse::fromJson(const Json::JsonObject& json) {
    return {json.required<NVUser>(QStringLiteral("user"))};
}

QJsonObject UserResponse::toJson() const {
    return Json::ObjectBuilder().set(QStringLiteral("user"), user).object();
}

MembersResponse MembersResponse::fromJson(const Json::JsonObject& json) {
    return {json.required<QList<Member>>(QStringLiteral("members"))};
}

QJsonObject MembersResponse::toJson() const {
    return Json::ObjectBuilder().set(QStringLiteral("members"), members).object();
}
