#pragma once

#include "core/platform/GlobalShortcutService.h"

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QMap>
#include <QVariantMap>

// Global shortcuts through the GlobalShortcuts portal of xdg-desktop-portal: one session, opened
// at the first binding, to which the shortcuts are bound with their combination as the preferred
// trigger; the desktop may let the user choose another, and tells each press as Activated. The
// portal answers later, so a binding counts as made; one the desktop refuses never fires.
class PortalGlobalShortcuts : public GlobalShortcutService {
    Q_OBJECT

public:
    explicit PortalGlobalShortcuts(QDBusConnection bus = QDBusConnection::sessionBus(), QObject* parent = nullptr);

    // Whether a portal on the bus offers the GlobalShortcuts interface; asks it and waits a moment.
    static bool isAvailable(const QDBusConnection& bus = QDBusConnection::sessionBus());

    bool bindsShortcuts() const override { return true; }
    bool bind(quint32 id, const QString& keys, const QString& description) override;
    void release(quint32 id) override;

private slots:
    void sessionCreated(uint response, const QVariantMap& results);
    void activated(const QDBusObjectPath& session, const QString& shortcutID, qulonglong timestamp,
                   const QVariantMap& options);

private:
    struct Shortcut {
        QString keys;
        QString description;
    };

    // The path of the Request object the portal makes for a call with this handle token.
    QString requestPath(const QString& token) const;
    void createSession();
    // Binds every shortcut held now to the session, once there is one.
    void bindAll();

    QDBusConnection m_bus;
    QMap<quint32, Shortcut> m_shortcuts;
    QString m_session;
    bool m_creatingSession = false;
    int m_nextToken = 0;
};
