#include "core/api/NorvaneClient.h"

#include "core/api/OneShotBody.h"

#include "core/api/Multipart.h"
#include "core/api/StatusFailure.h"
#include "core/api/TransferWatchdog.h"
#include "core/api/UploadResponse.h"
#include "core/api/UploadRetryPolicy.h"
#include "core/async/Background.h"
#include "core/support/FileError.h"

#include <QCoreApplication>
#include <QCoroNetworkReply>
#include <QFile>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QScopeGuard>
#include <algorithm>
#include <cmath>
#include <memory>

namespace {
// The wait before the retry of a 429 when the service names none.
constexpr double defaultRateLimitWait = 2.0;

struct DeleteLater {
    void operator()(QObject* object) const { object->deleteLater(); }
};
using ReplyPointer = std::unique_ptr<QNetworkReply, DeleteLater>;

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

// The statuses Qt takes for redirects.
bool isRedirect(int status) {
    return status == 301 || status == 302 || status == 303 || status == 305 || status == 307 || status == 308;
}

// Where a redirect sends the request that went to `from`. Absent for any other answer, and for a
// Location that is no http or https address: such a redirect stands as the answer.
std::optional<QUrl> redirectTarget(const QNetworkReply& reply, const QUrl& from) {
    const int status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    // Qt 6.4 rewinds the body of a request answered 307 or 308 even when it follows no redirect
    // itself; a body that is sent once can't rewind, and the redirect then comes with
    // ContentReSendError. Without a status, that error is a resend refused, not a redirect.
    const bool rewindRefused = reply.error() == QNetworkReply::ContentReSendError && (status == 307 || status == 308);
    if ((reply.error() != QNetworkReply::NoError && !rewindRefused) || !isRedirect(status)) {
        return std::nullopt;
    }
    const QUrl location = QUrl::fromEncoded(reply.rawHeader(QByteArrayLiteral("Location")));
    if (!location.isValid()) {
        return std::nullopt;
    }
    const QUrl target = from.resolved(location);
    if (target.scheme() != u"http" && target.scheme() != u"https") {
        return std::nullopt;
    }
    return target;
}

NVError redirectFailure(QNetworkReply::NetworkError error, const char* text) {
    // Qt's own words for these errors.
    return NVError(NVError::Network{error, QCoreApplication::translate("QHttp", text)});
}

NVError timeoutFailure(bool requestSent) {
    // Qt's own words for a timeout.
    return NVError(NVError::Network{QNetworkReply::TimeoutError,
                                    QCoreApplication::translate("QAbstractSocket", "Socket operation timed out"),
                                    requestSent});
}

NVError endedFailure() {
    // Qt's own words for a request ended on purpose.
    return NVError(NVError::Network{QNetworkReply::OperationCanceledError,
                                    QCoreApplication::translate("QNetworkReply", "Operation canceled")});
}

std::chrono::milliseconds rateLimitWait(std::optional<double> retryAfter) {
    const double seconds = retryAfter && *retryAfter > 0
                               ? std::min(*retryAfter, UploadRetryPolicy::longestRateLimitSeconds)
                               : defaultRateLimitWait;
    return std::chrono::ceil<std::chrono::milliseconds>(std::chrono::duration<double>(seconds));
}

} // namespace

NorvaneClient::NorvaneClient(const AuthProvider& auth, QNetworkAccessManager* session,
                             QNetworkAccessManager* uploadSession, QUrl baseURL, Sleeper sleeper, Clock clock,
                             TransferTimeLimits limits)
    : m_auth(auth)
    , m_session(session)
    , m_uploadSession(uploadSession ? uploadSession : session)
    , m_baseURL(std::move(baseURL))
    , m_sleeper(std::move(sleeper))
    , m_clock(std::move(clock))
    , m_limits(limits) {}

NorvaneClient NorvaneClient::withAuth(const AuthProvider& auth) const {
    return {auth, m_session, nullptr, m_baseURL, m_sleeper, m_clock, m_limits};
}

QCoro::Task<QByteArray> NorvaneClient::perform(QByteArray method, QString path, QueryItems query,
                                               std::optional<QByteArray> body) const {
    Request request{authorizedRequest(path, query, body ? QByteArrayLiteral("application/json") : QByteArray()),
                    std::move(method), body.value_or(QByteArray()), QString()};
    QCoro::Task<QByteArray> sending = send(std::move(request), false);
    co_return co_await std::move(sending);
}

