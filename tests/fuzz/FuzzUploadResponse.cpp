// Any answer to an attachment upload: it gives an attachment with an id, or an NVError, and
// nothing else ever leaves the decoder. The first byte picks the status.
#include "core/api/NVError.h"
#include "core/api/UploadResponse.h"

#include <array>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static constexpr std::array statuses{200, 201, 204, 299, 400, 401, 403, 404, 413, 429, 500, 503};
    if (size == 0) {
        return 0;
    }
    const int status = statuses[data[0] % statuses.size()];
    const QByteArray body(reinterpret_cast<const char*>(data + 1), static_cast<qsizetype>(size - 1));
    try {
        const TaskAttachment attachment = decodeUploadResponse(body, status, 1.0);
        if (status > 299 || attachment.id.value_or(QString()).isEmpty()) {
            std::abort();
        }
    } catch (const NVError&) {
        // Any other exception escapes and ends the run.
    }
    return 0;
}
