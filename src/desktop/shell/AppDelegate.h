#pragma once

#include "app/AppState.h"
#include "linux/ControlService.h"
#include "linux/DesktopLinkActions.h"
#include "linux/FreedesktopNotificationCenter.h"
#include "linux/PortalColorScheme.h"
#include "linux/SecretServiceStore.h"
#include "linux/SingleInstance.h"
#include "linux/TrayHostWatcher.h"
#include "shell/ColorSchemePalette.h"
#include "shell/PopoverPages.h"
#include "shell/StatusItem.h"

#include <QGuiApplication>
#include <QObject>

// Builds NorvaneBar's presence on the desktop: the tray icon once a tray host is known, the
// popover and its pages, the ways to reach it without the icon (a second launch, the D-Bus
// interface), the answers to its notifications and the palette of the desktop's colour scheme; then
// starts the central state.
class AppDelegate : public QObject {
    Q_OBJECT

public:
    explicit AppDelegate(QObject* parent = nullptr);

    void applicationDidFinishLaunching();
    // Redraws the tray icon's badge and tool tip from the running work and, with the setting on, the
    // tasks due by today's end. AppState::updateBadge calls it.
    void refreshBadge();
    // With the due count shown, a user signed in and a workspace active: fetches the user's tasks,
    // then redraws the badge. At launch and each time the popover opens; never by a timer.
    QCoro::Task<> refreshDueCountIfNeeded();

private:
    void trayHostFound();
    void noTrayHostFound();
    // Bootstrap, then the due count once.
    QCoro::Task<> launch();

    SecretServiceStore m_secrets;
    FreedesktopNotificationCenter m_notificationCenter;
    DesktopLinkActions m_linkActions;
    AppState m_app{AppEnvironment{
        .secrets = &m_secrets, .notificationCenter = &m_notificationCenter, .linkActions = &m_linkActions}};
    SingleInstance m_instance;
    ControlService m_control;
    TrayHostWatcher m_trayHost;
    StatusItem m_statusItem;
    PortalColorScheme m_colorScheme;
    ColorSchemePalette m_palette{m_colorScheme};
    PopoverPages m_pages{m_app, *QGuiApplication::clipboard()};
};
