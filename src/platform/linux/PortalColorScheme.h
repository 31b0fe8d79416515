#pragma once

#include "core/async/LatestWins.h"
#include "core/platform/ColorSchemeSource.h"

#include <QDBusConnection>
#include <QDBusVariant>
#include <QVariant>

// The desktop's colour scheme as the Settings portal tells it: "color-scheme" of
// "org.freedesktop.appearance", read at the start and whenever a portal takes the bus name, and
// followed through SettingChanged. Whatever the portal sends is checked: only a uint32 1 or 2,
// also inside a second variant as older portals answer Read, says dark or light; other types or
// numbers, an error, no portal and no bus mean no preference. Nothing here waits on the caller's
// thread.
class PortalColorScheme : public ColorSchemeSource {
    Q_OBJECT

public:
    explicit PortalColorScheme(QDBusConnection bus = QDBusConnection::sessionBus(), QObject* parent = nullptr);

    ColorScheme colorScheme() const override { return m_scheme; }

    // Follows the portal's changes and asks for the current scheme, which comes later.
    void start();

    // The scheme a "color-scheme" value stands for, the value as it comes off the bus.
    static ColorScheme decode(const QVariant& value);

private slots:
    void settingChanged(const QString& nameSpace, const QString& key, const QDBusVariant& value);

private:
    void readCurrent();
    void setColorScheme(ColorScheme scheme);

    QDBusConnection m_bus;
    // A change that comes while a read is under way is newer than the read's answer.
    LatestWins m_latest;
    ColorScheme m_scheme = ColorScheme::noPreference;
};
