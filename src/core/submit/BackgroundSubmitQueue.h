#pragma once

#include "api/NorvaneClient.h"
#include "submit/BackgroundJobResult.h"
#include "submit/BulkSubmitJobPayload.h"
#include "submit/BulkSubmitResult.h"
#include "submit/FailedSubmitJob.h"
#include "submit/ForegroundSubmitPhase.h"
#include "submit/ForegroundSubmitSession.h"
#include "submit/SubmitJobPayload.h"
#include "submit/SubmitJobResult.h"
#include "submit/SubmitNotifier.h"

#include <QCoroTask>
#include <QHash>
#include <QObject>
#include <QSet>
#include <QUuid>
#include <functional>
#include <optional>

class AttachmentUploadQueue;
class SettingsStore;
class StorageProviderRegistry;

// Runs every submission, watched on the progress page or not. Each job starts at once as a task of
// its own and jobs run side by side; only native uploads wait in line (AttachmentUploadQueue). A
// job tells its phases to the page while the page follows it, and posts a notification once the
// user has left it. What failed is kept under a retry id, in memory only, until it is retried; the
// pinned copies of the files are deleted as soon as nothing can need them again.
//
// The storage provider is chosen from the settings at the start of each job and each retry. Built
// once by the central state; everything given must outlive it. Main thread only.
class BackgroundSubmitQueue : public QObject {
    Q_OBJECT
    Q_PROPERTY(int pendingCount READ pendingCount NOTIFY pendingCountChanged)

public:
    BackgroundSubmitQueue(SubmitNotifier& notifier, AttachmentUploadQueue& uploadQueue,
                          const StorageProviderRegistry& providers, const SettingsStore& settings,
                          QObject* parent = nullptr);

    // Jobs now running, watched or not.
    int pendingCount() const { return m_pendingCount; }
    // Everything that can be retried, by retry id.
    const QHash<QUuid, FailedSubmitJob>& failedJobs() const { return m_failedJobs; }
    // Running jobs whose session the user left: the number beside the status item.
    const QSet<QUuid>& backgroundedJobIDs() const { return m_backgroundedJobIDs; }

    // Starts a job creating one task. `jobID` names it for markBackgrounded.
    void enqueue(SubmitJobPayload payload, NorvaneClient client, std::optional<QUuid> jobID, PhaseHandler onPhase);
    // Starts a bulk job.
    void enqueueBulk(BulkSubmitJobPayload payload, NorvaneClient client, std::optional<QUuid> jobID,
                     PhaseHandler onPhase);
    // The user left the session's page: its job reports by notification from now on.
    void markBackgrounded(const ForegroundSubmitSession& session);
    // Takes the failed job out of failedJobs and runs it again; an unknown id does nothing. A retry
    // has no job id: it reports to `onPhase` unless `forceNotify`, and is never counted as
    // backgrounded.
    void retry(const QUuid& failedJobID, NorvaneClient client, PhaseHandler onPhase, bool forceNotify);

signals:
    void pendingCountChanged();
    void backgroundedJobIDsChanged();
    // A notification about a job in the background could not be delivered, or a failure's expired:
    // show its outcome here.
    void backgroundResult(const BackgroundJobResult& result);

private:
    QCoro::Task<> runSingleJob(SubmitJobPayload payload, NorvaneClient client, std::optional<QUuid> jobID,
                               PhaseHandler onPhase, bool forceNotify);
    QCoro::Task<> runBulkJob(BulkSubmitJobPayload payload, NorvaneClient client, std::optional<QUuid> jobID,
                             PhaseHandler onPhase, bool forceNotify);
    QCoro::Task<> runUploadRetry(FailedSubmitJobs::UploadAttachments job, NorvaneClient client, PhaseHandler onPhase,
                                 bool forceNotify);
    void handleSingleResult(const std::optional<QUuid>& jobID, const SubmitJobPayload& payload,
                            const SubmitJobResult& result, const PhaseHandler& onPhase, bool forceNotify);
    void handleBulkResult(const std::optional<QUuid>& jobID, const BulkSubmitJobPayload& payload,
                          const BulkSubmitResult& result, const PhaseHandler& onPhase, bool forceNotify);

    // Ends a job's count and tracking; whether it reports by notification, read before the tracking
    // ends.
    bool finishJob(const std::optional<QUuid>& jobID, bool forceNotify);
    void finishTracking(const std::optional<QUuid>& jobID);
    QUuid storeFailed(const FailedSubmitJob& job);
    // Deletes the copies of the attachments that made it and keeps those that failed for a retry of
    // the uploads to `task`; the retry id.
    QUuid keepFailedUploads(const CreatedTask& task, const QList<StagedAttachment>& attachments,
                            const QList<AttachmentUploadFailure>& failures);
    static void cleanupAttachments(const QList<StagedAttachment>& attachments);
    static std::optional<QString> uploadFailureSummary(const QList<AttachmentUploadFailure>& failures);
    // Learns whether a notification was delivered; when it wasn't, or it expired, hands the outcome
    // to backgroundResult from the event loop.
    SubmitNotifier::Delivered showIfUndelivered(BackgroundJobResult::Outcome outcome);
    void changePendingCount(int delta);

    SubmitNotifier& m_notifier;
    AttachmentUploadQueue& m_uploadQueue;
    const StorageProviderRegistry& m_providers;
    const SettingsStore& m_settings;
    int m_pendingCount = 0;
    QHash<QUuid, FailedSubmitJob> m_failedJobs;
    QSet<QUuid> m_backgroundedJobIDs;
};
