#pragma once

#include "core/app/AppState.h"
#include "core/shell/HotKeyManager.h"
#include "desktop/recording/DesktopContentPicker.h"
#include "desktop/shell/ColorSchemePalette.h"
#include "desktop/shell/DesktopWindowsModule.h"
#include "desktop/shell/StatusItem.h"
#include "platform/linux/AutostartEntry.h"
#include "platform/linux/ControlService.h"
#include "platform/linux/DesktopGlobalShortcuts.h"
#include "platform/linux/DesktopLinkActions.h"
#include "platform/linux/DesktopRegionCaptureTool.h"
#include "platform/linux/FreedesktopNotificationCenter.h"
#include "platform/linux/PortalColorScheme.h"
#include "platform/linux/SchemeHandlerEntry.h"
#include "platform/linux/SecretServiceStore.h"
#include "platform/linux/SingleInstance.h"
#include "platform/linux/TimerFdAlarm.h"
#include "platform/linux/TrayHostWatcher.h"

#include <QObject>

// Builds NorvaneBar's presence on the desktop: the tray icon once a tray host is known, the
// popover, the ways to reach it without the icon (a second launch, the D-Bus interface), the
// settings window, the answers to its notifications and the palette of the desktop's colour scheme;
// then starts the central state. The windows come with their module, at the first that is needed.
class AppDelegate : public QObject {
    Q_OBJECT

public:
    explicit AppDelegate(QObject* parent = nullptr);
    ~AppDelegate() override;

    void applicationDidFinishLaunching();
    // Closes the popover, so that it is not in the picture, and lets the user take a screenshot of
    // a region; one taken becomes the only attachment of a new task, shown in the popover.
    void startScreenshotCapture();
    // Opens the popover on the recording's setup sheet; the movie recorded starts a new task, with
    // the template chosen for recordings applied.
    void startScreenRecordingReplaceDraft();
    // Shows the popover hanging from the tray icon where the tray tells its place, else where it
    // last hung.
    void showPopover();

private:
    void noTrayHostFound();
    // The popover's first frame after showing is on screen, or it hid.
    void popoverPresented(bool presented);
    // The shortcuts of the settings: compose toggles the popover, the others start a screenshot or
    // a screen recording.
    void registerHotKeys();
    // A recording whose movie starts a new task with the template chosen for recordings.
    ScreenRecordingStartMode recordingForANewTask();
    // Bootstrap, then the due count once.
    QCoro::Task<> launch();

    SecretServiceStore m_secrets;
    FreedesktopNotificationCenter m_notificationCenter;
    DesktopLinkActions m_linkActions;
    DesktopRegionCaptureTool m_regionCapture;
    SchemeHandlerEntry m_callbackScheme;
    // Before the state, which is given the recording's panels and devices; it lets them go first.
    DesktopWindowsModule m_windows{{.app = m_app,
                                    .loginItem = m_loginItem,
                                    .hotKeys = m_hotKeys,
                                    .popoverPresented = [this](bool presented) { popoverPresented(presented); },
                                    .menuRequested = [this](QPoint at) { m_statusItem.showMenu(at); }}};
    std::unique_ptr<ScreenContentPicker> m_screenPicker =
        desktopContentPicker([this] { return m_windows.makeScreenPicker(); });
    AppState m_app{AppEnvironment{
        .secrets = &m_secrets,
        .notificationCenter = &m_notificationCenter,
        .linkActions = &m_linkActions,
        .wallClockAlarms = [] { return std::make_unique<TimerFdAlarm>(); },
        .regionCaptureTool = &m_regionCapture,
        .screenRecording = {.capture = &m_windows.screenCapture(),
                            .writers = &m_windows.movieWriters(),
                            .microphone = &m_windows.microphone(),
                            .makeFacecam = [this](const FacecamStyle& style) { return m_windows.makeFacecam(style); },
                            .picker = m_screenPicker.get(),
                            .panels = &m_windows.recordingPanels()},
        .callbackScheme = &m_callbackScheme}};
    SingleInstance m_instance;
    ControlService m_control;
    TrayHostWatcher m_trayHost;
    StatusItem m_statusItem;
    PortalColorScheme m_colorScheme;
    ColorSchemePalette m_palette{m_colorScheme};
    AutostartEntry m_loginItem;
    std::unique_ptr<GlobalShortcutService> m_shortcuts = desktopGlobalShortcuts();
    HotKeyManager m_hotKeys{*m_shortcuts};
};
