// Any bytes a server may send in answer to an upload, split anywhere: the reader never takes more
// body than it was given, never reads on after failing, and ends complete or failed at the end of
// the connection. The first byte picks the size of the pieces.
#include "core/api/HttpResponseReader.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) {
        return 0;
    }
    const size_t piece = 1 + data[0] % 64;
    const QByteArrayView bytes(reinterpret_cast<const char*>(data + 1), static_cast<qsizetype>(size - 1));
    HttpResponseReader reader;
    qsizetype bodyBytes = 0;
    for (qsizetype at = 0; at < bytes.size(); at += static_cast<qsizetype>(piece)) {
        const bool failedBefore = reader.failed();
        bodyBytes += reader.feed(bytes.sliced(at, std::min(static_cast<qsizetype>(piece), bytes.size() - at))).size();
        if (failedBefore && !reader.failed()) {
            std::abort();
        }
    }
    reader.endOfStream();
    if (bodyBytes > bytes.size() || reader.complete() == reader.failed() ||
        (reader.keepsConnection() && !reader.complete())) {
        std::abort();
    }
    return 0;
}
