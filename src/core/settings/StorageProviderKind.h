#pragma once

#include "core/json/RawValue.h"

// Where attachments go: natively to the service, or to an external storage provider whose links are
// written into the task.
enum class StorageProviderKind {
    norvane,
    cloudinary,
    cloudflareR2,
    googleDrive,
};

template <> struct RawValues<StorageProviderKind> {
    static constexpr std::array cases{
        std::pair{StorageProviderKind::norvane, "norvane"},
        std::pair{StorageProviderKind::cloudinary, "cloudinary"},
        std::pair{StorageProviderKind::cloudflareR2, "cloudflareR2"},
        std::pair{StorageProviderKind::googleDrive, "googleDrive"},
    };
};
