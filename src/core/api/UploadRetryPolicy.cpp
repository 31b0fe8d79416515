#include "api/UploadRetryPolicy.h"

#include <QLocale>
#include <QNetworkReply>
#include <algorithm>
#include <cctype>
#include <charconv>
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
