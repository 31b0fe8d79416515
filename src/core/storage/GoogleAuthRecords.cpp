#include "core/storage/GoogleAuthRecords.h"

#include "core/support/StrictUtf8.h"

GoogleTokenResponse GoogleTokenResponse::fromJson(const Json::JsonObject& json) {
    return {json.required<QString>(QStringLiteral("access_token")),
            json.optional<QString>(QStringLiteral("refresh_token")),
            json.required<qint64>(QStringLiteral("expires_in"))};
}

GoogleErrorResponse GoogleErrorResponse::fromJson(const Json::JsonObject& json) {
    return {json.optional<QString>(QStringLiteral("error")),
            json.optional<QString>(QStringLiteral("error_description"))};
}

std::optional<QString> GoogleErrorResponse::messageIn(const QByteArray& body) {
    try {
        const auto response = Json::decode<GoogleErrorResponse>(Json::parse(body), QStringLiteral("$"));
        return response.errorDescription ? response.errorDescription : response.error;
    } catch (const DecodingError&) {
        return strictUtf8(body);
    }
}
