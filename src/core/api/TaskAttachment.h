#pragma once

#include "core/json/JsonDecoding.h"

#include <QJsonObject>
#include <QString>
#include <optional>

// The service's answer to an attachment upload. Every field is optional, and the id, version and
// date are read leniently because the service sends them sometimes as text, sometimes as numbers.
struct TaskAttachment {
    std::optional<QString> id;
    std::optional<QString> url;
    std::optional<QString> title;
    std::optional<QString> fileExtension;
    std::optional<QString> version;
    std::optional<qint64> date;
    std::optional<QString> name;
    std::optional<QString> thumbnailSmall;

    // A string as it stands, or a number in decimal (a double truncated toward zero); anything
    // else, a missing key included, is absent. Never fails.
    static std::optional<QString> flexibleString(const Json::JsonObject& json, const QString& key);
    // A whole number, a double truncated toward zero, or text of base-10 digits with one optional
    // leading sign; anything else, overflow included, is absent. Never fails.
    static std::optional<qint64> flexibleInt64(const Json::JsonObject& json, const QString& key);

    static TaskAttachment fromJson(const Json::JsonObject& json);
    QJsonObject toJson() const;
    bool operator==(const TaskAttachment&) const = default;
};
