// Any body of a refusal of the Drive API: the message comes out as text or absent, never as an
// exception; a body that is no JSON comes out as itself when it is UTF-8, else as nothing.
#include "core/storage/DriveRecords.h"
#include "core/support/StrictUtf8.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QByteArray body(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const std::optional<QString> message = DriveErrorResponse::messageIn(body);
    bool json = true;
    try {
        Json::parse(body);
    } catch (const DecodingError&) {
        json = false;
    }
    if (!json && message != strictUtf8(body)) {
        std::abort();
    }
    return 0;
}
