#pragma once

#include "core/api/AuthProvider.h"
#include "core/api/NVError.h"
#include "core/api/TaskAttachment.h"
#include "core/api/TransferTimeLimits.h"
#include "core/async/Background.h"
#include "core/async/Clock.h"
#include "core/async/Sleeper.h"
#include "core/json/JsonDecoding.h"
#include "core/json/JsonEncoding.h"

#include <QCoroTask>
#include <QDeadlineTimer>
#include <QList>
#include <QNetworkAccessManager>
#include <QNetworkRequest>
#include <QPointer>
#include <QUrl>
#include <functional>
#include <optional>
#include <utility>

class QNetworkReply;

// The one gateway to the service's REST API. Every request asks `auth` for the token at its start,
// so one client follows whichever account is active. All fields are fixed at creation: requests may
// run side by side, and each waits out its own rate limit.
//
// Every call fails with NVError; a 429 is retried once, after the wait the service asks for. The two
// uploads have a retry loop of their own (UploadRetryPolicy).
//
// A transfer that stalls, or an upload attempt that runs past its limit (TransferTimeLimits), ends
// with NVError::Network and QNetworkReply::TimeoutError, which an upload retries. A request aborted
// on purpose (QNetworkReply::abort) ends with OperationCanceledError, which nothing retries. A
// Network failure also tells whether the request had gone out whole (NVError::outcomeUnknown).
//
// A client whose sessions are gone (the central state that built it has ended, while a task still
// waited, say in a back-off) sends nothing: each request fails at once with OperationCanceledError,
// without asking `auth` for a token.
//
// Redirects are followed here, one request per hop, not by the session: Qt 6.4 follows a redirect
// inside the same QNetworkReply, and an answer that still comes for the first hop is then mixed
// into the answer of the next.
//
// Callers in a coroutine: bind a body or query built in braces to a named local before the co_await
// (`const CreateTaskRequest body{...}; co_await client.post<CreatedTask>(path, body);`). GCC 12
// destroys a braced temporary twice when it stands in the same expression as co_await.
class NorvaneClient {
public:
    using QueryItems = QList<std::pair<QString, QString>>;

    // `baseURL` is the API base, whose path is /api/v2. A null `uploadSession` means uploads go
    // through `session` as well. `sleeper` waits before the retry of a 429; `clock` tells the time
    // for a Retry-After date.
    NorvaneClient(const AuthProvider& auth, QNetworkAccessManager* session, QNetworkAccessManager* uploadSession,
                  QUrl baseURL, Sleeper sleeper = Sleepers::real(), Clock clock = Clocks::system(),
                  TransferTimeLimits limits = {});

    QNetworkAccessManager* session() const { return m_session; }
    QNetworkAccessManager* uploadSession() const { return m_uploadSession; }
    const QUrl& baseURL() const { return m_baseURL; }
    const TransferTimeLimits& timeLimits() const { return m_limits; }
    // A client of the same service that asks `auth` for its token, with uploads through the
    // ordinary session. `auth` must outlive it.
    NorvaneClient withAuth(const AuthProvider& auth) const;

    // GET `path` (relative to the base, no leading slash) with the query items in the given order,
    // and the answer decoded as T.
    template <Json::DecodableRecord T> QCoro::Task<T> get(QString path, QueryItems query = {}) const {
        QCoro::Task<QByteArray> performing =
            perform(QByteArrayLiteral("GET"), std::move(path), std::move(query), std::nullopt);
        const QByteArray answer = co_await std::move(performing);
        co_return decodeRecord<T>(answer);
    }

    // The same, with the answer decoded off the main thread: for answers large enough to hold up the
    // main thread while they decode.
    template <Json::DecodableRecord T>
    QCoro::Task<T> getDecodedInBackground(QString path, QueryItems query = {}) const {
        QCoro::Task<QByteArray> performing =
            perform(QByteArrayLiteral("GET"), std::move(path), std::move(query), std::nullopt);
        const QByteArray answer = co_await std::move(performing);
        std::function<T()> decoding = [answer] { return decodeRecord<T>(answer); };
        QCoro::Task<T> decoded = runInBackground(std::move(decoding));
        co_return co_await std::move(decoded);
    }

    // POST `body` as JSON with sorted keys, and the answer decoded as T.
    template <Json::DecodableRecord T, Json::EncodableRecord Body> QCoro::Task<T> post(QString path, Body body) const {
        QCoro::Task<QByteArray> performing =
            perform(QByteArrayLiteral("POST"), std::move(path), QueryItems(), Json::serialize(body.toJson()));
        const QByteArray answer = co_await std::move(performing);
        co_return decodeRecord<T>(answer);
    }

