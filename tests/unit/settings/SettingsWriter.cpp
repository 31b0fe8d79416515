// Saves big settings to a file over and over, numbering the versions from the first argument on, for
// SettingsKillTest to kill at random moments. Prints "begin N" before and "end N" after each save.
#include "core/settings/SettingsStore.h"
#include "support/BigSettings.h"

#include <QCoreApplication>
#include <cstdio>

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    if (argc != 3) {
        std::fputs("usage: SettingsWriter FILE FIRST-VERSION\n", stderr);
        return 2;
    }
    SettingsStore store(QString::fromLocal8Bit(argv[1]));
    for (qint64 version = QByteArray(argv[2]).toLongLong();; ++version) {
        const AppSettings settings = bigSettings(version);
        std::printf("begin %lld\n", static_cast<long long>(version));
        std::fflush(stdout);
        store.setSettings(settings);
        std::printf("end %lld\n", static_cast<long long>(version));
        std::fflush(stdout);
    }
}
