#pragma once

#include "PopoverWindow.h"
#include "StatusItem.h"
#include "linux/ControlService.h"
#include "linux/SingleInstance.h"
#include "linux/TrayHostWatcher.h"

#include <QObject>

// Builds NorvaneBar's presence on the desktop: the tray icon once a tray host is known, the
// popover, and the ways to reach it without the icon (a second launch, the D-Bus interface).
class AppDelegate : public QObject {
    Q_OBJECT

public:
    explicit AppDelegate(QObject* parent = nullptr);

    void applicationDidFinishLaunching();

private:
    void trayHostFound();
    void noTrayHostFound();

    SingleInstance m_instance;
    ControlService m_control;
    TrayHostWatcher m_trayHost;
    StatusItem m_statusItem;
    PopoverWindow m_popover;
};
