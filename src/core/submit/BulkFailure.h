#pragma once

#include "core/submit/CreateFailure.h"

#include <QString>
#include <QUuid>

// One line of a bulk job that was not created.
struct BulkFailure {
    // New for each failure.
    QUuid id;
    // The task name of the line.
    QString line;
    // Why, as the user reads it.
    QString message;
    // Whether its task may exist nevertheless.
    CreateFailure failure = CreateFailure::notCreated;

    bool operator==(const BulkFailure&) const = default;
};
