// Any JSON document as a JSONValue: written back and read again, it is the same value.
#include "core/api/JSONValue.h"
#include "core/json/JsonDecoding.h"
#include "core/json/JsonEncoding.h"
#include "support/FuzzJson.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::optional<QJsonValue> parsed = fuzzedJson(data, size);
    if (!parsed) {
        return 0;
    }
    const QJsonValue& json = *parsed;
    // A parsed document holds no undefined value, so this never fails.
    const JSONValue value = JSONValue::fromJson(json);
    const JSONValue again = JSONValue::fromJson(Json::parse(Json::serialize(value.toJson())));
    if (again != value) {
        std::abort();
    }
    return 0;
}
