#include "core/storage/CloudinaryUploadResponse.h"

CloudinaryUploadResponse CloudinaryUploadResponse::fromJson(const Json::JsonObject& json) {
    return {json.optional<QString>(QStringLiteral("secure_url"))};
}
