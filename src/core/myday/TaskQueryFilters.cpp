#include "core/myday/TaskQueryFilters.h"

namespace {
template <typename List> std::optional<List> nonEmpty(std::optional<List> items) {
    if (items && items->isEmpty()) {
        return std::nullopt;
    }
    return items;
}

QString keyPart(const std::optional<QStringList>& items) {
    return items ? items->join(u',') : QStringLiteral("-");
}
} // namespace

TaskQueryFilters::TaskQueryFilters(std::optional<QList<qint64>> assigneeIDs, std::optional<QStringList> listIDs,
                                   std::optional<QStringList> statuses)
    : m_assigneeIDs(nonEmpty(std::move(assigneeIDs)))
    , m_listIDs(nonEmpty(std::move(listIDs)))
    , m_statuses(nonEmpty(std::move(statuses))) {}

QString TaskQueryFilters::requestKey() const {
    std::optional<QStringList> assignees;
    if (m_assigneeIDs) {
        assignees.emplace();
        for (const qint64 id : *m_assigneeIDs) {
            assignees->append(QString::number(id));
        }
    }
    return QStringList{keyPart(assignees), keyPart(m_listIDs), keyPart(m_statuses)}.join(u'|');
}

Endpoints::TeamTasksFilter TaskQueryFilters::teamTasksFilter() const {
    return {m_assigneeIDs, m_listIDs, m_statuses, std::nullopt};
}