QNetworkRequest NorvaneClient::authorizedRequest(const QString& path, const QueryItems& query,
                                                 const QByteArray& contentType) const {
    // Gone with the sessions: `auth` is not asked.
    if (!m_session || !m_uploadSession) {
        throw endedFailure();
    }
    const std::optional<QString> token = m_auth.authorizationValue();
    if (!token) {
        throw NVError(NVError::NotAuthenticated{});
    }
    QNetworkRequest request(endpointURL(path, query));
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

QCoro::Task<QNetworkReply*> NorvaneClient::exchange(QNetworkAccessManager* session, Request request) const {
    if (!session) {
        throw endedFailure();
    }
    request.request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    if (request.method != "GET") {
        // The answer to a write is one record, a round trip's worth of bytes either way: compressing
        // it only adds the service's time to every creation of a bulk job.
        request.request.setRawHeader(QByteArrayLiteral("Accept-Encoding"), QByteArrayLiteral("identity"));
    }
    for (int redirects = 0;; ++redirects) {
        ReplyPointer reply;
        if (!request.bodyPath.isEmpty()) {
            auto body = std::make_unique<QFile>(request.bodyPath);
            if (!body->open(QIODevice::ReadOnly)) {
                throw FileError(request.bodyPath, body->errorString());
            }
            QNetworkRequest withLength = request.request;
            withLength.setHeader(QNetworkRequest::ContentLengthHeader, body->size());
            reply.reset(session->sendCustomRequest(withLength, request.method, body.get()));
            // The reply reads the body while it runs and takes it along when it goes.
            body.release()->setParent(reply.get());
        } else if (request.method == "GET") {
            // A GET goes through get() so that any scheme the session knows answers it, not only HTTP.
            reply.reset(session->get(request.request));
        } else {
            // Sent once: a request the service may have carried out is never repeated by itself.
            auto body = std::make_unique<OneShotBody>(request.body);
            QNetworkRequest once = request.request;
            once.setHeader(QNetworkRequest::ContentLengthHeader, body->size());
            once.setAttribute(QNetworkRequest::DoNotBufferUploadDataAttribute, true);
            reply.reset(session->sendCustomRequest(once, request.method, body.get()));
            body.release()->setParent(reply.get());
        }
        const auto* watchdog = new TransferWatchdog(reply.get(), m_limits.withoutProgress, request.deadline);
        QNetworkReply* const running = reply.get();
        co_await running;
        if (watchdog->timedOut()) {
            throw timeoutFailure(watchdog->bodySent());
        }
        const std::optional<QUrl> target = redirectTarget(*reply, request.request.url());
        if (!target && isTransportFailure(*reply)) {
            throw NVError(NVError::Network{reply->error(), reply->errorString(), watchdog->bodySent()});
        }
        if (!target) {
            co_return reply.release();
        }
        if (redirects == request.request.maximumRedirectsAllowed()) {
            throw redirectFailure(QNetworkReply::TooManyRedirectsError, "Too many redirects");
        }
        if (request.request.url().scheme() == u"https" && target->scheme() == u"http") {
            throw redirectFailure(QNetworkReply::InsecureRedirectError, "Insecure redirect");
        }
        // As Qt does it: 307 and 308 send the same method and body again, the others a GET without
        // a body. The token goes along.
        const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        if (status != 307 && status != 308) {
            request.method = QByteArrayLiteral("GET");
            request.body.clear();
            request.bodyPath.clear();
            request.request.setHeader(QNetworkRequest::ContentTypeHeader, QVariant());
        }
        request.request.setUrl(*target);
    }
}

QCoro::Task<QByteArray> NorvaneClient::send(Request request, bool isRetry) const {
    QCoro::Task<QNetworkReply*> exchanging = exchange(m_session, request);
    const ReplyPointer reply(co_await std::move(exchanging));
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
    QCoro::Task<TaskAttachment> uploading = withUploadRetries(std::move(attempt));
    co_return co_await std::move(uploading);
}

QCoro::Task<TaskAttachment> NorvaneClient::uploadFromFile(QString path, QUrl fileURL, QString filename) const {
    UploadAttempt attempt = [this, path, fileURL, filename] { return uploadFromFileAttempt(path, fileURL, filename); };
    QCoro::Task<TaskAttachment> uploading = withUploadRetries(std::move(attempt));
    co_return co_await std::move(uploading);
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
    Request request{authorizedRequest(path, {}, Multipart::contentType(boundary)), QByteArrayLiteral("POST"),
                    Multipart::multipartBody(boundary, filename, fileData), QString()};
    QCoro::Task<TaskAttachment> answering = uploadAnswer(std::move(request));
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
    Request request{authorizedRequest(path, {}, Multipart::contentType(boundary)), QByteArrayLiteral("POST"),
                    QByteArray(), bodyPath};
    QCoro::Task<TaskAttachment> answering = uploadAnswer(std::move(request));
    co_return co_await std::move(answering);
}

QCoro::Task<TaskAttachment> NorvaneClient::uploadAnswer(Request request) const {
    request.deadline = QDeadlineTimer(m_limits.upload);
    QCoro::Task<QNetworkReply*> exchanging = exchange(m_uploadSession, std::move(request));
    const ReplyPointer reply(co_await std::move(exchanging));
    const QVariant status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
    co_return decodeUploadResponse(reply->readAll(), status.isValid() ? std::optional(status.toInt()) : std::nullopt,
                                   UploadRetryPolicy::retryAfter(*reply, m_clock()));
}
