#pragma once

#include "core/json/JsonDecoding.h"

#include <QString>
#include <optional>

// The "error" object of a refusal by Cloudinary.
struct CloudinaryErrorBody {
    std::optional<QString> message;

    static CloudinaryErrorBody fromJson(const Json::JsonObject& json);
    bool operator==(const CloudinaryErrorBody&) const = default;
};

// The body Cloudinary sends with a refusal: {"error": {"message": "Upload preset not found"}}.
struct CloudinaryErrorResponse {
    std::optional<CloudinaryErrorBody> error;

    static CloudinaryErrorResponse fromJson(const Json::JsonObject& json);
    bool operator==(const CloudinaryErrorResponse&) const = default;
};
