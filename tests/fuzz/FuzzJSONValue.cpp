// Any JSON document as a JSONValue: written back and read again, it is the same value.
#include "api/JSONValue.h"
#include "json/JsonDecoding.h"
#include "json/JsonEncoding.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    QJsonValue json;
    try {
        json = Json::parse(QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)));
    } catch (const DecodingError&) {
        return 0;
    }
    // A parsed document holds no undefined value, so this never fails.
    const JSONValue value = JSONValue::fromJson(json);
    const JSONValue again = JSONValue::fromJson(Json::parse(Json::serialize(value.toJson())));
    if (again != value) {
        std::abort();
    }
    return 0;
}
