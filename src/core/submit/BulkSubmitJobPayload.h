#pragma once

#include "api/TaskRequests.h"

#include <QList>
#include <QString>

// A frozen job creating one task per line, all with the same fields.
struct BulkSubmitJobPayload {
    QString listID;
    // The lines, trimmed and none empty.
    QList<QString> taskNames;
    CreateTaskRequest fieldTemplate;

    bool operator==(const BulkSubmitJobPayload&) const = default;
};