    // PUT `body` as JSON with sorted keys, and the answer decoded as T.
    template <Json::DecodableRecord T, Json::EncodableRecord Body> QCoro::Task<T> put(QString path, Body body) const {
        QCoro::Task<QByteArray> performing =
            perform(QByteArrayLiteral("PUT"), std::move(path), QueryItems(), Json::serialize(body.toJson()));
        const QByteArray answer = co_await std::move(performing);
        co_return decodeRecord<T>(answer);
    }

    // Sends one file to `path` (for a task, "task/<id>/attachment") as multipart/form-data and
    // returns the service's attachment. Up to five attempts, as UploadRetryPolicy says, each with a
    // new boundary; the error of the last attempt is thrown. The whole file is in memory.
    QCoro::Task<TaskAttachment> upload(QString path, QByteArray fileData, QString filename) const;
    // The same for a file on disk, never held whole: each attempt writes the body to a temporary file
    // off the main thread, sends it from disk and removes it when the attempt ends. A file that can't
    // be read fails with FileError.
    QCoro::Task<TaskAttachment> uploadFromFile(QString path, QUrl fileURL, QString filename) const;

private:
    // One request as it goes out, kept whole so that a retry sends the very same bytes. Its body is
    // `body`, or the file at `bodyPath` when that is set, opened anew by each hop that sends it. It
    // ends, with all its hops, at `deadline`.
    struct Request {
        QNetworkRequest request;
        QByteArray method;
        QByteArray body;
        QString bodyPath;
        QDeadlineTimer deadline{QDeadlineTimer::Forever};
    };
    using Retry = std::function<QCoro::Task<QByteArray>()>;

    // Sends `request` on `session` and follows the redirects it is answered with as Qt would (up
    // to the request's maximum, never from https to http), each hop a reply of its own. The reply
    // of the last hop, finished with an answer; the caller owns it. A hop without an answer fails
    // with NVError::Network, and one that stalls, or runs past the request's deadline, with
    // QNetworkReply::TimeoutError; either tells whether the request's body had gone out whole.
    QCoro::Task<QNetworkReply*> exchange(QNetworkAccessManager* session, Request request) const;

    // Builds the request for `path` with the token of this moment and sends it; the body of its 2xx
    // answer. Without a token, NVError::NotAuthenticated and no request.
    QCoro::Task<QByteArray> perform(QByteArray method, QString path, QueryItems query,
                                    std::optional<QByteArray> body) const;
    // The request for `path` with the token of this moment and, unless empty, the content type.
    // Without a token, NVError::NotAuthenticated.
    QNetworkRequest authorizedRequest(const QString& path, const QueryItems& query,
                                      const QByteArray& contentType) const;
    QUrl endpointURL(const QString& path, const QueryItems& query) const;
    // Runs the request on `session`; the body of a 2xx answer, or NVError.
    QCoro::Task<QByteArray> send(Request request, bool isRetry) const;
    // The status rules: a 2xx gives its body, a first 429 waits and calls `retry`, the rest fail.
    QCoro::Task<QByteArray> decodeResponse(QNetworkReply& reply, bool isRetry, Retry retry) const;

    using UploadAttempt = std::function<QCoro::Task<TaskAttachment>()>;
    QCoro::Task<TaskAttachment> withUploadRetries(UploadAttempt attempt) const;
    QCoro::Task<TaskAttachment> uploadAttempt(QString path, QByteArray fileData, QString filename) const;
    QCoro::Task<TaskAttachment> uploadFromFileAttempt(QString path, QUrl fileURL, QString filename) const;
    // Sends the upload on the upload session and reads its answer.
    QCoro::Task<TaskAttachment> uploadAnswer(Request request) const;

    template <typename T> static T decodeRecord(const QByteArray& body) {
        try {
            return Json::decode<T>(Json::parse(body), QStringLiteral("$"));
        } catch (const DecodingError& error) {
            throw NVError::decoding(error);
        }
    }

    const AuthProvider& m_auth;
    const QPointer<QNetworkAccessManager> m_session;
    const QPointer<QNetworkAccessManager> m_uploadSession;
    const QUrl m_baseURL;
    const Sleeper m_sleeper;
    const Clock m_clock;
    const TransferTimeLimits m_limits;
};
