// A custom value's stored form and the value sent to the service, on any bytes: decoding fails with
// DecodingError or gives a value that is stored and read back the same. Whatever is sent is a value
// JSON can hold, and an empty value sends nothing; the bytes are also tried as typed text.
#include "core/json/DecodingError.h"
#include "core/json/JsonDecoding.h"
#include "core/settings/CustomValue.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>

namespace {
void checkServiceValue(const CustomValue& value) {
    const std::optional<JSONValue> sent = value.jsonValue();
    if (sent && std::holds_alternative<double>(sent->value) && !std::isfinite(std::get<double>(sent->value))) {
        std::abort();
    }
    if (value.isEmpty() && sent) {
        std::abort(); // an empty value never reaches the service
    }
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const QString typed = QString::fromUtf8(bytes);
    checkServiceValue(CustomValue::number(typed));
    checkServiceValue(CustomValue::text(typed));
    try {
        const CustomValue value = Json::decode<CustomValue>(Json::parse(bytes), QStringLiteral("$"));
        checkServiceValue(value);
        if (Json::decode<CustomValue>(value.toJson(), QStringLiteral("$")) != value) {
            std::abort();
        }
    } catch (const DecodingError&) {
    }
    return 0;
}
