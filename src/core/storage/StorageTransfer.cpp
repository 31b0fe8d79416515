#include "core/storage/StorageTransfer.h"

#include <QCoroNetworkReply>
#include <memory>

namespace StorageTransfer {
namespace {
struct DeleteLater {
    void operator()(QObject* object) const { object->deleteLater(); }
};

// Errors of the connection itself, as opposed to those Qt derives from an HTTP status.
bool noAnswer(const QNetworkReply& reply) {
    const QNetworkReply::NetworkError error = reply.error();
    return error != QNetworkReply::NoError &&
           (!reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid() ||
            error < QNetworkReply::ContentAccessDenied || error == QNetworkReply::ProtocolFailure);
}
} // namespace

QCoro::Task<Answer> send(QNetworkAccessManager* session, QNetworkRequest request, QByteArray method, QByteArray body) {
    request.setTransferTimeout(timeoutMs);
    const std::unique_ptr<QNetworkReply, DeleteLater> reply(session->sendCustomRequest(request, method, body));
    QNetworkReply* const running = reply.get();
    co_await running;
    if (noAnswer(*reply)) {
        throw StorageTransferError(reply->error(), reply->errorString());
    }
    const QVariant status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
    co_return Answer{status.isValid() ? std::optional(status.toInt()) : std::nullopt, reply->readAll()};
}

} // namespace StorageTransfer
