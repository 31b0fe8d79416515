#pragma once

#include "core/storage/StorageTransferError.h"

#include <QByteArray>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QString>
#include <optional>
#include <qcoro/qcorotask.h>

// One request of a storage provider and its answer, read whole.
namespace StorageTransfer {

// A transfer that moves nothing for this long ends with a timeout.
inline constexpr int timeoutMs = 60'000;

struct Answer {
    // Absent when the answer isn't HTTP.
    std::optional<int> status;
    QByteArray body;

    bool succeeded() const { return status && *status >= 200 && *status <= 299; }
};

// Sends `body` with `method`; throws StorageTransferError when no answer came. The session must
// outlive the task.
QCoro::Task<Answer> send(QNetworkAccessManager* session, QNetworkRequest request, QByteArray method, QByteArray body);

} // namespace StorageTransfer
