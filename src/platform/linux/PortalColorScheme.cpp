#include "platform/linux/PortalColorScheme.h"

#include "core/async/StartTask.h"

#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <qcoro/qcorodbus.h>

namespace {
const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
const QString interface = QStringLiteral("org.freedesktop.portal.Settings");
const QString appearance = QStringLiteral("org.freedesktop.appearance");
const QString colorSchemeKey = QStringLiteral("color-scheme");
// A portal that doesn't answer within this says nothing.
constexpr int answerTimeoutMs = 5000;
// Variants inside variants beyond this are not what a portal sends.
constexpr int deepestNesting = 8;

QCoro::Task<ColorSchemeSource::ColorScheme> readScheme(QDBusConnection bus) {
    QDBusMessage request = QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("Read"));
    request << appearance << colorSchemeKey;
    const QDBusMessage reply = co_await bus.asyncCall(request, answerTimeoutMs);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) {
        co_return ColorSchemeSource::ColorScheme::noPreference;
    }
    co_return PortalColorScheme::decode(reply.arguments().constFirst());
}
} // namespace

PortalColorScheme::PortalColorScheme(QDBusConnection bus, QObject* parent)
    : ColorSchemeSource(parent)
    , m_bus(std::move(bus)) {}

void PortalColorScheme::start() {
    if (!m_bus.isConnected()) {
        return;
    }
    // Qt 6.4 finds the slot's parameter types by name, and knows QDBusVariant by its name only once
    // it is registered; until then the connection fails.
    qRegisterMetaType<QDBusVariant>();
    m_bus.connect(service, path, interface, QStringLiteral("SettingChanged"), this,
                  SLOT(settingChanged(QString, QString, QDBusVariant)));
    // A portal that starts later is asked; one that goes leaves no preference behind.
    auto* watcher = new QDBusServiceWatcher(service, m_bus, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString&, const QString& newOwner) {
                if (newOwner.isEmpty()) {
                    m_latest.raise();
                    setColorScheme(ColorScheme::noPreference);
                } else {
                    readCurrent();
                }
            });
    readCurrent();
}

PortalColorScheme::ColorScheme PortalColorScheme::decode(const QVariant& value) {
    QVariant content = value;
    for (int depth = 0; depth < deepestNesting && content.metaType() == QMetaType::fromType<QDBusVariant>(); ++depth) {
        content = content.value<QDBusVariant>().variant();
    }
    if (content.metaType() != QMetaType::fromType<uint>()) {
        return ColorScheme::noPreference;
    }
    switch (content.toUInt()) {
    case uint(ColorScheme::dark):
        return ColorScheme::dark;
    case uint(ColorScheme::light):
        return ColorScheme::light;
    default:
        return ColorScheme::noPreference;
    }
}

void PortalColorScheme::settingChanged(const QString& nameSpace, const QString& key, const QDBusVariant& value) {
    if (nameSpace != appearance || key != colorSchemeKey) {
        return;
    }
    m_latest.raise();
    setColorScheme(decode(value.variant()));
}

void PortalColorScheme::readCurrent() {
    const qint64 ticket = m_latest.raise();
    startTask(this, readScheme(m_bus), [this, ticket](ColorScheme scheme) {
        if (m_latest.isCurrent(ticket)) {
            setColorScheme(scheme);
        }
    });
}

void PortalColorScheme::setColorScheme(ColorScheme scheme) {
    if (scheme == m_scheme) {
        return;
    }
    m_scheme = scheme;
    emit colorSchemeChanged(scheme);
}
