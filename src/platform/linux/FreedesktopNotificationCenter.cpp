#include "platform/linux/FreedesktopNotificationCenter.h"

#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QPointer>
#include <qcoro/qcorodbus.h>

namespace {
const QString service = QStringLiteral("org.freedesktop.Notifications");
const QString path = QStringLiteral("/org/freedesktop/Notifications");
const QString interface = QStringLiteral("org.freedesktop.Notifications");
// A server that doesn't answer within this counts as none.
constexpr int answerTimeoutMs = 5000;
// -1: the server's own timeout.
constexpr int serverExpiry = -1;
// The reasons of NotificationClosed that the program tells apart.
constexpr uint closedExpired = 1;
constexpr uint closedDismissed = 2;

QDBusMessage call(const QString& method) {
    return QDBusMessage::createMethodCall(service, path, interface, method);
}

// Keys and titles in turn, as Notify takes them: the category's buttons, then the click.
QStringList actionsOf(const NotificationRequest& request) {
    QStringList actions;
    if (request.category) {
        for (const NotificationAction& action : request.category->actions) {
            actions << action.identifier << action.title;
        }
    }
    actions << NotificationCenter::defaultActionIdentifier << QString();
    return actions;
}
} // namespace

FreedesktopNotificationCenter::FreedesktopNotificationCenter(QDBusConnection bus, QObject* parent)
    : NotificationCenter(parent)
    , m_bus(std::move(bus)) {
    m_bus.connect(service, path, interface, QStringLiteral("ActionInvoked"), this,
                  SLOT(serverActionInvoked(uint, QString)));
    m_bus.connect(service, path, interface, QStringLiteral("NotificationClosed"), this,
                  SLOT(serverNotificationClosed(uint, uint)));
    auto* watcher = new QDBusServiceWatcher(service, m_bus, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString&, const QString& newOwner) { serverChanged(newOwner); });
}

QCoro::Task<std::optional<QStringList>> FreedesktopNotificationCenter::capabilities() {
    const QDBusMessage reply = co_await m_bus.asyncCall(call(QStringLiteral("GetCapabilities")), answerTimeoutMs);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) {
        co_return std::nullopt;
    }
    co_return reply.arguments().constFirst().toStringList();
}

QCoro::Task<bool> FreedesktopNotificationCenter::permission() {
    QCoro::Task<std::optional<QStringList>> answer = capabilities();
    const std::optional<QStringList> capabilities = co_await std::move(answer);
    co_return capabilities.has_value();
}

QCoro::Task<bool> FreedesktopNotificationCenter::offersActions() {
    QCoro::Task<std::optional<QStringList>> answer = capabilities();
    const std::optional<QStringList> capabilities = co_await std::move(answer);
    co_return capabilities && capabilities->contains(QStringLiteral("actions"));
}

QCoro::Task<bool> FreedesktopNotificationCenter::post(NotificationRequest request) {
    QPointer<FreedesktopNotificationCenter> self(this);
    QCoro::Task<bool> askActions = offersActions();
    const bool withActions = co_await std::move(askActions);
    if (!self) {
        co_return false;
    }
    QDBusMessage message = call(QStringLiteral("Notify"));
    const QVariantMap hints{
        {QStringLiteral("desktop-entry"), QStringLiteral("com.norvanebar.NorvaneBar")},
        {QStringLiteral("sound-name"), QStringLiteral("message-new-instant")},
    };
    message << QStringLiteral("NorvaneBar") << uint{0} << QString() << request.title << request.body
            << (withActions ? actionsOf(request) : QStringList()) << hints << serverExpiry;
    const QDBusMessage reply = co_await m_bus.asyncCall(message, answerTimeoutMs);
    if (!self || reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) {
        co_return false;
    }
    m_posted.insert(reply.arguments().constFirst().toUInt(), request);
    co_return true;
}

void FreedesktopNotificationCenter::serverActionInvoked(uint id, const QString& actionKey) {
    const auto posted = m_posted.constFind(id);
    if (posted != m_posted.cend()) {
        emit actionInvoked(actionKey, posted->userInfo);
    }
}

void FreedesktopNotificationCenter::serverNotificationClosed(uint id, uint reason) {
    const auto posted = m_posted.find(id);
    if (posted == m_posted.end()) {
        return;
    }
    const QString identifier = posted->identifier;
    m_posted.erase(posted);
    emit notificationClosed(identifier, reason == closedExpired     ? CloseReason::expired
                                        : reason == closedDismissed ? CloseReason::dismissed
                                                                    : CloseReason::other);
}

void FreedesktopNotificationCenter::serverChanged(const QString& newOwner) {
    // A server that goes or is replaced starts counting ids anew: what we kept is of the old one.
    m_posted.clear();
    if (!newOwner.isEmpty()) {
        emit serverAppeared();
    }
}
