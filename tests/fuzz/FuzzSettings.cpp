// The settings file decoder on any bytes: it either fails with DecodingError or gives settings that
// save to a file reading back as the same settings and saving to the same bytes again.
#include "core/json/DecodingError.h"
#include "core/json/JsonDecoding.h"
#include "core/json/JsonEncoding.h"
#include "core/settings/AppSettings.h"

#include <cstdint>
#include <cstdlib>

namespace {
AppSettings decodeSettings(const QByteArray& bytes) {
    return Json::decode<AppSettings>(Json::parse(bytes), QStringLiteral("$"));
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    AppSettings settings;
    try {
        settings = decodeSettings(bytes);
    } catch (const DecodingError&) {
        return 0;
    }
    const QByteArray saved = Json::serializeIndented(settings.toJson());
    try {
        const AppSettings again = decodeSettings(saved);
        if (again != settings || Json::serializeIndented(again.toJson()) != saved) {
            std::abort();
        }
    } catch (const DecodingError&) {
        std::abort(); // a saved file must always read back
    }
    return 0;
}
