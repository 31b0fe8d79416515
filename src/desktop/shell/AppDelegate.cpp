#include "shell/AppDelegate.h"

#include "async/StartTask.h"

#include <QPointer>
#include <QTimer>
#include <cstdio>

AppDelegate::AppDelegate(QObject* parent)
    : QObject(parent) {}

void AppDelegate::applicationDidFinishLaunching() {
    PopoverWindow& popover = m_pages.window();
    const auto toggleWithoutAnchor = [this] { m_pages.window().toggle(std::nullopt); };
    connect(&m_instance, &SingleInstance::messageReceived, this, toggleWithoutAnchor);
    connect(&m_control, &ControlService::toggleRequested, this, toggleWithoutAnchor);
    connect(&m_statusItem, &StatusItem::clicked, &popover, &PopoverWindow::toggle);
    connect(&m_statusItem, &StatusItem::quitRequested, qApp, &QCoreApplication::quit);
    // The popover goes before the tray menu opens. Hidden after it, while the menu holds the
    // keyboard grab, it takes the X input focus away with it; Qt then finds no window of the app
    // active and closes every popup, the menu among them.
    connect(&m_statusItem, &StatusItem::menuAboutToShow, &popover, &QWindow::hide);
    connect(&popover, &PopoverWindow::presentedChanged, &m_control, &ControlService::setPopoverVisible);
    connect(&popover, &PopoverWindow::presentedChanged, this, [this](bool presented) {
        if (presented) {
            startTask(this, refreshDueCountIfNeeded());
        }
    });
    connect(&m_trayHost, &TrayHostWatcher::hostFound, this, &AppDelegate::trayHostFound);
    connect(&m_trayHost, &TrayHostWatcher::noHostFound, this, &AppDelegate::noTrayHostFound);

    m_app.popoverController = &popover;
    m_app.updateBadge = [delegate = QPointer(this)] {
        if (delegate) {
            delegate->refreshBadge();
        }
    };
    m_app.notifications().registerCategories();
    m_app.notifications().restoreReminders();
    refreshBadge();

    m_instance.listen();
    m_control.publish();
    m_trayHost.start();
    m_colorScheme.start();
    startTask(this, launch());
}

QCoro::Task<> AppDelegate::launch() {
    QCoro::Task<> bootstrapping = m_app.bootstrap();
    co_await std::move(bootstrapping);
    QCoro::Task<> counting = refreshDueCountIfNeeded();
    co_await std::move(counting);
}

void AppDelegate::refreshBadge() {
    m_statusItem.setBadge(StatusItemBadge::make(m_app.submitQueue().backgroundedJobIDs().size(),
                                                m_app.myDay().dueCount(),
                                                m_app.settings().settings().showDueCountBadge));
}

QCoro::Task<> AppDelegate::refreshDueCountIfNeeded() {
    const NVUser* user = m_app.authState().user();
    QCoro::Task<bool> refreshing =
        m_app.myDay().refreshDueCount(m_app.settings().settings().showDueCountBadge,
                                      user ? std::optional(user->id) : std::nullopt, m_app.activeWorkspaceID());
    const QPointer<AppDelegate> self(this);
    if (co_await std::move(refreshing) && self) {
        refreshBadge();
    }
}

void AppDelegate::trayHostFound() {
    m_statusItem.create();
    // The popover's content loads right after the icon is up, never before it.
    QTimer::singleShot(0, &m_pages.window(), &PopoverWindow::prepare);
}

void AppDelegate::noTrayHostFound() {
    const QString message =
        tr("NorvaneBar: this desktop shows no tray icons (no StatusNotifierItem host or XEmbed tray is running).\n"
           "NorvaneBar keeps running: launch it again, or call TogglePopover on com.norvanebar.NorvaneBar over "
           "D-Bus, to open it.\n");
    std::fputs(message.toLocal8Bit().constData(), stderr);
    m_pages.window().prepare();
}
