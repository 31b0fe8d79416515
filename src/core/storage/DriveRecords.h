#pragma once

#include "core/json/JsonDecoding.h"

#include <QByteArray>
#include <QString>
#include <optional>

// The file Drive made of an upload.
struct DriveFileResponse {
    QString id;
    std::optional<QString> webViewLink;

    static DriveFileResponse fromJson(const Json::JsonObject& json);
    bool operator==(const DriveFileResponse&) const = default;
};

// The error object inside a refusal of the Drive API.
struct DriveError {
    std::optional<QString> message;

    static DriveError fromJson(const Json::JsonObject& json);
    bool operator==(const DriveError&) const = default;
};

// A refusal of the Drive API.
struct DriveErrorResponse {
    std::optional<DriveError> error;

    static DriveErrorResponse fromJson(const Json::JsonObject& json);
    // The message of the error object, which may be absent; for a body that is no such record, the
    // body as UTF-8 text, or absent when it isn't text.
    static std::optional<QString> messageIn(const QByteArray& body);
    bool operator==(const DriveErrorResponse&) const = default;
};
