#pragma once

#include <QByteArray>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QString>
#include <optional>
#include <qcoro/qcorotask.h>
#include <stdexcept>

// A request of a storage provider or its sign-in that got no answer: the network's own error and
// words, passed on to the user as they are.
class StorageTransferError : public std::runtime_error {
public:
    StorageTransferError(QNetworkReply::NetworkError error, const QString& errorString)
        : std::runtime_error(errorString.toStdString())
        , m_error(error) {}

    QNetworkReply::NetworkError error() const { return m_error; }

private:
    QNetworkReply::NetworkError m_error;
};

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
