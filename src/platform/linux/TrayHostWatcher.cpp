#include "platform/linux/TrayHostWatcher.h"

#include "core/async/StartTask.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QPointer>
#include <qcoro/qcorodbus.h>

namespace {
const QString watcherService = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString watcherPath = QStringLiteral("/StatusNotifierWatcher");
const QString watcherInterface = QStringLiteral("org.kde.StatusNotifierWatcher");
constexpr int answerTimeoutMs = 2000;
} // namespace

TrayHostWatcher::TrayHostWatcher(QObject* parent)
    : QObject(parent)
    , m_watcherService(watcherService, QDBusConnection::sessionBus(), QDBusServiceWatcher::WatchForRegistration) {}

void TrayHostWatcher::start() {
    connect(&m_watcherService, &QDBusServiceWatcher::serviceRegistered, this, &TrayHostWatcher::lookAgain);
    connect(&m_xembed, &XEmbedTray::started, this, &TrayHostWatcher::lookAgain);
    QDBusConnection::sessionBus().connect(watcherService, watcherPath, watcherInterface,
                                          QStringLiteral("StatusNotifierHostRegistered"), this, SLOT(lookAgain()));
    lookAgain();
}

void TrayHostWatcher::lookAgain() {
    startTask(this, look());
}

QCoro::Task<bool> TrayHostWatcher::statusNotifierHostRegistered() {
    QDBusMessage call = QDBusMessage::createMethodCall(
        watcherService, watcherPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    call << watcherInterface << QStringLiteral("IsStatusNotifierHostRegistered");
    // A watcher that doesn't answer (one that is just going away, say) counts as none, soon.
    const QDBusMessage reply = co_await QDBusConnection::sessionBus().asyncCall(call, answerTimeoutMs);
    co_return reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty() &&
        reply.arguments().constFirst().value<QDBusVariant>().variant().toBool();
}

QCoro::Task<> TrayHostWatcher::look() {
    QPointer<TrayHostWatcher> self(this);
    QCoro::Task<bool> asking = statusNotifierHostRegistered();
    const bool statusNotifier = co_await std::move(asking);
    if (!self || m_found) {
        co_return;
    }
    if (statusNotifier || m_xembed.isRunning()) {
        m_found = true;
        emit hostFound(statusNotifier ? TrayHost::statusNotifier : TrayHost::xembed);
    } else if (!m_lookedOnce) {
        emit noHostFound();
    }
    m_lookedOnce = true;
}
