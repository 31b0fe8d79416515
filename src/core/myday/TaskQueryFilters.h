#pragma once

#include "core/api/Endpoints.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

// What a fetch of My Day is narrowed to on the service. An empty array is kept as absent, so absent
// and empty never differ.
class TaskQueryFilters {
public:
    TaskQueryFilters() = default;
    TaskQueryFilters(std::optional<QList<qint64>> assigneeIDs, std::optional<QStringList> listIDs,
                     std::optional<QStringList> statuses);

    const std::optional<QList<qint64>>& assigneeIDs() const { return m_assigneeIDs; }
    const std::optional<QStringList>& listIDs() const { return m_listIDs; }
    const std::optional<QStringList>& statuses() const { return m_statuses; }

    // "ids|lists|statuses": each part its items joined by ",", in the order given, or "-" when absent.
    QString requestKey() const;
    // The task search's filter: these three, and no due limit.
    Endpoints::TeamTasksFilter teamTasksFilter() const;

    bool operator==(const TaskQueryFilters&) const = default;

private:
    std::optional<QList<qint64>> m_assigneeIDs;
    std::optional<QStringList> m_listIDs;
    std::optional<QStringList> m_statuses;
};
