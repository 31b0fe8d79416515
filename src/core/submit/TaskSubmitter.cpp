#include "core/submit/TaskSubmitter.h"

#include "core/api/Endpoints.h"
#include "core/submit/AttachmentUploadError.h"
#include "core/submit/AttachmentUploadQueue.h"
#include "core/submit/ExistingTasks.h"
#include "core/submit/FailureMessage.h"
#include "core/submit/SubmitNotifier.h"

#include <QFile>
#include <QUuid>

namespace {
AttachmentUploadFailure failureOf(const StagedAttachment& attachment, QString message) {
    return {QUuid::createUuid(), attachment, std::move(message)};
}
} // namespace

TaskSubmitter::TaskSubmitter(NorvaneClient client, AttachmentUploadQueue& uploadQueue, SubmitNotifier& notifier)
    : m_client(std::move(client))
    , m_uploadQueue(uploadQueue)
    , m_notifier(notifier) {}

AttachmentUploader::Progress TaskSubmitter::uploadingPhases(PhaseHandler onPhase) {
    if (!onPhase) {
        return {};
    }
    return [onPhase = std::move(onPhase)](int current, int total) {
        onPhase(ForegroundSubmitPhases::Uploading{current, total});
    };
}

QCoro::Task<SubmitJobResult> TaskSubmitter::createTask(SubmitJobPayload payload) const {
    CreatedTask created;
    try {
        QCoro::Task<CreatedTask> creating = Endpoints::createTask(m_client, payload.listID, payload.request);
        created = co_await std::move(creating);
    } catch (...) {
        const CreateFailure failure = CreateFailures::of(std::current_exception());
        co_return SubmitJobResult{std::nullopt,
                                  {},
                                  CreateFailures::described(FailureMessage::of(std::current_exception()), failure),
                                  failure};
    }
    if (payload.reminderFireDate) {
        m_notifier.scheduleReminder(created.name, created.url, *payload.reminderFireDate);
    }
    co_return SubmitJobResult{created, {}, std::nullopt};
}

QCoro::Task<TaskSubmitter::Lookup> TaskSubmitter::findCreated(SubmitJobPayload payload) const {
    QCoro::Task<ExistingTasks> fetching = ExistingTasks::fetch(m_client, payload.workspaceID, payload.listID);
    const ExistingTasks existing = co_await std::move(fetching);
    co_return Lookup{existing.named(payload.request.name), existing.error()};
}

QCoro::Task<TaskSubmitter::ExternalUploads> TaskSubmitter::uploadToProvider(QList<StagedAttachment> attachments,
                                                                            Provider provider,
                                                                            AttachmentUploader::Progress onProgress) {
    ExternalUploads uploads;
    const int total = static_cast<int>(attachments.size());
    for (int index = 0; index < total; ++index) {
        if (onProgress) {
            onProgress(index + 1, total);
        }
        const StagedAttachment& attachment = attachments.at(index);
        if (!attachment.fileURL.isLocalFile() || !QFile::exists(attachment.fileURL.toLocalFile())) {
            uploads.failures.append(failureOf(
                attachment, AttachmentUploadError(AttachmentUploadError::Case::fileMissing).errorDescription()));
            continue;
        }
        try {
            QCoro::Task<QUrl> uploading = provider->upload(attachment.fileURL, attachment.filename);
            const QUrl url = co_await std::move(uploading);
            uploads.links.append({attachment.filename, url});
        } catch (...) {
            uploads.failures.append(failureOf(attachment, FailureMessage::of(std::current_exception())));
        }
    }
    co_return uploads;
}

QCoro::Task<TaskSubmitter::PreUpload>
TaskSubmitter::preUploadToExternal(SubmitJobPayload payload, Provider provider,
                                   AttachmentUploader::Progress onProgress) const {
    QCoro::Task<ExternalUploads> uploading = uploadToProvider(payload.attachments, provider, std::move(onProgress));
    ExternalUploads uploads = co_await std::move(uploading);
    if (!uploads.links.isEmpty()) {
        payload.request.markdownDescription =
            AttachmentLinkFormatter::appendLinks(payload.request.markdownDescription, uploads.links);
    }
    payload.attachments.clear();
    co_return PreUpload{std::move(payload), std::move(uploads.failures)};
}

QCoro::Task<QList<AttachmentUploadFailure>>
TaskSubmitter::uploadAttachments(QString taskID, QList<StagedAttachment> attachments,
                                 AttachmentUploader::Progress onProgress) const {
    QCoro::Task<QList<AttachmentUploadFailure>> waiting =
        m_uploadQueue.enqueue(std::move(taskID), std::move(attachments), m_client, std::move(onProgress));
    co_return co_await std::move(waiting);
}

QCoro::Task<QList<AttachmentUploadFailure>>
TaskSubmitter::retryUploads(QString taskID, QList<StagedAttachment> attachments, PhaseHandler onPhase) const {
    QCoro::Task<QList<AttachmentUploadFailure>> uploading =
        uploadAttachments(std::move(taskID), std::move(attachments), uploadingPhases(std::move(onPhase)));
    co_return co_await std::move(uploading);
}

QCoro::Task<QList<AttachmentUploadFailure>> TaskSubmitter::retryUploadsToExternal(QString taskID,
                                                                                  QList<StagedAttachment> attachments,
                                                                                  Provider provider,
                                                                                  PhaseHandler onPhase) const {
    QCoro::Task<ExternalUploads> uploading =
        uploadToProvider(std::move(attachments), provider, uploadingPhases(std::move(onPhase)));
    ExternalUploads uploads = co_await std::move(uploading);
    if (uploads.links.isEmpty()) {
        co_return uploads.failures;
    }
    const CommentRequest comment{AttachmentLinkFormatter::appendLinks(std::nullopt, uploads.links)};
    try {
        QCoro::Task<CommentResponse> commenting = Endpoints::addComment(m_client, taskID, comment);
        co_await std::move(commenting);
    } catch (...) {
        // Dropped on purpose: the files are on the provider, and a retry would upload them again.
    }
    co_return uploads.failures;
}
