#pragma once

#include "core/api/TaskRecords.h"
#include "core/submit/AttachmentUploadFailure.h"
#include "core/submit/CreateFailure.h"

#include <QList>
#include <QString>
#include <optional>

// The outcome of creating one task. `error` means that creation failed, and `failure` whether a task
// may exist nevertheless; `created` with failed uploads means that the task exists without some of
// its attachments.
struct SubmitJobResult {
    std::optional<CreatedTask> created;
    QList<AttachmentUploadFailure> failedUploads;
    // Why creation failed, as the user reads it.
    std::optional<QString> error;
    CreateFailure failure = CreateFailure::notCreated;

    bool operator==(const SubmitJobResult&) const = default;
};
