#include "shell/AppDelegate.h"

#include <QTimer>
#include <cstdio>

AppDelegate::AppDelegate(QObject* parent)
    : QObject(parent) {}

void AppDelegate::applicationDidFinishLaunching() {
    const auto toggleWithoutAnchor = [this] { m_popover.toggle(std::nullopt); };
    connect(&m_instance, &SingleInstance::messageReceived, this, toggleWithoutAnchor);
    connect(&m_control, &ControlService::toggleRequested, this, toggleWithoutAnchor);
    connect(&m_statusItem, &StatusItem::clicked, &m_popover, &PopoverWindow::toggle);
    connect(&m_statusItem, &StatusItem::quitRequested, qApp, &QCoreApplication::quit);
    // The popover goes before the tray menu opens. Hidden after it, while the menu holds the
    // keyboard grab, it takes the X input focus away with it; Qt then finds no window of the app
    // active and closes every popup, the menu among them.
    connect(&m_statusItem, &StatusItem::menuAboutToShow, &m_popover, &QWindow::hide);
    connect(&m_popover, &PopoverWindow::presentedChanged, &m_control, &ControlService::setPopoverVisible);
    connect(&m_trayHost, &TrayHostWatcher::hostFound, this, &AppDelegate::trayHostFound);
    connect(&m_trayHost, &TrayHostWatcher::noHostFound, this, &AppDelegate::noTrayHostFound);

    m_popover.setInitialProperties({{QStringLiteral("auth"), QVariant::fromValue(&m_authModel)},
                                    {QStringLiteral("onboarding"), QVariant::fromValue(&m_onboardingModel)},
                                    {QStringLiteral("location"), QVariant::fromValue(&m_locationModel)},
                                    {QStringLiteral("attachments"), QVariant::fromValue(&m_attachmentsModel)}});
    m_app.popoverController = &m_popover;

    m_instance.listen();
    m_control.publish();
    m_trayHost.start();
    QCoro::connect(m_app.bootstrap(), this, [] {});
}

void AppDelegate::trayHostFound() {
    m_statusItem.create();
    // The popover's content loads right after the icon is up, never before it.
    QTimer::singleShot(0, &m_popover, &PopoverWindow::prepare);
}

void AppDelegate::noTrayHostFound() {
    std::fputs("NorvaneBar: this desktop shows no tray icons (no StatusNotifierItem host or XEmbed tray is running).\n"
               "NorvaneBar keeps running: launch it again, or call TogglePopover on com.norvanebar.NorvaneBar over "
               "D-Bus, to open it.\n",
               stderr);
    m_popover.prepare();
}
