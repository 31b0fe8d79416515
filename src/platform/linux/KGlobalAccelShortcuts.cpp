#include "platform/linux/KGlobalAccelShortcuts.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QKeySequence>

namespace {
const QString service = QStringLiteral("org.kde.kglobalaccel");
const QString path = QStringLiteral("/kglobalaccel");
const QString interface = QStringLiteral("org.kde.KGlobalAccel");
const QString componentInterface = QStringLiteral("org.kde.kglobalaccel.Component");
// setShortcut's flags: the action is present now, and the key is ours, not one remembered.
constexpr uint setPresent = 2;
constexpr uint noAutoloading = 4;
constexpr int answerTimeoutMs = 2000;

QDBusMessage call(QDBusConnection& bus, const QString& method, const QVariantList& arguments) {
    QDBusMessage request = QDBusMessage::createMethodCall(service, path, interface, method);
    request.setArguments(arguments);
    return bus.call(request, QDBus::Block, answerTimeoutMs);
}

// The key as kglobalaccel numbers it: Qt's key code with its modifiers. Super is Qt's Meta.
int keyCodeOf(const QString& keys) {
    QString portable = keys;
    portable.replace(QStringLiteral("Super"), QStringLiteral("Meta"));
    const QKeySequence sequence(portable, QKeySequence::PortableText);
    return sequence.isEmpty() ? 0 : sequence[0].toCombined();
}
} // namespace

KGlobalAccelShortcuts::KGlobalAccelShortcuts(QDBusConnection bus, QObject* parent)
    : GlobalShortcutService(parent)
    , m_bus(std::move(bus)) {
    m_bus.connect(service, QStringLiteral("/component/%1").arg(component), componentInterface,
                  QStringLiteral("globalShortcutPressed"), this, SLOT(shortcutPressed(QString, QString, qlonglong)));
}

bool KGlobalAccelShortcuts::isAvailable(const QDBusConnection& bus) {
    return bus.isConnected() && bus.interface()->isServiceRegistered(service).value();
}

bool KGlobalAccelShortcuts::bind(quint32 id, const QString& keys, const QString& description) {
    const int key = keyCodeOf(keys);
    const QStringList action{component, actionOf(id), QStringLiteral("NorvaneBar"), description};
    if (key == 0 || call(m_bus, QStringLiteral("doRegister"), {action}).type() != QDBusMessage::ReplyMessage) {
        return false;
    }
    const QDBusMessage reply = call(m_bus, QStringLiteral("setShortcut"),
                                    {action, QVariant::fromValue(QList<int>{key}), setPresent | noAutoloading});
    // The daemon answers with the keys the action has now: without ours, another action holds it.
    const auto keysNow = qdbus_cast<QList<int>>(reply.arguments().value(0));
    if (reply.type() != QDBusMessage::ReplyMessage || !keysNow.contains(key)) {
        call(m_bus, QStringLiteral("unregister"), {component, actionOf(id)});
        return false;
    }
    m_actions.insert(actionOf(id), id);
    return true;
}

void KGlobalAccelShortcuts::release(quint32 id) {
    if (m_actions.remove(actionOf(id))) {
        call(m_bus, QStringLiteral("unregister"), {component, actionOf(id)});
    }
}

void KGlobalAccelShortcuts::shortcutPressed(const QString& componentUnique, const QString& shortcutUnique,
                                            qlonglong /*timestamp*/) {
    const auto found = m_actions.constFind(shortcutUnique);
    if (componentUnique == component && found != m_actions.cend()) {
        emit pressed(found.value());
    }
}
