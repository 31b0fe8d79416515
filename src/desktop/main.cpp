#include "core/support/Translations.h"
#include "desktop/shell/AppDelegate.h"
#include "desktop/shell/ProgramModules.h"
#include "platform/linux/SingleInstance.h"

#include <QApplication>
#include <cstdio>
#include <cstring>

int main(int argc, char* argv[]) {
    // Answered before anything else, by a program that may not even reach a display.
    if (argc == 2 && std::strcmp(argv[1], "--version") == 0) {
        std::printf("NorvaneBar %s\n", NORVANEBAR_VERSION);
        return 0;
    }
    // A later launch only asks the running NorvaneBar to toggle its popover, or, started by the
    // browser with the answer to a sign-in, hands that over.
    QStringList arguments;
    for (int index = 1; index < argc; ++index) {
        arguments.append(QString::fromLocal8Bit(argv[index]));
    }
    if (SingleInstance::handOver(InstanceMessages::fromArguments(arguments))) {
        return 0;
    }

    QApplication app(argc, argv);
    Translations::install(app);
    QApplication::setApplicationName(QStringLiteral("NorvaneBar"));
    QApplication::setApplicationVersion(QStringLiteral(NORVANEBAR_VERSION));
    // The installed desktop entry's id: the desktop finds the program's name and icon there.
    QApplication::setDesktopFileName(QStringLiteral("com.norvanebar.NorvaneBar"));
    QApplication::setQuitOnLastWindowClosed(false);
    // Its windows and a recording's devices are loaded at their first use; a program without them had
    // better say so now.
    if (const std::optional<QString> module = ProgramModules::missing()) {
        std::fputs(
            qPrintable(QCoreApplication::translate("main", "NorvaneBar cannot find its module %1.\n").arg(*module)),
            stderr);
        return 1;
    }

    AppDelegate delegate;
    delegate.applicationDidFinishLaunching();
    return QApplication::exec();
}
