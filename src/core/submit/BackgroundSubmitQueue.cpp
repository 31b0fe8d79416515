#include "core/submit/BackgroundSubmitQueue.h"

#include "core/async/LoadGuard.h"
#include "core/async/StartTask.h"
#include "core/settings/SettingsStore.h"
#include "core/storage/StorageProviderRegistry.h"
#include "core/submit/BulkSubmitter.h"
#include "core/submit/SubmitNotifier.h"
#include "core/support/Overloaded.h"

#include <QCoreApplication>
#include <QFile>
#include <QPointer>

namespace {
void tell(const PhaseHandler& onPhase, const ForegroundSubmitPhase& phase) {
    if (onPhase) {
        onPhase(phase);
    }
}
} // namespace

BackgroundSubmitQueue::BackgroundSubmitQueue(SubmitNotifier& notifier, AttachmentUploadQueue& uploadQueue,
                                             const StorageProviderRegistry& providers, const SettingsStore& settings,
                                             QObject* parent)
    : QObject(parent)
    , m_notifier(notifier)
    , m_uploadQueue(uploadQueue)
    , m_providers(providers)
    , m_settings(settings) {}

void BackgroundSubmitQueue::enqueue(SubmitJobPayload payload, NorvaneClient client, std::optional<QUuid> jobID,
                                    PhaseHandler onPhase) {
    changePendingCount(+1);
    startTask(this, runSingleJob(std::move(payload), std::move(client), jobID, std::move(onPhase), false));
}

void BackgroundSubmitQueue::enqueueBulk(BulkSubmitJobPayload payload, NorvaneClient client, std::optional<QUuid> jobID,
                                        PhaseHandler onPhase) {
    changePendingCount(+1);
    startTask(this, runBulkJob(std::move(payload), std::move(client), jobID, std::move(onPhase), false));
}

void BackgroundSubmitQueue::markBackgrounded(const ForegroundSubmitSession& session) {
    if (!m_backgroundedJobIDs.contains(session.jobID)) {
        m_backgroundedJobIDs.insert(session.jobID);
        emit backgroundedJobIDsChanged();
    }
}

void BackgroundSubmitQueue::retry(const QUuid& failedJobID, NorvaneClient client, PhaseHandler onPhase,
                                  bool forceNotify) {
    // Out of the map first, so that a second tap finds nothing to run.
    if (!m_failedJobs.contains(failedJobID)) {
        return;
    }
    const FailedSubmitJob job = m_failedJobs.take(failedJobID);
    changePendingCount(+1);
    QCoro::Task<> running =
        std::visit(Overloaded{
                       [&](const FailedSubmitJobs::CreateTask& failed) {
                           return failed.failure == CreateFailure::answerLost
                                      ? runLostAnswerRetry(failed.payload, client, onPhase, forceNotify)
                                      : runSingleJob(failed.payload, client, std::nullopt, onPhase, forceNotify);
                       },
                       [&](const FailedSubmitJobs::UploadAttachments& failed) {
                           return runUploadRetry(failed, client, onPhase, forceNotify);
                       },
                       [&](const FailedSubmitJobs::BulkCreate& failed) {
                           return runBulkJob(failed.payload, client, std::nullopt, onPhase, forceNotify);
                       },
                   },
                   job);
    startTask(this, std::move(running));
}

QCoro::Task<std::optional<TaskSubmitter::Provider>> BackgroundSubmitQueue::currentProvider() const {
    return awaitGuarded(LoadGuard(this), m_providers.makeProvider(m_settings.settings()));
}

