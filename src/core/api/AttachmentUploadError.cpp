#include "api/AttachmentUploadError.h"

namespace {
constexpr const char* fileMissingText = "Attachment file not found on disk.";
}

QString AttachmentUploadError::errorDescription() const {
    return QString::fromUtf8(what());
}

const char* AttachmentUploadError::what() const noexcept {
    return fileMissingText;
}
