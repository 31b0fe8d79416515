#include "platform/linux/PortalGlobalShortcuts.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCall>

namespace {
const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
const QString interface = QStringLiteral("org.freedesktop.portal.GlobalShortcuts");
const QString requestInterface = QStringLiteral("org.freedesktop.portal.Request");
// A portal that doesn't say within this whether it offers the interface offers nothing.
constexpr int availabilityTimeoutMs = 2000;

// One entry of BindShortcuts's list, a(sa{sv}).
struct PortalShortcut {
    QString id;
    QVariantMap properties;
};

QDBusArgument& operator<<(QDBusArgument& argument, const PortalShortcut& shortcut) {
    argument.beginStructure();
    argument << shortcut.id << shortcut.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, PortalShortcut& shortcut) {
    argument.beginStructure();
    argument >> shortcut.id >> shortcut.properties;
    argument.endStructure();
    return argument;
}
// A combination as the shortcuts portal takes a preferred trigger: "ALT+SHIFT+space",
// "LOGO+SHIFT+space", "ALT+SHIFT+n".
QString triggerOf(const QString& keys) {
    static const QMap<QString, QString> modifiers{{QStringLiteral("Alt"), QStringLiteral("ALT")},
                                                  {QStringLiteral("Ctrl"), QStringLiteral("CTRL")},
                                                  {QStringLiteral("Shift"), QStringLiteral("SHIFT")},
                                                  {QStringLiteral("Super"), QStringLiteral("LOGO")}};
    QStringList parts = keys.split(QLatin1Char('+'));
    const QString key = parts.takeLast().toLower();
    for (QString& part : parts) {
        part = modifiers.value(part, part);
    }
    parts.append(key);
    return parts.join(QLatin1Char('+'));
}
} // namespace

Q_DECLARE_METATYPE(PortalShortcut)

PortalGlobalShortcuts::PortalGlobalShortcuts(QDBusConnection bus, QObject* parent)
    : GlobalShortcutService(parent)
    , m_bus(std::move(bus)) {
    qDBusRegisterMetaType<PortalShortcut>();
    qDBusRegisterMetaType<QList<PortalShortcut>>();
    m_bus.connect(service, path, interface, QStringLiteral("Activated"), this,
                  SLOT(activated(QDBusObjectPath, QString, qulonglong, QVariantMap)));
}

bool PortalGlobalShortcuts::isAvailable(const QDBusConnection& bus) {
    QDBusMessage request = QDBusMessage::createMethodCall(
        service, path, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    request << interface << QStringLiteral("version");
    return bus.call(request, QDBus::Block, availabilityTimeoutMs).type() == QDBusMessage::ReplyMessage;
}

bool PortalGlobalShortcuts::bind(quint32 id, const QString& keys, const QString& description) {
    m_shortcuts.insert(id, Shortcut{keys, description});
    bindAll();
    return true;
}

void PortalGlobalShortcuts::release(quint32 id) {
    if (m_shortcuts.remove(id)) {
        bindAll();
    }
}

QString PortalGlobalShortcuts::requestPath(const QString& token) const {
    QString sender = m_bus.baseService().mid(1);
    sender.replace(QLatin1Char('.'), QLatin1Char('_'));
    return QStringLiteral("/org/freedesktop/portal/desktop/request/%1/%2").arg(sender, token);
}

void PortalGlobalShortcuts::createSession() {
    m_creatingSession = true;
    const QString token = QStringLiteral("norvanebar%1").arg(++m_nextToken);
    // Listening before the call, so that an answer that comes at once is heard.
    m_bus.connect(service, requestPath(token), requestInterface, QStringLiteral("Response"), this,
                  SLOT(sessionCreated(uint, QVariantMap)));
    QDBusMessage request = QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("CreateSession"));
    request << QVariantMap{{QStringLiteral("handle_token"), token},
                           {QStringLiteral("session_handle_token"), QStringLiteral("norvanebar")}};
    m_bus.asyncCall(request);
}

void PortalGlobalShortcuts::sessionCreated(uint response, const QVariantMap& results) {
    m_creatingSession = false;
    const QVariant handle = results.value(QStringLiteral("session_handle"));
    // Documented as a string; some portals send an object path.
    m_session = handle.canConvert<QDBusObjectPath>() ? handle.value<QDBusObjectPath>().path() : handle.toString();
    if (response != 0 || m_session.isEmpty()) {
        m_session.clear();
        return;
    }
    bindAll();
}

void PortalGlobalShortcuts::bindAll() {
    if (m_session.isEmpty()) {
        if (!m_creatingSession) {
            createSession();
        }
        return;
    }
    QList<PortalShortcut> shortcuts;
    for (auto it = m_shortcuts.cbegin(); it != m_shortcuts.cend(); ++it) {
        shortcuts.append(PortalShortcut{QString::number(it.key()),
                                        {{QStringLiteral("description"), it->description},
                                         {QStringLiteral("preferred_trigger"), triggerOf(it->keys)}}});
    }
    const QString token = QStringLiteral("norvanebar%1").arg(++m_nextToken);
    QDBusMessage request = QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("BindShortcuts"));
    request << QVariant::fromValue(QDBusObjectPath(m_session)) << QVariant::fromValue(shortcuts) << QString()
            << QVariantMap{{QStringLiteral("handle_token"), token}};
    m_bus.asyncCall(request);
}

void PortalGlobalShortcuts::activated(const QDBusObjectPath& session, const QString& shortcutID,
                                      qulonglong /*timestamp*/, const QVariantMap& /*options*/) {
    bool isNumber = false;
    const quint32 id = shortcutID.toUInt(&isNumber);
    if (session.path() == m_session && isNumber && m_shortcuts.contains(id)) {
        emit pressed(id);
    }
}