QCoro::Task<> BackgroundSubmitQueue::runSingleJob(SubmitJobPayload payload, NorvaneClient client,
                                                  std::optional<QUuid> jobID, PhaseHandler onPhase, bool forceNotify) {
    const LoadGuard guard(this);
    const TaskSubmitter submitter(client, m_uploadQueue, m_notifier);
    QCoro::Task<std::optional<TaskSubmitter::Provider>> making = currentProvider();
    const std::optional<TaskSubmitter::Provider> made = co_await std::move(making);
    if (!made) {
        co_return;
    }
    const TaskSubmitter::Provider provider = *made;
    const bool usesExternal = provider && !payload.attachments.isEmpty();
    const AttachmentUploader::Progress progress = TaskSubmitter::uploadingPhases(onPhase);

    SubmitJobPayload toCreate = payload;
    QList<AttachmentUploadFailure> externalFailures;
    if (usesExternal) {
        tell(onPhase, ForegroundSubmitPhases::Uploading{0, static_cast<int>(payload.attachments.size())});
        QCoro::Task<std::optional<TaskSubmitter::PreUpload>> uploading =
            awaitGuarded(guard, submitter.preUploadToExternal(payload, provider, progress));
        std::optional<TaskSubmitter::PreUpload> preUpload = co_await std::move(uploading);
        if (!preUpload) {
            co_return;
        }
        toCreate = std::move(preUpload->payload);
        externalFailures = std::move(preUpload->failures);
    }

    tell(onPhase, ForegroundSubmitPhases::Creating{});
    QCoro::Task<std::optional<SubmitJobResult>> creating = awaitGuarded(guard, submitter.createTask(toCreate));
    std::optional<SubmitJobResult> created = co_await std::move(creating);
    if (!created) {
        co_return;
    }
    SubmitJobResult& result = *created;
    // A failed creation hands on the payload as queued, and drops the failures of the external
    // uploads: a retry starts from the beginning.
    if (result.error) {
        handleSingleResult(jobID, payload, result, onPhase, forceNotify);
        co_return;
    }
    if (!result.created) {
        changePendingCount(-1);
        finishTracking(jobID);
        co_return;
    }
    if (usesExternal) {
        result.failedUploads = externalFailures;
    } else if (!payload.attachments.isEmpty()) {
        QCoro::Task<std::optional<QList<AttachmentUploadFailure>>> uploading =
            awaitGuarded(guard, submitter.uploadAttachments(result.created->id, payload.attachments, progress));
        std::optional<QList<AttachmentUploadFailure>> failures = co_await std::move(uploading);
        if (!failures) {
            co_return;
        }
        result.failedUploads = std::move(*failures);
    }
    handleSingleResult(jobID, payload, result, onPhase, forceNotify);
}

QCoro::Task<> BackgroundSubmitQueue::runLostAnswerRetry(SubmitJobPayload payload, NorvaneClient client,
                                                        PhaseHandler onPhase, bool forceNotify) {
    const TaskSubmitter submitter(client, m_uploadQueue, m_notifier);
    tell(onPhase, ForegroundSubmitPhases::Creating{});
    QCoro::Task<std::optional<TaskSubmitter::Lookup>> looking =
        awaitGuarded(LoadGuard(this), submitter.findCreated(payload));
    const std::optional<TaskSubmitter::Lookup> lookup = co_await std::move(looking);
    if (!lookup) {
        co_return;
    }
    if (lookup->found) {
        reportFailedCreate(finishJob(std::nullopt, forceNotify), payload, CreateFailures::taskFoundMessage(),
                           CreateFailure::taskFound, lookup->found, onPhase);
        co_return;
    }
    if (lookup->error) {
        // The task may still exist: the next retry looks again.
        reportFailedCreate(finishJob(std::nullopt, forceNotify), payload,
                           CreateFailures::described(*lookup->error, CreateFailure::answerLost),
                           CreateFailure::answerLost, std::nullopt, onPhase);
        co_return;
    }
    QCoro::Task<> running =
        runSingleJob(std::move(payload), std::move(client), std::nullopt, std::move(onPhase), forceNotify);
    co_await std::move(running);
}

QCoro::Task<> BackgroundSubmitQueue::runBulkJob(BulkSubmitJobPayload payload, NorvaneClient client,
                                                std::optional<QUuid> jobID, PhaseHandler onPhase, bool forceNotify) {
    const BulkSubmitter submitter(std::move(client));
    QCoro::Task<std::optional<BulkSubmitResult>> running =
        awaitGuarded(LoadGuard(this), submitter.runBulkJob(payload, onPhase));
    const std::optional<BulkSubmitResult> result = co_await std::move(running);
    if (result) {
        handleBulkResult(jobID, payload, *result, onPhase, forceNotify);
    }
}

QCoro::Task<> BackgroundSubmitQueue::runUploadRetry(FailedSubmitJobs::UploadAttachments job, NorvaneClient client,
                                                    PhaseHandler onPhase, bool forceNotify) {
    const TaskSubmitter submitter(std::move(client), m_uploadQueue, m_notifier);
    QCoro::Task<std::optional<TaskSubmitter::Provider>> making = currentProvider();
    const std::optional<TaskSubmitter::Provider> made = co_await std::move(making);
    if (!made) {
        co_return;
    }
    const TaskSubmitter::Provider provider = *made;
    QCoro::Task<std::optional<QList<AttachmentUploadFailure>>> uploading = awaitGuarded(
        LoadGuard(this), provider ? submitter.retryUploadsToExternal(job.taskID, job.attachments, provider, onPhase)
                                  : submitter.retryUploads(job.taskID, job.attachments, onPhase));
    const std::optional<QList<AttachmentUploadFailure>> uploaded = co_await std::move(uploading);
    if (!uploaded) {
        co_return;
    }
    const QList<AttachmentUploadFailure>& failures = *uploaded;
    changePendingCount(-1);
    const CreatedTask task{job.taskID, job.taskName, job.taskURL, std::nullopt};
    if (failures.isEmpty()) {
        cleanupAttachments(job.attachments);
        if (forceNotify) {
            m_notifier.notifyTaskCreated(job.taskName, job.taskURL, 0, std::nullopt, std::nullopt, {});
        } else {
            tell(onPhase, ForegroundSubmitPhases::Done{task, {}, std::nullopt});
        }
        co_return;
    }
    const QUuid failedID = keepFailedUploads(task, job.attachments, failures);
    if (forceNotify) {
        m_notifier.notifyTaskCreated(job.taskName, job.taskURL, static_cast<int>(failures.size()),
                                     uploadFailureSummary(failures), failedID, {});
    } else {
        tell(onPhase, ForegroundSubmitPhases::Done{task, failures, failedID});
    }
}

