#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QNetworkReply>
#include <chrono>
#include <exception>
#include <optional>

// When and how often to try an attachment upload again. Pure functions without state.
namespace UploadRetryPolicy {

// Attempts per upload, the first one included.
constexpr int attempts = 5;
// The longest wait after a failed attempt, and after a rate limit that names its own wait.
constexpr double longestBackOffSeconds = 32;
constexpr double longestRateLimitSeconds = 120;

// The seconds a "Retry-After" header asks to wait, as of `now`: the value itself when the whole of
// it reads as a floating-point number (whatever its sign; a leading blank doesn't read), else the
// seconds until its HTTP date ("Wed, 21 Oct 2015 07:28:00 GMT"), 0 for a date in the past. Absent
// for a missing header and for anything else.
std::optional<double> retryAfter(const std::optional<QByteArray>& headerValue, const QDateTime& now);
// The same for the header of an answer.
std::optional<double> retryAfter(const QNetworkReply& reply, const QDateTime& now);

// Whether an upload that failed with `error` is worth another attempt: rate limits, 429 and 5xx
// answers, and the transport failures below. Never a missing file, a rejected token, a full
// storage or an answer that doesn't decode.
bool isRetryable(const std::exception_ptr& error);
// Transport failures that may pass: a timeout, a lost or refused connection, an unknown host, no
// network at the moment. Never a request aborted on purpose (OperationCanceledError).
bool isRetryableNetworkError(QNetworkReply::NetworkError error);

// The wait after attempt `attempt` (from 1) failed with `error`: the service's own wait for a rate
// limit that names one above 0, up to 120 s; else 2 to the power of the attempt, up to 32 s.
std::chrono::milliseconds delayAfter(int attempt, const std::exception_ptr& error);

} // namespace UploadRetryPolicy
