#pragma once

#include "core/json/JsonDecoding.h"

#include <QByteArray>
#include <QString>
#include <optional>

// What Google's token endpoint answers when it issues tokens.
struct GoogleTokenResponse {
    QString accessToken;
    std::optional<QString> refreshToken;
    // Seconds from now.
    qint64 expiresIn = 0;

    static GoogleTokenResponse fromJson(const Json::JsonObject& json);
    bool operator==(const GoogleTokenResponse&) const = default;
};

// What Google's token endpoint answers when it refuses.
struct GoogleErrorResponse {
    std::optional<QString> error;
    std::optional<QString> errorDescription;

    static GoogleErrorResponse fromJson(const Json::JsonObject& json);
    // The message in a refusal: its description, else its error code; for a body that is no such
    // record, the body as UTF-8 text, or absent when it isn't text.
    static std::optional<QString> messageIn(const QByteArray& body);
    bool operator==(const GoogleErrorResponse&) const = default;
};
