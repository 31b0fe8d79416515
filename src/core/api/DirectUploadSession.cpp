#include "core/api/DirectUploadSession.h"

#include "core/api/ConnectionPool.h"
#include "core/api/DirectUploadReply.h"

namespace {
QByteArray verbOf(QNetworkAccessManager::Operation operation, const QNetworkRequest& request) {
    switch (operation) {
    case QNetworkAccessManager::PostOperation:
        return QByteArrayLiteral("POST");
    case QNetworkAccessManager::PutOperation:
        return QByteArrayLiteral("PUT");
    case QNetworkAccessManager::CustomOperation:
        return request.attribute(QNetworkRequest::CustomVerbAttribute).toByteArray();
    default:
        return {};
    }
}

// The body's length as the request gives it, or as the device knows it.
qint64 bodySizeOf(const QNetworkRequest& request, const QIODevice& body) {
    const QVariant declared = request.header(QNetworkRequest::ContentLengthHeader);
    if (declared.isValid()) {
        return declared.toLongLong();
    }
    return body.isSequential() ? -1 : body.size() - body.pos();
}
} // namespace

DirectUploadSession::DirectUploadSession(std::chrono::milliseconds idleLimit, QObject* parent)
    : QNetworkAccessManager(parent)
    , m_pool(new ConnectionPool(idleLimit, this)) {}

QNetworkReply* DirectUploadSession::createRequest(Operation operation, const QNetworkRequest& request,
                                                  QIODevice* body) {
    const QString scheme = request.url().scheme();
    const QByteArray verb = verbOf(operation, request);
    const qint64 size = body ? bodySizeOf(request, *body) : -1;
    if (verb.isEmpty() || size < 0 || (scheme != u"http" && scheme != u"https")) {
        return QNetworkAccessManager::createRequest(operation, request, body);
    }
    return new DirectUploadReply(operation, request, verb, body, size, m_pool, this);
}
