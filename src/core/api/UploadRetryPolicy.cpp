#include "core/api/UploadRetryPolicy.h"

#include "core/api/NVError.h"

#include <QLocale>
#include <QNetworkReply>
#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cmath>
#include <string_view>

namespace {
// The whole text as a floating-point number in the C locale's notation: an optional sign, then
// decimal digits with a fraction and an exponent, a hexadecimal number after "0x", "inf", "infinity"
// or "nan". Nothing may stand before or after it. A number beyond the range of a double doesn't read.
std::optional<double> floatingPointNumber(std::string_view text) {
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    auto format = std::chars_format::general;
    if (text.starts_with("0x") || text.starts_with("0X")) {
        format = std::chars_format::hex;
        text.remove_prefix(2);
    }
    // from_chars takes a minus sign of its own, and words such as "inf" after "0x"; neither may stand here.
    if (text.empty() || text.starts_with('-') ||
        (format == std::chars_format::hex && !std::isxdigit(static_cast<unsigned char>(text.front())) &&
         !text.starts_with('.'))) {
        return std::nullopt;
    }
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, format);
    if (error != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return negative ? -value : value;
}

// An HTTP date such as "Wed, 21 Oct 2015 07:28:00 GMT", with English day and month names.
QDateTime httpDate(const QByteArray& text) {
    return QLocale::c().toDateTime(QString::fromLatin1(text), QStringLiteral("ddd, dd MMM yyyy HH:mm:ss t"));
}
} // namespace

std::optional<double> UploadRetryPolicy::retryAfter(const std::optional<QByteArray>& headerValue,
                                                    const QDateTime& now) {
    if (!headerValue) {
        return std::nullopt;
    }
    if (const auto seconds = floatingPointNumber(std::string_view(headerValue->constData(), headerValue->size()))) {
        return seconds;
    }
    const QDateTime date = httpDate(*headerValue);
    if (!date.isValid()) {
        return std::nullopt;
    }
    return std::max(0.0, static_cast<double>(now.msecsTo(date)) / 1000.0);
}

std::optional<double> UploadRetryPolicy::retryAfter(const QNetworkReply& reply, const QDateTime& now) {
    static const QByteArray header = QByteArrayLiteral("Retry-After");
    if (!reply.hasRawHeader(header)) {
        return std::nullopt;
    }
    return retryAfter(reply.rawHeader(header), now);
}

namespace {
// The transport failures worth another attempt. The platform this client was first written for
// names nine; Qt folds some of them into one code, which the comment beside each says.
constexpr std::array retryableNetworkErrors{
    QNetworkReply::TimeoutError,                     // timed out, also by the client's own limits
    QNetworkReply::RemoteHostClosedError,            // connection lost
    QNetworkReply::NetworkSessionFailedError,        // not connected to the internet
    QNetworkReply::ConnectionRefusedError,           // cannot connect to host
    QNetworkReply::HostNotFoundError,                // cannot find host; DNS lookup failed
    QNetworkReply::TemporaryNetworkFailureError,     // a call is active (the link dropped for a while)
    QNetworkReply::BackgroundRequestNotAllowedError, // international roaming off; data not allowed
};

double secondsToWait(int attempt, const std::exception_ptr& error) {
    try {
        std::rethrow_exception(error);
    } catch (const NVError& failure) {
        if (const auto* limited = failure.as<NVError::RateLimited>(); limited && limited->retryAfter.value_or(0) > 0) {
            return std::min(*limited->retryAfter, UploadRetryPolicy::longestRateLimitSeconds);
        }
    } catch (...) {
    }
    return std::min(std::pow(2.0, attempt), UploadRetryPolicy::longestBackOffSeconds);
}
} // namespace

bool UploadRetryPolicy::isRetryable(const std::exception_ptr& error) {
    try {
        std::rethrow_exception(error);
    } catch (const NVError& failure) {
        if (failure.is<NVError::RateLimited>()) {
            return true;
        }
        if (const auto* server = failure.as<NVError::Server>()) {
            const int status = server->statusCode.value_or(0);
            return status == 429 || (status >= 500 && status <= 599);
        }
        if (const auto* network = failure.as<NVError::Network>()) {
            return isRetryableNetworkError(network->error);
        }
        return false;
    } catch (...) {
        return false;
    }
}

bool UploadRetryPolicy::isRetryableNetworkError(QNetworkReply::NetworkError error) {
    return std::ranges::find(retryableNetworkErrors, error) != retryableNetworkErrors.end();
}

std::chrono::milliseconds UploadRetryPolicy::delayAfter(int attempt, const std::exception_ptr& error) {
    return std::chrono::ceil<std::chrono::milliseconds>(std::chrono::duration<double>(secondsToWait(attempt, error)));
}
