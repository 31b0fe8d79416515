#include "core/settings/TaskTemplate.h"

#include "core/json/JsonEncoding.h"

TaskTemplate TaskTemplate::fromJson(const Json::JsonObject& json) {
    TaskTemplate result;
    result.id = json.optional<QUuid>(QStringLiteral("id")).value_or(result.id);
    result.name = json.optional<QString>(QStringLiteral("name")).value_or(result.name);
    result.listID = json.optional<QString>(QStringLiteral("listID"));
    result.listPath = json.optional<QString>(QStringLiteral("listPath"));
    result.taskName = json.optional<QString>(QStringLiteral("taskName")).value_or(result.taskName);
    result.descriptionMarkdown =
        json.optional<QString>(QStringLiteral("descriptionMarkdown")).value_or(result.descriptionMarkdown);
    result.status = json.optional<QString>(QStringLiteral("status"));
    result.priority = json.optional<qint64>(QStringLiteral("priority"));
    result.tags = json.optional<QSet<QString>>(QStringLiteral("tags")).value_or(result.tags);
    result.custom = json.optional<QMap<QString, CustomValue>>(QStringLiteral("custom")).value_or(result.custom);
    return result;
}

QJsonObject TaskTemplate::toJson() const {
    return Json::ObjectBuilder()
        .set(QStringLiteral("id"), id)
        .set(QStringLiteral("name"), name)
        .set(QStringLiteral("listID"), listID)
        .set(QStringLiteral("listPath"), listPath)
        .set(QStringLiteral("taskName"), taskName)
        .set(QStringLiteral("descriptionMarkdown"), descriptionMarkdown)
        .set(QStringLiteral("status"), status)
        .set(QStringLiteral("priority"), priority)
        .set(QStringLiteral("tags"), tags)
        .set(QStringLiteral("custom"), custom)
        .object();
}
