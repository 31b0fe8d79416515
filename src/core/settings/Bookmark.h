#pragma once

#include "core/json/JsonDecoding.h"

#include <QJsonObject>
#include <QString>
#include <QUuid>

// A link the user keeps at hand, identified by its id. A new bookmark gets a fresh random id.
struct Bookmark {
    QUuid id = QUuid::createUuid();
    QString name;
    QString urlString;

    static Bookmark fromJson(const Json::JsonObject& json);
    QJsonObject toJson() const;

    bool operator==(const Bookmark&) const = default;
};
