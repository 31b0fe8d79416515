#include "core/recording/FacecamBackgroundStore.h"

#include "core/support/GeneratedNames.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

std::optional<QString> FacecamBackgroundStore::importImage(const QUrl& from) {
    const QString dataFolder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    if (!from.isLocalFile() || dataFolder.isEmpty()) {
        return std::nullopt;
    }
    const QDir folder(dataFolder + QStringLiteral("/NorvaneBar/facecam-backgrounds"));
    if (!folder.mkpath(QStringLiteral("."))) {
        return std::nullopt;
    }
    const QString source = from.toLocalFile();
    const QString extension = QFileInfo(source).suffix();
    const QString name = extension.isEmpty() ? upperCaseUuid() : upperCaseUuid() + QLatin1Char('.') + extension;
    const QString copy = folder.filePath(name);
    if (!QFile::copy(source, copy)) {
        return std::nullopt;
    }
    return copy;
}
