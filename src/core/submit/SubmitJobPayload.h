#pragma once

#include "core/api/TaskRequests.h"
#include "core/compose/StagedAttachment.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <optional>

// A frozen single-task job: nothing the user edits afterwards reaches it.
struct SubmitJobPayload {
    QString listID;
    // Shown in progress and notifications; already trimmed.
    QString taskName;
    CreateTaskRequest request;
    // Private copies of the draft's files, owned by the job.
    QList<StagedAttachment> attachments;
    // The local reminder to schedule once the task exists.
    std::optional<QDateTime> reminderFireDate;
    // The workspace of the list, where a task whose creation's answer was lost is looked for.
    QString workspaceID;

    bool operator==(const SubmitJobPayload&) const = default;
};
