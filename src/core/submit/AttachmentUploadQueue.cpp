#include "core/submit/AttachmentUploadQueue.h"

#include "core/async/LoadGuard.h"
#include "core/async/StartTask.h"

AttachmentUploadQueue::AttachmentUploadQueue(QObject* parent)
    : QObject(parent) {}

QCoro::Task<QList<AttachmentUploadFailure>> AttachmentUploadQueue::enqueue(QString taskID,
                                                                           QList<StagedAttachment> attachments,
                                                                           NorvaneClient client,
                                                                           AttachmentUploader::Progress onProgress) {
    const Done done;
    m_pending.push_back({std::move(taskID), std::move(attachments), std::move(client), std::move(onProgress), done});
    startProcessingIfNeeded();
    QList<AttachmentUploadFailure> failures = co_await done;
    co_return failures;
}

void AttachmentUploadQueue::startProcessingIfNeeded() {
    if (m_isProcessing || m_pending.empty()) {
        return;
    }
    m_isProcessing = true;
    PendingUpload batch = std::move(m_pending.front());
    m_pending.pop_front();
    startTask(this, process(std::move(batch)));
}

void AttachmentUploadQueue::finishProcessing() {
    m_isProcessing = false;
    startProcessingIfNeeded();
}

QCoro::Task<> AttachmentUploadQueue::process(PendingUpload batch) {
    const LoadGuard guard(this);
    QCoro::Task<QList<AttachmentUploadFailure>> uploading =
        AttachmentUploader::uploadAll(batch.taskID, batch.attachments, batch.client, batch.onProgress);
    QList<AttachmentUploadFailure> failures = co_await std::move(uploading);
    // The job waits for its failures whether the queue lives or not. It goes on from here until it
    // next waits; the queue may be gone by then.
    batch.continuation.fulfil(std::move(failures));
    if (guard.holds()) {
        finishProcessing();
    }
}
