#include "core/shell/InstanceMessage.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const auto message = InstanceMessages::decode(bytes);
    // Whatever decodes must encode back to something that decodes the same.
    if (message && InstanceMessages::decode(InstanceMessages::encode(*message)) != message) {
        std::abort();
    }
    return 0;
}
