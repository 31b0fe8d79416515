#pragma once

#include "core/api/NorvaneClient.h"
#include "core/storage/AttachmentLinkFormatter.h"
#include "core/storage/ExternalStorageProvider.h"
#include "core/submit/AttachmentUploadFailure.h"
#include "core/submit/AttachmentUploader.h"
#include "core/submit/ForegroundSubmitPhase.h"
#include "core/submit/SubmitJobPayload.h"
#include "core/submit/SubmitJobResult.h"

#include <QCoroTask>
#include <QList>
#include <QString>
#include <memory>

class AttachmentUploadQueue;
class SubmitNotifier;

// The steps that turn one frozen payload into a task on the service: files to an external provider
// ahead of creation, creating the task, native uploads after it, and uploading again after a
// failure. The order of the steps is the job's (BackgroundSubmitQueue). No step throws: failures
// come back as values, because a task that exists must never look like a job that failed.
//
// Made for each job, and kept alive by it for as long as a step runs; the queue and the notifier
// must outlive every step. Progress and phases are told on the main thread and finish before the
// step goes on.
class TaskSubmitter {
public:
    using Provider = std::shared_ptr<const ExternalStorageProvider>;

    // What preUploadToExternal gives: the payload with its links written in and no attachments left,
    // and the files that didn't make it.
    struct PreUpload {
        SubmitJobPayload payload;
        QList<AttachmentUploadFailure> failures;
    };

    // What a look in the list for the task of a lost answer gave: the task, none, or why it couldn't
    // look.
    struct Lookup {
        std::optional<CreatedTask> found;
        std::optional<QString> error;
    };

    TaskSubmitter(NorvaneClient client, AttachmentUploadQueue& uploadQueue, SubmitNotifier& notifier);

    // Progress that tells each (current, total) to `onPhase` as `uploading(current, total)`; none
    // without a handler.
    static AttachmentUploader::Progress uploadingPhases(PhaseHandler onPhase);

    // POSTs the task, once; on success schedules the payload's reminder. A failure is the result's
    // error, with no reminder, and tells whether the task may exist nevertheless.
    QCoro::Task<SubmitJobResult> createTask(SubmitJobPayload payload) const;
    // Looks in the payload's list for an open task of the name it sends.
    QCoro::Task<Lookup> findCreated(SubmitJobPayload payload) const;
    // Uploads each attachment to `provider` and writes the links of those that made it after the
    // request's description. Links stand in the order of the attachments.
    QCoro::Task<PreUpload> preUploadToExternal(SubmitJobPayload payload, Provider provider,
                                               AttachmentUploader::Progress onProgress) const;
    // Uploads natively to the task, in turn with every other job's batches.
    QCoro::Task<QList<AttachmentUploadFailure>> uploadAttachments(QString taskID, QList<StagedAttachment> attachments,
                                                                  AttachmentUploader::Progress onProgress) const;
    // uploadAttachments, reporting each file as an `uploading` phase.
    QCoro::Task<QList<AttachmentUploadFailure>> retryUploads(QString taskID, QList<StagedAttachment> attachments,
                                                             PhaseHandler onPhase) const;
    // Uploads to `provider` for a task that exists, and adds the links as a comment. A refused
    // comment is dropped on purpose: the files are on the provider, and another try would upload
    // them again.
    QCoro::Task<QList<AttachmentUploadFailure>> retryUploadsToExternal(QString taskID,
                                                                       QList<StagedAttachment> attachments,
                                                                       Provider provider, PhaseHandler onPhase) const;

private:
    struct ExternalUploads {
        QList<AttachmentLinkFormatter::Link> links;
        QList<AttachmentUploadFailure> failures;
    };
    // One attachment at a time: progress first, then the missing-file check and the upload.
    static QCoro::Task<ExternalUploads> uploadToProvider(QList<StagedAttachment> attachments, Provider provider,
                                                         AttachmentUploader::Progress onProgress);

    NorvaneClient m_client;
    AttachmentUploadQueue& m_uploadQueue;
    SubmitNotifier& m_notifier;
};
