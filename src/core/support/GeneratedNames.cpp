#include "core/support/GeneratedNames.h"

#include <QDir>

QString temporaryPath(const QString& name) {
    return QDir(QDir::tempPath()).filePath(name);
}

QString upperCaseUuid(const QUuid& uuid) {
    return uuid.toString(QUuid::WithoutBraces).toUpper();
}
