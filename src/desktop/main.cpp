#include "desktop/shell/AppDelegate.h"
#include "platform/linux/SingleInstance.h"

#include <QApplication>

int main(int argc, char* argv[]) {
    // A later launch only asks the running NorvaneBar to toggle its popover, or, started by the
    // browser with the answer to a sign-in, hands that over.
    QStringList arguments;
    for (int index = 1; index < argc; ++index) {
        arguments.append(QString::fromLocal8Bit(argv[index]));
    }
    if (SingleInstance::handOver(InstanceMessages::fromArguments(arguments))) {
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
