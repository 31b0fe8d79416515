#include "core/storage/DriveRecords.h"

#include "core/support/StrictUtf8.h"

DriveFileResponse DriveFileResponse::fromJson(const Json::JsonObject& json) {
    return {json.required<QString>(QStringLiteral("id")), json.optional<QString>(QStringLiteral("webViewLink"))};
}

DriveError DriveError::fromJson(const Json::JsonObject& json) {
    return {json.optional<QString>(QStringLiteral("message"))};
}

DriveErrorResponse DriveErrorResponse::fromJson(const Json::JsonObject& json) {
    return {json.optional<DriveError>(QStringLiteral("error"))};
}

std::optional<QString> DriveErrorResponse::messageIn(const QByteArray& body) {
    try {
        const auto response = Json::decode<DriveErrorResponse>(Json::parse(body), QStringLiteral("$"));
        return response.error ? response.error->message : std::nullopt;
    } catch (const DecodingError&) {
        return strictUtf8(body);
    }
}
