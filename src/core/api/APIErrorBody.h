#pragma once

#include "core/json/JsonDecoding.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <optional>

// The body the service sends with a failure: a message and a machine code.
struct APIErrorBody {
    // The service's code of the storage limit being reached.
    static constexpr QLatin1StringView storageLimitCode{"GBUSED_005"};

    std::optional<QString> err;
    std::optional<QString> ecode;

    static APIErrorBody fromJson(const Json::JsonObject& json);
    // The error body of an answer; one that doesn't decode counts as one with neither field.
    static APIErrorBody fromAnswer(const QByteArray& data);
    QJsonObject toJson() const;
    bool operator==(const APIErrorBody&) const = default;
};
