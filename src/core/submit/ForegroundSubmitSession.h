#pragma once

#include "core/submit/ForegroundSubmitPhase.h"

#include <QString>
#include <QUuid>

// The submission the popover's progress page follows.
struct ForegroundSubmitSession {
    // Made when the submission starts; names the job and guards its phase handler.
    QUuid jobID;
    // The task's name, or for a bulk job the count followed by " tasks".
    QString taskName;
    // The only field that changes.
    ForegroundSubmitPhase phase;

    bool operator==(const ForegroundSubmitSession&) const = default;
};
