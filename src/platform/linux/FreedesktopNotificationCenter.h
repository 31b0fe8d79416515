#pragma once

#include "core/platform/NotificationCenter.h"

#include <QDBusConnection>
#include <QHash>
#include <QStringList>
#include <optional>

// Notifications through the freedesktop notification server (org.freedesktop.Notifications) on the
// session bus. No server on the bus counts as no leave to notify; one that comes onto the bus later
// is told as serverAppeared. Each notification carries its
// category's buttons and a "default" action for a click, where the server shows actions; the
// desktop entry "com.norvanebar.NorvaneBar" and the sound "message-new-instant" as hints. Calls never wait on the
// GUI thread, and a server that doesn't answer counts as none after a few seconds.
class FreedesktopNotificationCenter : public NotificationCenter {
    Q_OBJECT

public:
    explicit FreedesktopNotificationCenter(QDBusConnection bus = QDBusConnection::sessionBus(),
                                           QObject* parent = nullptr);

    QCoro::Task<bool> permission() override;
    QCoro::Task<bool> offersActions() override;
    QCoro::Task<bool> post(NotificationRequest request) override;

private slots:
    void serverActionInvoked(uint id, const QString& actionKey);
    void serverNotificationClosed(uint id, uint reason);

private:
    // The server's capabilities; absent when no server answers.
    QCoro::Task<std::optional<QStringList>> capabilities();
    void serverChanged(const QString& newOwner);

    QDBusConnection m_bus;
    // What we posted, under the id the server gave it, until it closes.
    QHash<uint, NotificationRequest> m_posted;
};
