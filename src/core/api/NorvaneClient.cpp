#include "api/NorvaneClient.h"

#include "api/APIErrorBody.h"
#include "api/UploadRetryPolicy.h"

#include <QCoroNetworkReply>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <algorithm>
#include <cmath>
#include <memory>

namespace {
constexpr int requestTimeoutMs = 60'000;
// The longest wait before the retry of a 429, and the wait when the service names none.
constexpr double longestRateLimitWait = 120.0;
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

std::chrono::milliseconds rateLimitWait(std::optional<double> retryAfter) {
    const double seconds =
        retryAfter && *retryAfter > 0 ? std::min(*retryAfter, longestRateLimitWait) : defaultRateLimitWait;
    return std::chrono::ceil<std::chrono::milliseconds>(std::chrono::duration<double>(seconds));
}

// The error body of a failed answer; a body that doesn't decode counts as one with neither field.
APIErrorBody errorBodyOf(const QByteArray& data) {
    try {
        return Json::decode<APIErrorBody>(Json::parse(data), QStringLiteral("$"));
    } catch (const DecodingError&) {
        return {};
    }
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
    const std::optional<QString> token = m_auth.authorizationValue();
    if (!token) {
        throw NVError(NVError::NotAuthenticated{});
    }
    Request request{QNetworkRequest(endpointURL(path, query)), std::move(method), body.value_or(QByteArray())};
    request.request.setTransferTimeout(requestTimeoutMs);
    // The bare token, with no scheme word before it.
    request.request.setRawHeader(QByteArrayLiteral("Authorization"), token->toUtf8());
    if (body) {
        request.request.setRawHeader(QByteArrayLiteral("Content-Type"), QByteArrayLiteral("application/json"));
    }
    co_return co_await send(std::move(request), false);
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
    if (isTransportFailure(*reply)) {
        throw NVError(NVError::Network{reply->error(), reply->errorString()});
    }
    // Built apart from the co_await: GCC 12 destroys a capturing lambda twice when it stands in the
    // same expression as co_await (a double free).
    Retry retry = [this, request] { return send(request, true); };
    co_return co_await decodeResponse(*reply, isRetry, std::move(retry));
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
        co_await m_sleeper(rateLimitWait(retryAfter));
        co_return co_await retry();
    }
    const APIErrorBody body = errorBodyOf(data);
    if (status == 401) {
        throw NVError(NVError::Unauthorized{body.err.value_or(NVError::rejectedTokenText())});
    }
    if (body.ecode == APIErrorBody::storageLimitCode) {
        throw NVError(NVError::StorageLimitExceeded{});
    }
    throw NVError(
        NVError::Server{body.ecode, body.err.value_or(QStringLiteral("Norvane error (HTTP %1)").arg(status)), status});
}
