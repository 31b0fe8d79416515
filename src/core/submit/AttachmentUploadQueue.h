#pragma once

#include "core/api/NorvaneClient.h"
#include "core/async/OneShot.h"
#include "core/compose/StagedAttachment.h"
#include "core/submit/AttachmentUploadFailure.h"
#include "core/submit/AttachmentUploader.h"

#include <QCoroTask>
#include <QList>
#include <QObject>
#include <QString>
#include <deque>

// The gate of native uploads: one task's batch at a time across the whole program, in the order the
// batches arrived, so that one file at a time is in flight whichever job it belongs to. Built once
// by the central state and handed to every submitter. Main thread only.
class AttachmentUploadQueue : public QObject {
    Q_OBJECT

public:
    explicit AttachmentUploadQueue(QObject* parent = nullptr);

    // Joins the line with a batch and waits until it has been worked off; the files that failed.
    // Never throws. A failed batch doesn't hold up those behind it.
    QCoro::Task<QList<AttachmentUploadFailure>> enqueue(QString taskID, QList<StagedAttachment> attachments,
                                                        NorvaneClient client, AttachmentUploader::Progress onProgress);

    // A batch is being worked on.
    bool isProcessing() const { return m_isProcessing; }
    // Batches that wait behind it.
    qsizetype pendingCount() const { return static_cast<qsizetype>(m_pending.size()); }

private:
    using Done = OneShot<QList<AttachmentUploadFailure>>;

    struct PendingUpload {
        QString taskID;
        QList<StagedAttachment> attachments;
        NorvaneClient client;
        AttachmentUploader::Progress onProgress;
        Done continuation;
    };

    void startProcessingIfNeeded();
    void finishProcessing();
    // Uploads one batch, resumes its job with the failures, then takes up the next.
    QCoro::Task<> process(PendingUpload batch);

    std::deque<PendingUpload> m_pending;
    bool m_isProcessing = false;
};
