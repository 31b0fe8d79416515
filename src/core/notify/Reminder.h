#pragma once

#include "core/json/JsonDecoding.h"

#include <QDateTime>
#include <QJsonObject>
#include <QString>
#include <optional>

// A reminder of a task, kept by the program until it falls due: the notification server schedules
// nothing.
struct Reminder {
    // "norvanebar-reminder-" and a UUID; the notification's identifier.
    QString identifier;
    QString taskName;
    std::optional<QString> taskURL;
    QDateTime fireDate;

    // The file's form of `fireDate` is seconds since 1970 as a number, to the millisecond.
    static Reminder fromJson(const Json::JsonObject& json);
    QJsonObject toJson() const;

    bool operator==(const Reminder&) const = default;
};
