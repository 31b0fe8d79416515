#include "desktop/shell/ProgramModules.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <cstdio>
#include <cstdlib>

namespace {
// The modules' folder relative to the program's once installed; in the build tree it is beside it.
const auto installedFolder = QStringLiteral(NORVANEBAR_MODULE_DIR);
} // namespace

QString ProgramModules::path(const QString& fileName) {
    const QDir programFolder(QCoreApplication::applicationDirPath());
    for (const QString& folder : {installedFolder, QStringLiteral(".")}) {
        const QFileInfo module(programFolder.filePath(folder + u'/' + fileName));
        if (module.isFile()) {
            return module.canonicalFilePath();
        }
    }
    return {};
}

std::optional<QString> ProgramModules::missing() {
    for (const QString fileName :
         {QString::fromLatin1(windowsFileName), QString::fromLatin1(recordingDevicesFileName)}) {
        if (path(fileName).isEmpty()) {
            return fileName;
        }
    }
    return std::nullopt;
}

QFunctionPointer ProgramModules::entry(QLibrary& library, const QString& fileName, const char* symbol) {
    library.setFileName(path(fileName));
    if (const QFunctionPointer function = library.resolve(symbol)) {
        return function;
    }
    const QString message = QCoreApplication::translate("ProgramModules", "NorvaneBar cannot load %1: %2\n")
                                .arg(fileName, library.errorString());
    std::fputs(message.toLocal8Bit().constData(), stderr);
    std::exit(EXIT_FAILURE);
}
