#pragma once

#include "sandbox/service/ServiceResponse.h"
#include "sandbox/store/StoreData.h"

#include <variant>

// The query of a workspace's task search (team/{id}/task): which tasks, in what order, which page.
struct TeamTaskQuery {
    static constexpr int pageSize = 100;

    bool includeClosed = false;
    bool subtasks = false;
    QString orderBy = QStringLiteral("created");
    bool reverse = false;
    int page = 0;
    QList<qint64> assignees;
    QStringList listIDs;
    QStringList statuses;
    std::optional<qint64> dueDateBefore;

    struct Page {
        std::vector<const Task*> tasks;
        bool lastPage = true;
    };

    // The query, or the 400 answer for a value the service does not take.
    static std::variant<TeamTaskQuery, ServiceResponse> parse(const QueryItems& items);

    Page run(const StoreData& data, const Workspace& workspace) const;

private:
    bool matches(const StoreData& data, const Task& task) const;
    bool goesBefore(const Task& a, const Task& b) const;
};