void BackgroundSubmitQueue::handleSingleResult(const std::optional<QUuid>& jobID, const SubmitJobPayload& payload,
                                               const SubmitJobResult& result, const PhaseHandler& onPhase,
                                               bool forceNotify) {
    const bool isBackgrounded = finishJob(jobID, forceNotify);
    if (result.error) {
        reportFailedCreate(isBackgrounded, payload, *result.error, result.failure, std::nullopt, onPhase);
        return;
    }
    if (!result.created) {
        return;
    }
    const CreatedTask& created = *result.created;
    if (result.failedUploads.isEmpty()) {
        cleanupAttachments(payload.attachments);
        if (isBackgrounded) {
            m_notifier.notifyTaskCreated(created.name, created.url, 0, std::nullopt, std::nullopt,
                                         showIfUndelivered(BackgroundJobResult::Success{created.name, created.url}));
        } else {
            tell(onPhase, ForegroundSubmitPhases::Done{created, {}, std::nullopt});
        }
        return;
    }
    const QUuid failedID = keepFailedUploads(created, payload.attachments, result.failedUploads);
    const std::optional<QString> summary = uploadFailureSummary(result.failedUploads);
    const int count = static_cast<int>(result.failedUploads.size());
    if (isBackgrounded) {
        m_notifier.notifyTaskCreated(created.name, created.url, count, summary, failedID,
                                     showIfUndelivered(BackgroundJobResult::UploadPartialFailure{
                                         created.name, created.url, count, summary, failedID}));
    } else {
        tell(onPhase, ForegroundSubmitPhases::Done{created, result.failedUploads, failedID});
    }
}

void BackgroundSubmitQueue::handleBulkResult(const std::optional<QUuid>& jobID, const BulkSubmitJobPayload& payload,
                                             const BulkSubmitResult& result, const PhaseHandler& onPhase,
                                             bool forceNotify) {
    const bool isBackgrounded = finishJob(jobID, forceNotify);
    if (result.error) {
        const QUuid failedID = storeFailed(FailedSubmitJobs::BulkCreate{remainingLines(payload, result.failures)});
        if (isBackgrounded) {
            // No banner for this one: an undelivered notification leaves the retry in failedJobs only.
            m_notifier.notifyBulkCreateFailed(*result.error, failedID, {});
        } else {
            // The error is the first line's, and so is what it may have left behind.
            const CreateFailure failure =
                result.failures.isEmpty() ? CreateFailure::notCreated : result.failures.first().failure;
            tell(onPhase, ForegroundSubmitPhases::Failed{*result.error, failedID, failure});
        }
        return;
    }
    const int createdCount = static_cast<int>(result.created.size());
    if (result.failures.isEmpty()) {
        if (isBackgrounded) {
            m_notifier.notifyBulkComplete(createdCount, {}, std::nullopt,
                                          showIfUndelivered(BackgroundJobResult::BulkSuccess{createdCount}));
        } else {
            tell(onPhase, ForegroundSubmitPhases::BulkDone{result.created, {}, std::nullopt});
        }
        return;
    }
    const QUuid failedID = storeFailed(FailedSubmitJobs::BulkCreate{remainingLines(payload, result.failures)});
    if (isBackgrounded) {
        m_notifier.notifyBulkComplete(createdCount, result.failures, failedID,
                                      showIfUndelivered(BackgroundJobResult::BulkPartial{
                                          createdCount, static_cast<int>(result.failures.size()), failedID}));
    } else {
        tell(onPhase, ForegroundSubmitPhases::BulkDone{result.created, result.failures, failedID});
    }
}

