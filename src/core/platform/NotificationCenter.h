#pragma once

#include "core/platform/NotificationRequest.h"

#include <QObject>
#include <QString>
#include <qcoro/qcorotask.h>

// The desktop's notification service. Every notification plays the desktop's message sound and
// answers a click on itself with the action `defaultActionIdentifier`. The center keeps each posted
// notification's user info until the notification closes, and hands it back with the user's
// answer. Nothing here blocks the caller's thread; answers come on the center's thread.
class NotificationCenter : public QObject {
    Q_OBJECT

public:
    // The action of a click on the notification itself, not on one of its buttons.
    static inline const QString defaultActionIdentifier = QStringLiteral("default");

    // Why a notification closed: the desktop took it away after a while without an answer, the
    // person closed it (or chose one of its buttons, after which the desktop closes it), or anything
    // else.
    enum class CloseReason { expired, dismissed, other };
    Q_ENUM(CloseReason)

    using QObject::QObject;

    // Whether notifications can be shown at all: the desktop's leave, or on Linux a notification
    // server that answers. Asked before every post.
    virtual QCoro::Task<bool> permission() = 0;
    // Whether notifications can carry buttons. Without them a notification still shows, plainly.
    virtual QCoro::Task<bool> offersActions() = 0;
    // Shows the notification now: whether the desktop took it.
    virtual QCoro::Task<bool> post(NotificationRequest request) = 0;

signals:
    // The user chose `actionIdentifier` on a notification we posted.
    void actionInvoked(const QString& actionIdentifier, const NotificationUserInfo& userInfo);
    // The notification with our `identifier` is gone; its user info is dropped.
    void notificationClosed(const QString& identifier, NotificationCenter::CloseReason reason);
    // Notifications can be shown again where they could not: on Linux a notification server came
    // onto the bus.
    void serverAppeared();
};
