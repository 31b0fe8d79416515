#pragma once

#include "core/api/NorvaneClient.h"
#include "core/api/TaskRecords.h"

#include <QCoroTask>
#include <QList>
#include <QString>
#include <optional>

// The open tasks of one list, read to learn whether a task whose creation's answer was lost exists
// after all, before it is created again.
class ExistingTasks {
public:
    // Every open task of the list in the workspace, through the task search narrowed to it (at most
    // Endpoints::maxTaskPages pages). A search that fails is kept as error(). Never throws.
    static QCoro::Task<ExistingTasks> fetch(NorvaneClient client, QString workspaceID, QString listID);

    // Why the tasks couldn't be read, as the user reads it; then none is known.
    const std::optional<QString>& error() const { return m_error; }
    // An open task of exactly this name, if there is one.
    std::optional<CreatedTask> named(const QString& name) const;

private:
    QList<NVTaskSummary> m_tasks;
    std::optional<QString> m_error;
};
