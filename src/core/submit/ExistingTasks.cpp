#include "core/submit/ExistingTasks.h"

#include "core/api/Endpoints.h"
#include "core/submit/FailureMessage.h"

#include <algorithm>

QCoro::Task<ExistingTasks> ExistingTasks::fetch(NorvaneClient client, QString workspaceID, QString listID) {
    const Endpoints::TeamTasksFilter filter{std::nullopt, QStringList{listID}, std::nullopt, std::nullopt};
    ExistingTasks existing;
    try {
        QCoro::Task<QList<NVTaskSummary>> searching = Endpoints::getAllTeamTasks(client, workspaceID, filter);
        existing.m_tasks = co_await std::move(searching);
    } catch (...) {
        existing.m_error = FailureMessage::of(std::current_exception());
    }
    co_return existing;
}

std::optional<CreatedTask> ExistingTasks::named(const QString& name) const {
    const auto found = std::find_if(m_tasks.cbegin(), m_tasks.cend(),
                                    [&name](const NVTaskSummary& task) { return task.name == name; });
    if (found == m_tasks.cend()) {
        return std::nullopt;
    }
    return CreatedTask{found->id, found->name, found->url, found->customTaskID};
}
