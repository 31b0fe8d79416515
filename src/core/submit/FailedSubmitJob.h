#pragma once

#include "core/compose/StagedAttachment.h"
#include "core/submit/BulkSubmitJobPayload.h"
#include "core/submit/CreateFailure.h"
#include "core/submit/SubmitJobPayload.h"

#include <QList>
#include <QString>
#include <optional>
#include <variant>

// What a retry takes up again.
namespace FailedSubmitJobs {

// Creation failed; the payload as it was queued, attachments included. After a lost answer the retry
// looks for the task before it creates it.
struct CreateTask {
    SubmitJobPayload payload;
    CreateFailure failure = CreateFailure::notCreated;
    bool operator==(const CreateTask&) const = default;
};
// The task exists; these of its attachments failed.
struct UploadAttachments {
    QString taskID;
    QString taskName;
    std::optional<QString> taskURL;
    QList<StagedAttachment> attachments;
    bool operator==(const UploadAttachments&) const = default;
};
// Every line of a bulk job failed (the whole payload), or only these lines are still to do.
struct BulkCreate {
    BulkSubmitJobPayload payload;
    bool operator==(const BulkCreate&) const = default;
};

} // namespace FailedSubmitJobs

using FailedSubmitJob =
    std::variant<FailedSubmitJobs::CreateTask, FailedSubmitJobs::UploadAttachments, FailedSubmitJobs::BulkCreate>;
