// Any answer to an upload to Cloudinary: a 2xx gives a valid address, invalidResponse or a
// DecodingError; any other status gives uploadFailed with a message. Nothing else ever leaves the
// decoder, and reading an error body never throws. The first byte picks the status.
#include "core/json/DecodingError.h"
#include "core/storage/CloudinaryProvider.h"
#include "core/storage/StorageProviderError.h"

#include <array>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static constexpr std::array statuses{200, 201, 299, 300, 400, 401, 404, 420, 500, 502};
    if (size == 0) {
        return 0;
    }
    const int status = statuses[data[0] % statuses.size()];
    const bool success = status <= 299;
    const QByteArray body(reinterpret_cast<const char*>(data + 1), static_cast<qsizetype>(size - 1));
    CloudinaryProvider::errorMessage(body);
    try {
        const QUrl url = CloudinaryProvider::decodeResponse(status, body);
        if (!success || url.isEmpty() || !url.isValid()) {
            std::abort();
        }
    } catch (const StorageProviderError& error) {
        const bool expected = success ? error.is<StorageProviderError::InvalidResponse>()
                                      : error.is<StorageProviderError::UploadFailed>();
        if (!expected) {
            std::abort();
        }
    } catch (const DecodingError&) {
        if (!success) {
            std::abort();
        }
    }
    return 0;
}
