// Any Retry-After value: it reads as a number, as a date (never a negative wait), or not at all,
// and a leading blank never reads.
#include "core/api/UploadRetryPolicy.h"

#include <QTimeZone>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const QDateTime now(QDate(2024, 6, 11), QTime(9, 30), QTimeZone::utc());
    const QByteArray value(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const std::optional<double> seconds = UploadRetryPolicy::retryAfter(value, now);
    if (!seconds) {
        return 0;
    }
    const bool signedNumber = value.startsWith('-');
    if (*seconds < 0 && !signedNumber) {
        std::abort();
    }
    if (!value.isEmpty() && QChar::isSpace(static_cast<uchar>(value.front()))) {
        std::abort();
    }
    return 0;
}
