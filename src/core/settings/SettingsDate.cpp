#include "core/settings/SettingsDate.h"

#include "core/json/DecodingError.h"
#include "core/json/JsonDecoding.h"
#include "core/support/EpochSeconds.h"

namespace SettingsDate {
namespace {
// 2001-01-01 00:00:00 UTC in milliseconds since 1970.
constexpr qint64 referenceMSecs = 978'307'200'000;
} // namespace

QJsonValue toJson(const QDateTime& date) {
    return EpochSeconds::of(date, referenceMSecs);
}

QDateTime fromJson(const QJsonValue& value, const QString& path) {
    const std::optional<QDateTime> date = EpochSeconds::toInstant(Json::decode<double>(value, path), referenceMSecs);
    if (!date) {
        throw DecodingError(path, QStringLiteral("expected a date"));
    }
    return *date;
}

} // namespace SettingsDate
