#include "api/StatusFailure.h"

#include "api/APIErrorBody.h"

namespace {
// A body that doesn't decode counts as one with neither field.
APIErrorBody errorBodyOf(const QByteArray& data) {
    try {
        return Json::decode<APIErrorBody>(Json::parse(data), QStringLiteral("$"));
    } catch (const DecodingError&) {
        return {};
    }
}
} // namespace

NVError statusFailure(int status, const QByteArray& body) {
    const APIErrorBody error = errorBodyOf(body);
    if (status == 401) {
        return NVError(NVError::Unauthorized{error.err.value_or(NVError::rejectedTokenText())});
    }
    if (error.ecode == APIErrorBody::storageLimitCode) {
        return NVError(NVError::StorageLimitExceeded{});
    }
    return NVError(NVError::Server{error.ecode,
                                   error.err.value_or(QStringLiteral("Norvane error (HTTP %1)").arg(status)), status});
}
