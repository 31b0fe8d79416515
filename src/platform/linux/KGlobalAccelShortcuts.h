#pragma once

#include "core/platform/GlobalShortcutService.h"

#include <QDBusConnection>
#include <QMap>

// Global shortcuts through KDE's kglobalaccel daemon, for Plasma without the GlobalShortcuts portal:
// each shortcut is an action of the component "norvanebar" with its combination as the key; the
// daemon refuses a key another action holds, and tells each press as globalShortcutPressed.
class KGlobalAccelShortcuts : public GlobalShortcutService {
    Q_OBJECT

public:
    static inline const QString component = QStringLiteral("norvanebar");

    explicit KGlobalAccelShortcuts(QDBusConnection bus = QDBusConnection::sessionBus(), QObject* parent = nullptr);

    // Whether the daemon is on the bus.
    static bool isAvailable(const QDBusConnection& bus = QDBusConnection::sessionBus());

    bool bindsShortcuts() const override { return true; }
    bool bind(quint32 id, const QString& keys, const QString& description) override;
    void release(quint32 id) override;

private slots:
    void shortcutPressed(const QString& componentUnique, const QString& shortcutUnique, qlonglong timestamp);

private:
    static QString actionOf(quint32 id) { return QStringLiteral("shortcut-%1").arg(id); }

    QDBusConnection m_bus;
    QMap<QString, quint32> m_actions;
};
