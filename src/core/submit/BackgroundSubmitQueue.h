#pragma once

#include "core/api/NorvaneClient.h"
#include "core/submit/BackgroundJobResult.h"
#include "core/submit/BulkSubmitJobPayload.h"
#include "core/submit/BulkSubmitResult.h"
#include "core/submit/FailedSubmitJob.h"
#include "core/submit/ForegroundSubmitPhase.h"
#include "core/submit/ForegroundSubmitSession.h"
#include "core/submit/SubmitJobPayload.h"
#include "core/submit/SubmitJobResult.h"
#include "core/submit/SubmitNotifier.h"
#include "core/submit/TaskSubmitter.h"

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
    // backgrounded. A creation whose answer was lost is looked for in its list first: when an open
    // task of its name is there, nothing is created, and the job is kept under a new id whose retry
    // creates another task. A task is thus created again only by the person's choice.
    void retry(const QUuid& failedJobID, NorvaneClient client, PhaseHandler onPhase, bool forceNotify);

signals:
    void pendingCountChanged();
    void backgroundedJobIDsChanged();
    // A notification about a job in the background could not be delivered, or a failure's expired:
    // show its outcome here.
    void backgroundResult(const BackgroundJobResult& result);

private:
    // The provider of the settings of this moment; absent when the queue went meanwhile.
    QCoro::Task<std::optional<TaskSubmitter::Provider>> currentProvider() const;
    QCoro::Task<> runSingleJob(SubmitJobPayload payload, NorvaneClient client, std::optional<QUuid> jobID,
                               PhaseHandler onPhase, bool forceNotify);
    // The retry of a creation whose answer was lost: looks for the task, and creates it only when it
    // isn't there.
    QCoro::Task<> runLostAnswerRetry(SubmitJobPayload payload, NorvaneClient client, PhaseHandler onPhase,
                                     bool forceNotify);
    QCoro::Task<> runBulkJob(BulkSubmitJobPayload payload, NorvaneClient client, std::optional<QUuid> jobID,
                             PhaseHandler onPhase, bool forceNotify);
    QCoro::Task<> runUploadRetry(FailedSubmitJobs::UploadAttachments job, NorvaneClient client, PhaseHandler onPhase,
                                 bool forceNotify);
    void handleSingleResult(const std::optional<QUuid>& jobID, const SubmitJobPayload& payload,
                            const SubmitJobResult& result, const PhaseHandler& onPhase, bool forceNotify);
    void handleBulkResult(const std::optional<QUuid>& jobID, const BulkSubmitJobPayload& payload,
                          const BulkSubmitResult& result, const PhaseHandler& onPhase, bool forceNotify);

    // Keeps a single job whose creation failed for a retry, and tells why: by notification when the
    // job runs in the background, else as its page's phase, which offers the task `found` when there
    // is one.
    void reportFailedCreate(bool isBackgrounded, const SubmitJobPayload& payload, const QString& message,
                            CreateFailure failure, const std::optional<CreatedTask>& found,
                            const PhaseHandler& onPhase);
    // What the retry of a bulk job takes up: the lines that failed, in order, those whose answer was
    // lost marked to be looked for; the whole payload when no line ran.
    static BulkSubmitJobPayload remainingLines(const BulkSubmitJobPayload& payload, const QList<BulkFailure>& failures);
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
