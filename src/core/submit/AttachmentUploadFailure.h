#pragma once

#include "core/compose/StagedAttachment.h"

#include <QString>
#include <QUuid>

// One attachment that did not reach its task.
struct AttachmentUploadFailure {
    // New for each failure.
    QUuid id;
    StagedAttachment attachment;
    // Why, as the user reads it.
    QString message;

    bool operator==(const AttachmentUploadFailure&) const = default;
};
