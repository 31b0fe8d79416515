#include "core/compose/AttachmentStaging.h"
#include "core/compose/AttachmentExporter.h"
#include "core/compose/AttachmentSizeLimits.h"
#include "core/support/GeneratedNames.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QMimeData>
#include <QSaveFile>
#include <QUuid>

namespace AttachmentStaging {

const QSet<QString> imageExtensions{QStringLiteral("png"),  QStringLiteral("jpg"),  QStringLiteral("jpeg"),
                                    QStringLiteral("gif"),  QStringLiteral("heic"), QStringLiteral("tiff"),
                                    QStringLiteral("webp"), QStringLiteral("bmp")};
const QSet<QString> videoExtensions{QStringLiteral("mov"), QStringLiteral("mp4"), QStringLiteral("m4v")};

namespace {
QString localTimestamp(const QDateTime& now) {
    return QLocale().toString(now.toLocalTime(), QStringLiteral("yyyy-MM-dd 'at' HH.mm.ss"));
}
} // namespace

QList<StagedAttachment> stage(const QMimeData& pasteboard) {
    return stage(PasteboardContents::read(pasteboard));
}

QList<StagedAttachment> stage(const PasteboardContents& contents) {
    QList<StagedAttachment> staged;
    for (const QUrl& url : contents.fileURLs) {
        if (std::optional<StagedAttachment> attachment = stage(url)) {
            staged.append(*attachment);
        }
    }
    if (contents.image) {
        if (std::optional<StagedAttachment> attachment = stage(*contents.image, std::nullopt)) {
            staged.append(*attachment);
        }
    }
    return staged;
}

std::optional<StagedAttachment> stage(const QImage& image, const std::optional<QString>& suggestedName) {
    if (image.isNull()) {
        return std::nullopt;
    }
    const QString name = suggestedName.value_or(timestampedName());
    const QUuid id = QUuid::createUuid();
    // QSaveFile leaves no partial file behind when encoding or writing fails.
    QSaveFile file(temporaryPath(QStringLiteral("norvanebar-") + upperCaseUuid(id) + QLatin1Char('-') + name));
    if (!file.open(QIODevice::WriteOnly) || !image.save(&file, "PNG") || !file.commit()) {
        return std::nullopt;
    }
    return StagedAttachment{.id = id,
                            .fileURL = QUrl::fromLocalFile(file.fileName()),
                            .filename = name,
                            .isImage = true,
                            .isVideo = false,
                            .fileSizeBytes = std::nullopt,
                            .durationSeconds = std::nullopt};
}

std::optional<StagedAttachment> stage(const QUrl& fileURL) {
    const QFileInfo info(fileURL.toLocalFile());
    if (!fileURL.isLocalFile() || !info.exists()) {
        return std::nullopt;
    }
    const QString extension = info.suffix().toLower();
    return StagedAttachment{.id = QUuid::createUuid(),
                            .fileURL = fileURL,
                            .filename = QFileInfo(QDir::cleanPath(info.filePath())).fileName(),
                            .isImage = imageExtensions.contains(extension),
                            .isVideo = videoExtensions.contains(extension),
                            .fileSizeBytes = AttachmentSizeLimits::fileSize(fileURL),
                            .durationSeconds = std::nullopt};
}

std::optional<StagedAttachment> stage(const QUrl& recordingAt, double duration, bool move) {
    const std::optional<qint64> size = AttachmentSizeLimits::fileSize(recordingAt);
    if (!size || std::holds_alternative<AttachmentSizeLimits::Rejected>(AttachmentSizeLimits::validate(*size))) {
        return std::nullopt;
    }
    const QString source = recordingAt.toLocalFile();
    const QString destination =
        temporaryPath(QStringLiteral("norvanebar-recording-") + upperCaseUuid() + QStringLiteral(".mov"));
    // QFile::rename copies and removes when the two lie on different file systems.
    if (!(move ? QFile::rename(source, destination) : QFile::copy(source, destination))) {
        return std::nullopt;
    }
    const QUrl staged = QUrl::fromLocalFile(destination);
    return StagedAttachment{.id = QUuid::createUuid(),
                            .fileURL = staged,
                            .filename = timestampedRecordingName(),
                            .isImage = false,
                            .isVideo = true,
                            .fileSizeBytes = AttachmentSizeLimits::fileSize(staged),
                            .durationSeconds = duration};
}

std::optional<StagedAttachment> pinForBackgroundJob(const StagedAttachment& attachment) {
    const QUrl destination = QUrl::fromLocalFile(
        temporaryPath(QStringLiteral("norvanebar-job-") + upperCaseUuid() + QLatin1Char('-') + attachment.filename));
    // Fails as well when the source is gone.
    if (AttachmentExporter::copyReplacing(attachment.fileURL, destination)) {
        return std::nullopt;
    }
    const std::optional<qint64> copiedSize = AttachmentSizeLimits::fileSize(destination);
    StagedAttachment pinned = attachment;
    pinned.id = QUuid::createUuid();
    pinned.fileURL = destination;
    pinned.fileSizeBytes = copiedSize ? copiedSize : attachment.fileSizeBytes;
    return pinned;
}

QString timestampedName(const QDateTime& now) {
    return QStringLiteral("Pasted image ") + localTimestamp(now) + QStringLiteral(".png");
}

QString timestampedRecordingName(const QDateTime& now) {
    return QStringLiteral("Screen Recording ") + localTimestamp(now) + QStringLiteral(".mov");
}

} // namespace AttachmentStaging
