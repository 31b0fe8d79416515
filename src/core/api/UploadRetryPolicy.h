#pragma once

#include <QByteArray>
#include <QDateTime>
#include <optional>

class QNetworkReply;

// When and how often to try a request again.
namespace UploadRetryPolicy {

// The seconds a "Retry-After" header asks to wait, as of `now`: the value itself when the whole of
// it reads as a floating-point number (whatever its sign; a leading blank doesn't read), else the
// seconds until its HTTP date ("Wed, 21 Oct 2015 07:28:00 GMT"), 0 for a date in the past. Absent
// for a missing header and for anything else.
std::optional<double> retryAfter(const std::optional<QByteArray>& headerValue, const QDateTime& now);
// The same for the header of an answer.
std::optional<double> retryAfter(const QNetworkReply& reply, const QDateTime& now);

} // namespace UploadRetryPolicy
