#include "core/storage/CloudinaryErrorResponse.h"

CloudinaryErrorBody CloudinaryErrorBody::fromJson(const Json::JsonObject& json) {
    return {json.optional<QString>(QStringLiteral("message"))};
}

CloudinaryErrorResponse CloudinaryErrorResponse::fromJson(const Json::JsonObject& json) {
    return {json.optional<CloudinaryErrorBody>(QStringLiteral("error"))};
}
