#pragma once

#include "core/api/TaskRequests.h"

#include <QList>
#include <QString>

// A frozen job creating one task per line, all with the same fields.
struct BulkSubmitJobPayload {
    QString listID;
    // The lines, trimmed and none empty.
    QList<QString> taskNames;
    CreateTaskRequest fieldTemplate;
    // The workspace of the list, where lines whose creation's answer was lost are looked for.
    QString workspaceID;
    // Lines whose earlier creation may have gone through: each is looked for in the list by its name
    // before it is created again.
    QList<QString> lostAnswerLines;

    bool operator==(const BulkSubmitJobPayload&) const = default;
};
