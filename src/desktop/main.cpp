#include "desktop/shell/AppDelegate.h"
#include "platform/linux/SingleInstance.h"

#include <QApplication>

int main(int argc, char* argv[]) {
    // A later launch only asks the running NorvaneBar to toggle its popover.
    if (SingleInstance::handOver(InstanceMessage::togglePopover)) {
        return 0;
    }

    PopoverWindow::configureQuick();
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("NorvaneBar"));
    QApplication::setDesktopFileName(QStringLiteral("norvanebar"));
    QApplication::setQuitOnLastWindowClosed(false);

    AppDelegate delegate;
    delegate.applicationDidFinishLaunching();
    return QApplication::exec();
}
