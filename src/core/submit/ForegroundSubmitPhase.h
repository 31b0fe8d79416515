#pragma once

#include "core/api/TaskRecords.h"
#include "core/submit/AttachmentUploadFailure.h"
#include "core/submit/BulkFailure.h"
#include "core/submit/CreateFailure.h"

#include <QList>
#include <QString>
#include <QUuid>
#include <functional>
#include <optional>
#include <variant>

// Where a submission stands, as the progress page shows it.
namespace ForegroundSubmitPhases {

// Attachment `current` of `total`; 0 means that uploads are about to begin.
struct Uploading {
    int current = 0;
    int total = 0;
    bool operator==(const Uploading&) const = default;
};
// Finished; the task exists, perhaps without some attachments.
struct Done {
    CreatedTask task;
    QList<AttachmentUploadFailure> failedUploads;
    std::optional<QUuid> retryJobID;
    bool operator==(const Done&) const = default;
};
// Creation failed, of a single task or of a bulk job as a whole; `failure` tells whether a task may
// exist nevertheless.
struct Failed {
    QString message;
    std::optional<QUuid> retryJobID;
    CreateFailure failure = CreateFailure::notCreated;
    bool operator==(const Failed&) const = default;
};
// Task `current` of `total` of a bulk job.
struct BulkCreating {
    int current = 0;
    int total = 0;
    bool operator==(const BulkCreating&) const = default;
};
// A bulk job finished with at least one task.
struct BulkDone {
    QList<CreatedTask> created;
    QList<BulkFailure> failures;
    std::optional<QUuid> retryJobID;
    bool operator==(const BulkDone&) const = default;
};
// The create request is on its way.
struct Creating {
    bool operator==(const Creating&) const = default;
};
// After a lost answer, the retry found an open task of that name in the list and created nothing:
// the person opens it, or creates another one through `retryJobID`.
struct FoundExisting {
    CreatedTask task;
    QUuid retryJobID;
    bool operator==(const FoundExisting&) const = default;
};

} // namespace ForegroundSubmitPhases

using ForegroundSubmitPhase =
    std::variant<ForegroundSubmitPhases::Uploading, ForegroundSubmitPhases::Done, ForegroundSubmitPhases::Failed,
                 ForegroundSubmitPhases::BulkCreating, ForegroundSubmitPhases::BulkDone,
                 ForegroundSubmitPhases::Creating, ForegroundSubmitPhases::FoundExisting>;

// Told each phase of a job on the main thread; may be empty.
using PhaseHandler = std::function<void(const ForegroundSubmitPhase& phase)>;
