#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QList>

// The harness's notification server as a test sees it: the "notify" calls it recorded (in
// NORVANEBAR_NOTIFICATIONS_LOG), and the user's side through its test interface.
namespace NotificationServerLog {

// The recorded Notify calls whose `field` ("summary", "body", …) is `value`, in order.
inline QList<QJsonObject> notifications(const QString& field, const QString& value) {
    QFile file(qEnvironmentVariable("NORVANEBAR_NOTIFICATIONS_LOG"));
    QList<QJsonObject> found;
    if (!file.open(QIODevice::ReadOnly)) {
        return found;
    }
    while (!file.atEnd()) {
        const QJsonObject record = QJsonDocument::fromJson(file.readLine()).object();
        if (record.value(QStringLiteral("event")) == QStringLiteral("notify") && record.value(field) == value) {
            found.append(record);
        }
    }
    return found;
}

// Calls a method of the server's test interface; the reply, or the error.
inline QDBusMessage callServer(const QString& method, const QVariantList& arguments) {
    QDBusMessage call = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.Notifications"),
                                                       QStringLiteral("/org/freedesktop/Notifications"),
                                                       QStringLiteral("org.norvanebar.Test.Notifications"), method);
    call.setArguments(arguments);
    return QDBusConnection::sessionBus().call(call);
}

// The user chooses `actionKey` on the recorded notification.
inline bool invokeAction(const QJsonObject& notification, const QString& actionKey) {
    return callServer(
               QStringLiteral("InvokeAction"),
               {QVariant::fromValue(static_cast<uint>(notification.value(QStringLiteral("id")).toInt())), actionKey})
               .type() == QDBusMessage::ReplyMessage;
}

} // namespace NotificationServerLog
