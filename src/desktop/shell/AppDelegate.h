#pragma once

#include "app/AppState.h"
#include "linux/AutostartEntry.h"
#include "linux/ControlService.h"
#include "linux/DesktopLinkActions.h"
#include "linux/FreedesktopNotificationCenter.h"
#include "linux/PortalColorScheme.h"
#include "linux/SecretServiceStore.h"
#include "linux/SingleInstance.h"
#include "linux/TrayHostWatcher.h"
#include "settings/SettingsWindow.h"
#include "shell/ColorSchemePalette.h"
#include "shell/PopoverPages.h"
#include "shell/StatusItem.h"

#include <QGuiApplication>
#include <QObject>

// Builds NorvaneBar's presence on the desktop: the tray icon once a tray host is known, the
// popover and its pages, the ways to reach it without the icon (a second launch, the D-Bus
// interface), the settings window, the answers to its notifications and the palette of the desktop's
// colour scheme; then starts the central state.
class AppDelegate : public QObject {
    Q_OBJECT

public:
    explicit AppDelegate(QObject* parent = nullptr);

    void applicationDidFinishLaunching();

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
    AutostartEntry m_loginItem;
    SettingsWindow m_settingsWindow{m_app, m_loginItem};
};
