#include "core/api/UploadResponse.h"

#include "core/api/APIErrorBody.h"
#include "core/api/NVError.h"
#include "core/api/StatusFailure.h"

namespace {
NVError corrupted(const QString& description) {
    return NVError(NVError::Decoding{QStringLiteral("$"), description});
}

TaskAttachment decodeSuccess(const QByteArray& data, int status) {
    if (data.isEmpty()) {
        throw corrupted(QStringLiteral("Upload response body was empty"));
    }
    try {
        const auto attachment = Json::decode<TaskAttachment>(Json::parse(data), QStringLiteral("$"));
        if (attachment.id.value_or(QString()).isEmpty()) {
            throw corrupted(QStringLiteral("Upload response was not a valid Norvane attachment"));
        }
        return attachment;
    } catch (const DecodingError& attachmentError) {
        if (const APIErrorBody error = APIErrorBody::fromAnswer(data); !error.err.value_or(QString()).isEmpty()) {
            throw NVError(NVError::Server{error.ecode, *error.err, status});
        }
        throw NVError::decoding(attachmentError);
    }
}
} // namespace

TaskAttachment decodeUploadResponse(const QByteArray& data, std::optional<int> status,
                                    std::optional<double> retryAfter) {
    if (!status) {
        throw NVError(NVError::InvalidResponse{});
    }
    if (*status >= 200 && *status <= 299) {
        return decodeSuccess(data, *status);
    }
    if (*status == 429) {
        throw NVError(NVError::RateLimited{retryAfter});
    }
    throw statusFailure(*status, data);
}
