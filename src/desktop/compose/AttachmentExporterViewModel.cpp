#include "desktop/compose/AttachmentExporterViewModel.h"

#include "core/compose/AttachmentExporter.h"

#include <QDir>
#include <QStandardPaths>

AttachmentExporterViewModel::AttachmentExporterViewModel(QObject* parent)
    : QObject(parent) {}

void AttachmentExporterViewModel::save(const QUrl& fileURL, const QString& suggestedName) {
    const QString downloads = QStandardPaths::writableLocation(QStandardPaths::DownloadLocation);
    const QUrl folder = QUrl::fromLocalFile(downloads);
    const QUrl proposedFile = QUrl::fromLocalFile(QDir(downloads).filePath(suggestedName));
    m_pending = fileURL;
    if (!m_chooser) {
        emit destinationWanted(folder, proposedFile);
        return;
    }
    if (const std::optional<QUrl> destination = m_chooser(folder, proposedFile)) {
        saveTo(*destination);
    } else {
        cancel();
    }
}

void AttachmentExporterViewModel::saveTo(const QUrl& destination) {
    if (!m_pending) {
        return;
    }
    const QUrl source = *std::exchange(m_pending, std::nullopt);
    if (const std::optional<QString> failure = AttachmentExporter::copyReplacing(source, destination)) {
        setFailure(*failure);
        emit failed();
    }
}

void AttachmentExporterViewModel::dismissFailure() {
    setFailure({});
}

void AttachmentExporterViewModel::setFailure(const QString& failure) {
    if (m_failure != failure) {
        m_failure = failure;
        emit failureChanged();
    }
}
