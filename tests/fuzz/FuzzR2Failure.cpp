// Any refusal of an R2 upload: its message is the body itself when the body is UTF-8, and otherwise
// the fallback that names the status; it never throws. The first byte picks the status.
#include "core/storage/CloudflareR2Provider.h"
#include "core/support/StrictUtf8.h"

#include <array>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static constexpr std::array statuses{300, 400, 403, 404, 409, 411, 413, 500, 501, 503};
    if (size == 0) {
        return 0;
    }
    const int status = statuses[data[0] % statuses.size()];
    const QByteArray body(reinterpret_cast<const char*>(data + 1), static_cast<qsizetype>(size - 1));
    const QString message = CloudflareR2Provider::failureMessage(status, body);
    const std::optional<QString> text = strictUtf8(body);
    if (text ? message != *text || message.toUtf8() != body
             : message != QStringLiteral("R2 upload failed (HTTP %1).").arg(status)) {
        std::abort();
    }
    return 0;
}
