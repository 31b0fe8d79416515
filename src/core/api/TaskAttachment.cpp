#include "core/api/TaskAttachment.h"

#include "core/json/JsonEncoding.h"

#include <cmath>

namespace {
// A JSON number as a 64-bit integer: a whole one as it is, a double truncated toward zero. A double
// beyond 64 bits (above 9.2e18) has no such integer and gives absent rather than undefined
// behaviour.
std::optional<qint64> truncatedNumber(const QJsonValue& value) {
    if (const auto whole = Json::integerOf(value)) {
        return whole;
    }
    if (!value.isDouble()) {
        return std::nullopt;
    }
    const double truncated = std::trunc(value.toDouble());
    // -2^63 is exact as a double; 2^63 is the first value out of range.
    constexpr double limit = 9223372036854775808.0;
    if (!(truncated >= -limit && truncated < limit)) {
        return std::nullopt;
    }
    return static_cast<qint64>(truncated);
}

// Base-10 digits with one optional leading "+" or "-"; no blanks, nothing else, no overflow.
std::optional<qint64> decimalInteger(const QString& text) {
    const qsizetype digitsFrom = text.startsWith(u'+') || text.startsWith(u'-') ? 1 : 0;
    if (digitsFrom == text.size()) {
        return std::nullopt;
    }
    for (qsizetype index = digitsFrom; index < text.size(); ++index) {
        if (text.at(index) < u'0' || text.at(index) > u'9') {
            return std::nullopt;
        }
    }
    bool ok = false;
    const qint64 value = text.toLongLong(&ok, 10);
    return ok ? std::optional(value) : std::nullopt;
}
} // namespace

std::optional<QString> TaskAttachment::flexibleString(const Json::JsonObject& json, const QString& key) {
    const QJsonValue value = json.raw(key);
    if (value.isString()) {
        return value.toString();
    }
    if (const auto number = truncatedNumber(value)) {
        return QString::number(*number);
    }
    return std::nullopt;
}

std::optional<qint64> TaskAttachment::flexibleInt64(const Json::JsonObject& json, const QString& key) {
    const QJsonValue value = json.raw(key);
    if (value.isString()) {
        return decimalInteger(value.toString());
    }
    return truncatedNumber(value);
}

TaskAttachment TaskAttachment::fromJson(const Json::JsonObject& json) {
    return {flexibleString(json, QStringLiteral("id")),      json.optional<QString>(QStringLiteral("url")),
            json.optional<QString>(QStringLiteral("title")), json.optional<QString>(QStringLiteral("extension")),
            flexibleString(json, QStringLiteral("version")), flexibleInt64(json, QStringLiteral("date")),
            json.optional<QString>(QStringLiteral("name")),  json.optional<QString>(QStringLiteral("thumbnail_small"))};
}

QJsonObject TaskAttachment::toJson() const {
    return Json::ObjectBuilder()
        .set(QStringLiteral("id"), id)
        .set(QStringLiteral("url"), url)
        .set(QStringLiteral("title"), title)
        .set(QStringLiteral("extension"), fileExtension)
        .set(QStringLiteral("version"), version)
        .set(QStringLiteral("date"), date)
        .set(QStringLiteral("name"), name)
        .set(QStringLiteral("thumbnail_small"), thumbnailSmall)
        .object();
}
