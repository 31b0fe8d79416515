#include "core/api/StatusFailure.h"

#include "core/api/APIErrorBody.h"

#include <QCoreApplication>

NVError statusFailure(int status, const QByteArray& body) {
    const APIErrorBody error = APIErrorBody::fromAnswer(body);
    if (status == 401) {
        return NVError(NVError::Unauthorized{error.err.value_or(NVError::rejectedTokenText())});
    }
    if (error.ecode == APIErrorBody::storageLimitCode) {
        return NVError(NVError::StorageLimitExceeded{});
    }
    return NVError(NVError::Server{
        error.ecode, error.err.value_or(QCoreApplication::translate("NVError", "Norvane error (HTTP %1)").arg(status)),
        status});
}
