#pragma once

#include <QList>
#include <QMap>
#include <QString>
#include <optional>

// What the program keeps about a notification it posted: at most "taskURL" and "retryJobID". It
// stays in the program and comes back with the user's answer; the desktop never sees it.
using NotificationUserInfo = QMap<QString, QString>;

// A button on a notification.
struct NotificationAction {
    QString identifier;
    QString title;

    bool operator==(const NotificationAction&) const = default;
};

// A kind of notification and the buttons it offers, in order.
struct NotificationCategory {
    QString identifier;
    QList<NotificationAction> actions;

    bool operator==(const NotificationCategory&) const = default;
};

// One notification to show now.
struct NotificationRequest {
    // Ours, "norvanebar-…"; the server gives its own id besides.
    QString identifier;
    QString title;
    QString body;
    // Absent: no buttons; a click still reaches the program.
    std::optional<NotificationCategory> category;
    NotificationUserInfo userInfo;

    bool operator==(const NotificationRequest&) const = default;
};
