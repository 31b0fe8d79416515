#pragma once

#include "api/TaskRecords.h"
#include "submit/AttachmentUploadFailure.h"

#include <QList>
#include <QString>
#include <optional>

// The outcome of creating one task. `error` means that no task exists; `created` with failed uploads
// means that the task exists without some of its attachments.
struct SubmitJobResult {
    std::optional<CreatedTask> created;
    QList<AttachmentUploadFailure> failedUploads;
    // Why creation failed.
    std::optional<QString> error;

    bool operator==(const SubmitJobResult&) const = default;
};
