#pragma once

#include "core/api/TaskRecords.h"
#include "core/submit/BulkFailure.h"

#include <QList>
#include <QString>
#include <optional>

// The outcome of a bulk job. `error` is set only when no task was created at all.
struct BulkSubmitResult {
    QList<CreatedTask> created;
    QList<BulkFailure> failures;
    std::optional<QString> error;

    bool operator==(const BulkSubmitResult&) const = default;
};
