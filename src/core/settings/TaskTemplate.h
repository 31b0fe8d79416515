#pragma once

#include "core/json/JsonDecoding.h"
#include "core/settings/CustomValue.h"

#include <QJsonObject>
#include <QMap>
#include <QSet>
#include <QString>
#include <QUuid>
#include <optional>

// A stored set of field values that prefills the composer and may pin a list. Every key is optional
// when read, with the defaults below; a present key of the wrong type fails. So an object without
// an id gets a new one at each read, until the settings are written.
struct TaskTemplate {
    QUuid id = QUuid::createUuid();
    QString name = QStringLiteral("Template");
    std::optional<QString> listID;
    // Display text of the pinned list: space, folder if any, and list names joined by " › ".
    std::optional<QString> listPath;
    QString taskName;
    QString descriptionMarkdown;
    std::optional<QString> status;
    std::optional<qint64> priority;
    QSet<QString> tags;
    // Custom field id to value.
    QMap<QString, CustomValue> custom;

    static TaskTemplate fromJson(const Json::JsonObject& json);
    QJsonObject toJson() const;

    bool operator==(const TaskTemplate&) const = default;
};
