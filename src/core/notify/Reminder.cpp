#include "core/notify/Reminder.h"

#include "core/json/JsonEncoding.h"
#include "core/support/EpochSeconds.h"

namespace {
const QString fireDateKey = QStringLiteral("fireDate");
}

Reminder Reminder::fromJson(const Json::JsonObject& json) {
    const std::optional<QDateTime> fireDate = EpochSeconds::toInstant(json.required<double>(fireDateKey));
    if (!fireDate) {
        throw DecodingError(json.pathOf(fireDateKey), QStringLiteral("expected a date"));
    }
    return {
        .identifier = json.required<QString>(QStringLiteral("identifier")),
        .taskName = json.required<QString>(QStringLiteral("taskName")),
        .taskURL = json.optional<QString>(QStringLiteral("taskURL")),
        .fireDate = *fireDate,
    };
}

QJsonObject Reminder::toJson() const {
    return Json::ObjectBuilder()
        .set(QStringLiteral("identifier"), identifier)
        .set(QStringLiteral("taskName"), taskName)
        .set(QStringLiteral("taskURL"), taskURL)
        .set(fireDateKey, EpochSeconds::of(fireDate))
        .object();
}
