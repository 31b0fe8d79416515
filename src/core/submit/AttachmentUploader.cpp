#include "core/submit/AttachmentUploader.h"

#include "core/api/Endpoints.h"
#include "core/compose/AttachmentSizeLimits.h"
#include "core/submit/AttachmentUploadError.h"
#include "core/submit/FailureMessage.h"
#include "core/support/ByteCountText.h"
#include "core/support/FileError.h"

#include <QCoreApplication>
#include <QFile>
#include <QUuid>

namespace AttachmentUploader {

Route routeFor(const StagedAttachment& attachment, std::optional<qint64> size) {
    if (attachment.isVideo || (size && *size > inMemoryLimit)) {
        return Route::streaming;
    }
    return Route::memory;
}

QCoro::Task<QList<AttachmentUploadFailure>> uploadAll(QString taskID, QList<StagedAttachment> attachments,
                                                      NorvaneClient client, Progress onProgress) {
    QList<AttachmentUploadFailure> failures;
    const int total = static_cast<int>(attachments.size());
    for (int index = 0; index < total; ++index) {
        if (onProgress) {
            onProgress(index + 1, total);
        }
        const StagedAttachment& attachment = attachments.at(index);
        try {
            QCoro::Task<> uploading = upload(attachment, taskID, client);
            co_await std::move(uploading);
        } catch (...) {
            failures.append({QUuid::createUuid(), attachment, FailureMessage::of(std::current_exception())});
        }
    }
    co_return failures;
}

QCoro::Task<> upload(StagedAttachment attachment, QString taskID, NorvaneClient client) {
    const std::optional<qint64> size =
        attachment.fileSizeBytes ? attachment.fileSizeBytes : AttachmentSizeLimits::fileSize(attachment.fileURL);
    if (size && *size >= refusedSize) {
        throw NVError(NVError::Server{
            std::nullopt,
            QCoreApplication::translate("AttachmentUploader", "Attachment exceeds Norvane's size limit (%1).")
                .arg(formattedByteCount(*size)),
            std::nullopt});
    }
    const QString localPath = attachment.fileURL.toLocalFile();
    if (!attachment.fileURL.isLocalFile() || !QFile::exists(localPath)) {
        throw AttachmentUploadError(AttachmentUploadError::Case::fileMissing);
    }
    const QString path = Endpoints::attachmentPath(taskID);
    if (routeFor(attachment, size) == Route::memory) {
        QFile file(localPath);
        if (!file.open(QIODevice::ReadOnly)) {
            throw FileError(localPath, file.errorString());
        }
        const QByteArray data = file.readAll();
        QCoro::Task<TaskAttachment> sending = client.upload(path, data, attachment.filename);
        co_await std::move(sending);
    } else {
        QCoro::Task<TaskAttachment> sending = client.uploadFromFile(path, attachment.fileURL, attachment.filename);
        co_await std::move(sending);
    }
}

} // namespace AttachmentUploader
