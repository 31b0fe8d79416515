#pragma once

#include "platform/linux/XEmbedTray.h"

#include <QDBusServiceWatcher>
#include <QObject>
#include <qcoro/qcorotask.h>

// Finds out which tray host the desktop offers before any tray icon exists. Qt decides once per
// process whether to use a StatusNotifierItem and never asks again, so the icon must wait until
// a host is known; a host that starts later (at login the panel may come up after NorvaneBar) is
// still noticed.
class TrayHostWatcher : public QObject {
    Q_OBJECT

public:
    enum class TrayHost { statusNotifier, xembed };
    Q_ENUM(TrayHost)

    explicit TrayHostWatcher(QObject* parent = nullptr);

    void start();

signals:
    // Once, for the first host found.
    void hostFound(TrayHost host);
    // Once, when the first look finds no host at all.
    void noHostFound();

private slots:
    void lookAgain();

private:
    QCoro::Task<> look();
    QCoro::Task<bool> statusNotifierHostRegistered();

    QDBusServiceWatcher m_watcherService;
    XEmbedTray m_xembed;
    bool m_found = false;
    bool m_lookedOnce = false;
};
