#include "AppDelegate.h"
#include "linux/SingleInstance.h"

#include <QApplication>
#include <QQuickStyle>
#include <QQuickWindow>

int main(int argc, char* argv[]) {
    // A later launch only asks the running NorvaneBar to toggle its popover.
    if (SingleInstance::handOver(InstanceMessage::togglePopover)) {
        return 0;
    }

    // The software scene graph costs a fraction of the memory of the OpenGL one and opens as fast.
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QQuickStyle::setStyle(QStringLiteral("Basic"));
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("NorvaneBar"));
    QApplication::setDesktopFileName(QStringLiteral("norvanebar"));
    QApplication::setQuitOnLastWindowClosed(false);

    AppDelegate delegate;
    delegate.applicationDidFinishLaunching();
    return QApplication::exec();
}
