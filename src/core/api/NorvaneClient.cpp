#include "api/NorvaneClient.h"

#include "api/Multipart.h"
#include "api/StatusFailure.h"
#include "api/UploadResponse.h"
#include "api/UploadRetryPolicy.h"
#include "async/Background.h"
#include "support/FileError.h"

#include <QCoroNetworkReply>
#include <QFile>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QScopeGuard>
#include <algorithm>
#include <cmath>
#include <memory>

namespace {
constexpr int requestTimeoutMs = 60'000;
// The wait before the retry of a 429 when the service names none.
constexpr double defaultRateLimitWait = 2.0;

struct DeleteLater {
    void operator()(QObject* object) const { object->deleteLater(); }
};

// Errors of the connection itself, as opposed to those Qt derives from an HTTP status: a connection
// or proxy failure, a timeout, a broken transfer.
bool isTransportFailure(const QNetworkReply& reply) {
    const QNetworkReply::NetworkError error = reply.error();
    if (error == QNetworkReply::NoError) {
        return false;
    }
    return !reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid() ||
           error < QNetworkReply::ContentAccessDenied || error == QNetworkReply::ProtocolFailure;
}

void throwIfTransportFailed(const QNetworkReply& reply) {
    if (isTransportFailure(reply)) {
        throw NVError(NVError::Network{reply.error(), reply.errorString()});
    }
}

std::chrono::milliseconds rateLimitWait(std::optional<double> retryAfter) {
    const double seconds = retryAfter && *retryAfter > 0
                               ? std::min(*retryAfter, UploadRetryPolicy::longestRateLimitSeconds)
                               : defaultRateLimitWait;
    return std::chrono::ceil<std::chrono::milliseconds>(std::chrono::duration<double>(seconds));
}

} // namespace

NorvaneClient::NorvaneClient(const AuthProvider& auth, QNetworkAccessManager* session,
                             QNetworkAccessManager* uploadSession, QUrl baseURL, Sleeper sleeper, Clock clock)
    : m_auth(auth)
    , m_session(session)
    , m_uploadSession(uploadSession ? uploadSession : session)
    , m_baseURL(std::move(baseURL))
    , m_sleeper(std::move(sleeper))
    , m_clock(std::move(clock)) {}

QCoro::Task<QByteArray> NorvaneClient::perform(QByteArray method, QString path, QueryItems query,
                                               std::optional<QByteArray> body) const {
    Request request{authorizedRequest(path, query, body ? QByteArrayLiteral("application/json") : QByteArray()),
                    std::move(method), body.value_or(QByteArray())};
    QCoro::Task<QByteArray> sending = send(std::move(request), false);
    co_return co_await std::move(sending);
}

QNetworkRequest NorvaneClient::authorizedRequest(const QString& path, const QueryItems& query,
                                                 const QByteArray& contentType) const {
    const std::optional<QString> token = m_auth.authorizationValue();
    if (!token) {
        throw NVError(NVError::NotAuthenticated{});
    }
    QNetworkRequest request(endpointURL(path, query));
    request.setTransferTimeout(requestTimeoutMs);
    // The bare token, with no scheme word before it.
    request.setRawHeader(QByteArrayLiteral("Authorization"), token->toUtf8());
    if (!contentType.isEmpty()) {
        request.setRawHeader(QByteArrayLiteral("Content-Type"), contentType);
    }
    return request;
}

QUrl NorvaneClient::endpointURL(const QString& path, const QueryItems& query) const {
    // `path` is appended as a path component; characters that can't stand in a path are escaped.
    QUrl url = m_baseURL;
    QString fullPath = url.path();
    if (!fullPath.endsWith(u'/')) {
        fullPath += u'/';
    }
    url.setPath(fullPath + path, QUrl::DecodedMode);
    if (!query.isEmpty()) {
        // Names and values are escaped whole, "+" and brackets included, so the service reads back
        // exactly what was given.
        QByteArrayList items;
        for (const auto& [name, value] : query) {
            items.append(QUrl::toPercentEncoding(name) + '=' + QUrl::toPercentEncoding(value));
        }
        url.setQuery(QString::fromLatin1(items.join('&')), QUrl::StrictMode);
    }
    return url;
}

QCoro::Task<QByteArray> NorvaneClient::send(Request request, bool isRetry) const {
    // A GET goes through get() so that any scheme the session knows answers it, not only HTTP.
    const std::unique_ptr<QNetworkReply, DeleteLater> reply(
        request.method == "GET" ? m_session->get(request.request)
                                : m_session->sendCustomRequest(request.request, request.method, request.body));
    co_await reply.get();
    throwIfTransportFailed(*reply);
    // Built apart from the co_await: GCC 12 destroys a capturing lambda twice when it stands in the
    // same expression as co_await (a double free).
    Retry retry = [this, request] { return send(request, true); };
    QCoro::Task<QByteArray> decoding = decodeResponse(*reply, isRetry, std::move(retry));
    co_return co_await std::move(decoding);
}

