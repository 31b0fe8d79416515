#include "core/compose/AttachmentExporter.h"

#include <QFile>
#include <QFileInfo>

namespace AttachmentExporter {

std::optional<QString> copyReplacing(const QUrl& fileURL, const QUrl& destination) {
    const QString source = fileURL.toLocalFile();
    const QString target = destination.toLocalFile();
    if (QFileInfo::exists(target)) {
        if (QFileInfo(target) == QFileInfo(source)) {
            return std::nullopt;
        }
        QFile existing(target);
        if (!existing.remove()) {
            return existing.errorString();
        }
    }
    QFile file(source);
    if (!file.copy(target)) {
        return file.errorString();
    }
    return std::nullopt;
}

} // namespace AttachmentExporter
