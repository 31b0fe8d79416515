#pragma once

#include "core/json/JsonDecoding.h"

#include <QString>
#include <optional>

// What Cloudinary answers to an upload that it took: of all its fields only the file's address.
struct CloudinaryUploadResponse {
    std::optional<QString> secureURL;

    static CloudinaryUploadResponse fromJson(const Json::JsonObject& json);
    bool operator==(const CloudinaryUploadResponse&) const = default;
};
