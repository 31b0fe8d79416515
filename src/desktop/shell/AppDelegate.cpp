#include "desktop/shell/AppDelegate.h"

#include "core/async/StartTask.h"

#include <cstdio>

AppDelegate::AppDelegate(QObject* parent)
    : QObject(parent) {}

AppDelegate::~AppDelegate() {
    // The windows go before the state they show.
    m_windows.close();
}

void AppDelegate::applicationDidFinishLaunching() {
    const auto toggleAtIcon = [this] { m_windows.togglePopover(m_statusItem.iconGeometry()); };
    connect(&m_instance, &SingleInstance::messageReceived, this, [this, toggleAtIcon](const InstanceMessage& message) {
        if (message.callbackURL) {
            // The browser's answer to a sign-in goes to the sign-in that waits for it.
            m_app.googleDriveAuth().handleCallback(*message.callbackURL);
        } else {
            toggleAtIcon();
        }
    });
    connect(&m_control, &ControlService::toggleRequested, this, toggleAtIcon);
    connect(&m_statusItem, &StatusItem::clicked, this,
            [this](std::optional<QRect> anchor) { m_windows.togglePopover(anchor); });
    connect(&m_statusItem, &StatusItem::quitRequested, qApp, &QCoreApplication::quit);
    connect(&m_statusItem, &StatusItem::newTaskRequested, this, [this] {
        m_app.setActiveTab(PopoverTab::compose);
        showPopover();
    });
    connect(&m_statusItem, &StatusItem::recordScreenRequested, this, &AppDelegate::startScreenRecordingReplaceDraft);
    connect(&m_app.screenRecording(), &ScreenRecordingFlow::popoverShowRequested, this, &AppDelegate::showPopover);
    connect(&m_app.screenRecording(), &ScreenRecordingFlow::popoverCloseRequested, this,
            [this] { m_windows.hidePopover(); });
    connect(&m_statusItem, &StatusItem::openURLRequested, this,
            [this](const QUrl& url) { m_linkActions.openURL(url); });
    connect(&m_statusItem, &StatusItem::settingsRequested, this, [this] { m_windows.showSettings(std::nullopt); });
    connect(&m_app, &AppState::settingsRequested, this,
            [this](std::optional<SettingsTab> tab) { m_windows.showSettings(tab); });
    const auto showBookmarks = [this] { m_statusItem.setBookmarks(m_app.settings().settings().bookmarks); };
    connect(&m_app.settings(), &SettingsStore::settingsChanged, this, showBookmarks);
    showBookmarks();
    // The popover goes before the tray menu opens. Hidden after it, while the menu holds the
    // keyboard grab, it takes the X input focus away with it; Qt then finds no window of the app
    // active and closes every popup, the menu among them.
    connect(&m_statusItem, &StatusItem::menuAboutToShow, this, [this] { m_windows.hidePopover(); });
    connect(&m_trayHost, &TrayHostWatcher::hostFound, &m_statusItem, &StatusItem::create);
    connect(&m_trayHost, &TrayHostWatcher::noHostFound, this, &AppDelegate::noTrayHostFound);

    m_statusItem.follow(m_app.badge());
    m_app.notifications().registerCategories();
    m_app.notifications().restoreReminders();

    registerHotKeys();
    m_instance.listen();
    m_control.publish();
    m_trayHost.start();
    m_colorScheme.start();
    startTask(this, launch());
}

void AppDelegate::registerHotKeys() {
    const AppSettings& settings = m_app.settings().settings();
    m_hotKeys.registerHotKey(HotKeyManager::composeSlot, settings.hotKeyPreset, [this] {
        if (m_windows.isPopoverVisible()) {
            m_windows.hidePopover();
        } else {
            showPopover();
        }
    });
    // The screenshot closes the popover first, so that it is not in the picture.
    m_hotKeys.registerHotKey(HotKeyManager::screenshotSlot, settings.screenshotHotKeyPreset,
                             [this] { startScreenshotCapture(); });
    // Pressed again while recording, the shortcut stops the recording.
    m_hotKeys.registerHotKey(HotKeyManager::screenRecordingSlot, settings.screenRecordingHotKeyPreset,
                             [this] { m_app.screenRecording().startOrStopScreenRecording(recordingForANewTask()); });
}

ScreenRecordingStartMode AppDelegate::recordingForANewTask() {
    return ScreenRecordingStartModes::ReplaceDraft{.templateID = m_app.settings().settings().screenRecordingTemplateID};
}

void AppDelegate::startScreenRecordingReplaceDraft() {
    m_app.startScreenRecording(recordingForANewTask());
}

void AppDelegate::startScreenshotCapture() {
    m_windows.hidePopover();
    startTask(this, m_app.startScreenshotCapture(), [this](bool show) {
        if (show) {
            showPopover();
        }
    });
}

void AppDelegate::showPopover() {
    m_windows.showPopover(m_statusItem.iconGeometry());
}

void AppDelegate::popoverPresented(bool presented) {
    m_control.setPopoverVisible(presented);
    if (presented) {
        m_app.dueCount().startRefresh();
    }
}

QCoro::Task<> AppDelegate::launch() {
    QCoro::Task<> bootstrapping = m_app.bootstrap();
    co_await std::move(bootstrapping);
    QCoro::Task<bool> counting = m_app.dueCount().refresh();
    co_await std::move(counting);
}

void AppDelegate::noTrayHostFound() {
    const QString message =
        tr("NorvaneBar: this desktop shows no tray icons (no StatusNotifierItem host or XEmbed tray is running).\n"
           "NorvaneBar keeps running: launch it again, or call TogglePopover on com.norvanebar.NorvaneBar over "
           "D-Bus, to open it.\n");
    std::fputs(message.toLocal8Bit().constData(), stderr);
}