QCoro::Task<QByteArray> NorvaneClient::decodeResponse(QNetworkReply& reply, bool isRetry, Retry retry) const {
    const QVariant statusAttribute = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute);
    if (!statusAttribute.isValid()) {
        throw NVError(NVError::InvalidResponse{});
    }
    const int status = statusAttribute.toInt();
    const QByteArray data = reply.readAll();
    if (status >= 200 && status <= 299) {
        co_return data;
    }
    if (status == 429) {
        const std::optional<double> retryAfter = UploadRetryPolicy::retryAfter(reply, m_clock());
        if (isRetry) {
            throw NVError(NVError::RateLimited{retryAfter});
        }
        QCoro::Task<> waiting = m_sleeper(rateLimitWait(retryAfter));
        co_await std::move(waiting);
        QCoro::Task<QByteArray> retrying = retry();
        co_return co_await std::move(retrying);
    }
    throw statusFailure(status, data);
}

QCoro::Task<TaskAttachment> NorvaneClient::upload(QString path, QByteArray fileData, QString filename) const {
    UploadAttempt attempt = [this, path, fileData, filename] { return uploadAttempt(path, fileData, filename); };
    co_return co_await withUploadRetries(std::move(attempt));
}

QCoro::Task<TaskAttachment> NorvaneClient::uploadFromFile(QString path, QUrl fileURL, QString filename) const {
    UploadAttempt attempt = [this, path, fileURL, filename] { return uploadFromFileAttempt(path, fileURL, filename); };
    co_return co_await withUploadRetries(std::move(attempt));
}

QCoro::Task<TaskAttachment> NorvaneClient::withUploadRetries(UploadAttempt attempt) const {
    for (int number = 1;; ++number) {
        std::exception_ptr failure;
        try {
            QCoro::Task<TaskAttachment> task = attempt();
            co_return co_await std::move(task);
        } catch (...) {
            failure = std::current_exception();
        }
        if (number == UploadRetryPolicy::attempts || !UploadRetryPolicy::isRetryable(failure)) {
            std::rethrow_exception(failure);
        }
        QCoro::Task<> waiting = m_sleeper(UploadRetryPolicy::delayAfter(number, failure));
        co_await std::move(waiting);
    }
}

QCoro::Task<TaskAttachment> NorvaneClient::uploadAttempt(QString path, QByteArray fileData, QString filename) const {
    const QString boundary = Multipart::newBoundary();
    const QNetworkRequest request = authorizedRequest(path, {}, Multipart::contentType(boundary));
    QNetworkReply* reply = m_uploadSession->post(request, Multipart::multipartBody(boundary, filename, fileData));
    QCoro::Task<TaskAttachment> answering = uploadAnswer(reply);
    co_return co_await std::move(answering);
}

QCoro::Task<TaskAttachment> NorvaneClient::uploadFromFileAttempt(QString path, QUrl fileURL, QString filename) const {
    const QString boundary = Multipart::newBoundary();
    std::function<QUrl()> write = [boundary, filename, fileURL] {
        return Multipart::writeMultipartBody(boundary, filename, fileURL);
    };
    QCoro::Task<QUrl> writing = runInBackground(std::move(write));
    const QString bodyPath = (co_await std::move(writing)).toLocalFile();
    // The body file goes when the attempt ends, however it ends; a failed removal changes nothing.
    const auto removal = qScopeGuard([&bodyPath] { QFile::remove(bodyPath); });
    QNetworkRequest request = authorizedRequest(path, {}, Multipart::contentType(boundary));
    auto body = std::make_unique<QFile>(bodyPath);
    if (!body->open(QIODevice::ReadOnly)) {
        throw FileError(bodyPath, body->errorString());
    }
    request.setHeader(QNetworkRequest::ContentLengthHeader, body->size());
    QNetworkReply* reply = m_uploadSession->post(request, body.get());
    // The reply reads the body while it runs and takes it along when it goes.
    body.release()->setParent(reply);
    QCoro::Task<TaskAttachment> answering = uploadAnswer(reply);
    co_return co_await std::move(answering);
}

QCoro::Task<TaskAttachment> NorvaneClient::uploadAnswer(QNetworkReply* reply) const {
    const std::unique_ptr<QNetworkReply, DeleteLater> owned(reply);
    co_await reply;
    throwIfTransportFailed(*reply);
    const QVariant status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
    co_return decodeUploadResponse(reply->readAll(), status.isValid() ? std::optional(status.toInt()) : std::nullopt,
                                   UploadRetryPolicy::retryAfter(*reply, m_clock()));
}