void BackgroundSubmitQueue::reportFailedCreate(bool isBackgrounded, const SubmitJobPayload& payload,
                                               const QString& message, CreateFailure failure,
                                               const std::optional<CreatedTask>& found, const PhaseHandler& onPhase) {
    // The files stay: the retry sends them.
    const QUuid failedID = storeFailed(FailedSubmitJobs::CreateTask{payload, failure});
    if (isBackgrounded) {
        m_notifier.notifyTaskCreateFailed(
            payload.taskName, message, failedID,
            showIfUndelivered(BackgroundJobResult::CreateFailed{payload.taskName, message, failedID, failure}));
    } else if (found) {
        tell(onPhase, ForegroundSubmitPhases::FoundExisting{*found, failedID});
    } else {
        tell(onPhase, ForegroundSubmitPhases::Failed{message, failedID, failure});
    }
}

BulkSubmitJobPayload BackgroundSubmitQueue::remainingLines(const BulkSubmitJobPayload& payload,
                                                           const QList<BulkFailure>& failures) {
    if (failures.isEmpty()) {
        return payload;
    }
    BulkSubmitJobPayload remaining = payload;
    remaining.taskNames.clear();
    remaining.lostAnswerLines.clear();
    for (const BulkFailure& failure : failures) {
        remaining.taskNames.append(failure.line);
        if (failure.failure == CreateFailure::answerLost && !remaining.lostAnswerLines.contains(failure.line)) {
            remaining.lostAnswerLines.append(failure.line);
        }
    }
    return remaining;
}

bool BackgroundSubmitQueue::finishJob(const std::optional<QUuid>& jobID, bool forceNotify) {
    changePendingCount(-1);
    const bool isBackgrounded = forceNotify || (jobID && m_backgroundedJobIDs.contains(*jobID));
    finishTracking(jobID);
    return isBackgrounded;
}

void BackgroundSubmitQueue::finishTracking(const std::optional<QUuid>& jobID) {
    if (jobID && m_backgroundedJobIDs.remove(*jobID)) {
        emit backgroundedJobIDsChanged();
    }
}

QUuid BackgroundSubmitQueue::storeFailed(const FailedSubmitJob& job) {
    const QUuid failedID = QUuid::createUuid();
    m_failedJobs.insert(failedID, job);
    return failedID;
}

QUuid BackgroundSubmitQueue::keepFailedUploads(const CreatedTask& task, const QList<StagedAttachment>& attachments,
                                               const QList<AttachmentUploadFailure>& failures) {
    QSet<QUuid> failedIDs;
    QList<StagedAttachment> failed;
    for (const AttachmentUploadFailure& failure : failures) {
        failedIDs.insert(failure.attachment.id);
        failed.append(failure.attachment);
    }
    QList<StagedAttachment> delivered;
    for (const StagedAttachment& attachment : attachments) {
        if (!failedIDs.contains(attachment.id)) {
            delivered.append(attachment);
        }
    }
    cleanupAttachments(delivered);
    return storeFailed(FailedSubmitJobs::UploadAttachments{task.id, task.name, task.url, failed});
}

void BackgroundSubmitQueue::cleanupAttachments(const QList<StagedAttachment>& attachments) {
    for (const StagedAttachment& attachment : attachments) {
        // A copy that can't be deleted stays behind; the next one is still deleted.
        QFile::remove(attachment.fileURL.toLocalFile());
    }
}

std::optional<QString> BackgroundSubmitQueue::uploadFailureSummary(const QList<AttachmentUploadFailure>& failures) {
    if (failures.isEmpty()) {
        return std::nullopt;
    }
    const AttachmentUploadFailure& first = failures.first();
    const QString named = first.attachment.filename + QStringLiteral(": ") + first.message;
    if (failures.size() == 1) {
        return named;
    }
    // A named int, as lupdate sees no numerus text counted by a template call.
    const int count = static_cast<int>(failures.size());
    return QCoreApplication::translate("BackgroundSubmitQueue", "%n attachments failed. ", nullptr, count) + named;
}

SubmitNotifier::Delivered BackgroundSubmitQueue::showIfUndelivered(BackgroundJobResult::Outcome outcome) {
    return [self = QPointer<BackgroundSubmitQueue>(this),
            outcome = std::move(outcome)](SubmitNotifier::Delivery delivery) {
        if (delivery == SubmitNotifier::Delivery::delivered || !self) {
            return;
        }
        QMetaObject::invokeMethod(
            self.data(),
            [self, outcome] {
                if (self) {
                    emit self->backgroundResult(BackgroundJobResult{outcome});
                }
            },
            Qt::QueuedConnection);
    };
}

void BackgroundSubmitQueue::changePendingCount(int delta) {
    // Each start is paired with one end, so the count never goes below 0 in a correct run.
    const int count = std::max(0, m_pendingCount + delta);
    if (count == m_pendingCount) {
        return;
    }
    m_pendingCount = count;
    emit pendingCountChanged();
}
