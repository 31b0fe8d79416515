#pragma once

#include <QString>
#include <QUuid>

// One line of a bulk job that the service refused.
struct BulkFailure {
    // New for each failure.
    QUuid id;
    // The task name of the line.
    QString line;
    // Why the service refused it, as the user reads it.
    QString message;

    bool operator==(const BulkFailure&) const = default;
};
