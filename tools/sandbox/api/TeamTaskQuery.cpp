#include "sandbox/api/TeamTaskQuery.h"

#include "sandbox/service/ApiErrors.h"

#include <algorithm>

namespace {
const QStringList orderings{QStringLiteral("created"), QStringLiteral("updated"), QStringLiteral("id"),
                            QStringLiteral("due_date")};

std::optional<bool> parseBoolean(const QString& text) {
    if (text.compare(QLatin1String("true"), Qt::CaseInsensitive) == 0) {
        return true;
    }
    if (text.compare(QLatin1String("false"), Qt::CaseInsensitive) == 0) {
        return false;
    }
    return std::nullopt;
}

std::optional<qint64> parseInteger(const QString& text) {
    bool ok = false;
    const qint64 value = text.toLongLong(&ok);
    return ok ? std::optional(value) : std::nullopt;
}
} // namespace

std::variant<TeamTaskQuery, ServiceResponse> TeamTaskQuery::parse(const QueryItems& items) {
    TeamTaskQuery query;
    for (const auto& [name, value] : items) {
        const auto invalid = [&name = name](const QString& expected) {
            return ApiErrors::invalidQuery(QStringLiteral("%1 must be %2").arg(name, expected));
        };
        bool* const flag = name == QLatin1String("include_closed") ? &query.includeClosed
                           : name == QLatin1String("subtasks")     ? &query.subtasks
                           : name == QLatin1String("reverse")      ? &query.reverse
                                                                   : nullptr;
        if (flag) {
            const std::optional<bool> parsed = parseBoolean(value);
            if (!parsed) {
                return invalid(QStringLiteral("true or false"));
            }
            *flag = *parsed;
        } else if (name == QLatin1String("order_by")) {
            if (!orderings.contains(value)) {
                return invalid(QStringLiteral("one of ") + orderings.join(QStringLiteral(", ")));
            }
            query.orderBy = value;
        } else if (name == QLatin1String("page")) {
            const std::optional<qint64> page = parseInteger(value);
            if (!page || *page < 0 || *page > 1'000'000) {
                return invalid(QStringLiteral("a page number from 0"));
            }
            query.page = static_cast<int>(*page);
        } else if (name == QLatin1String("assignees[]")) {
            const std::optional<qint64> assignee = parseInteger(value);
            if (!assignee) {
                return invalid(QStringLiteral("a user id"));
            }
            query.assignees.append(*assignee);
        } else if (name == QLatin1String("list_ids[]")) {
            query.listIDs.append(value);
        } else if (name == QLatin1String("statuses[]")) {
            query.statuses.append(value);
        } else if (name == QLatin1String("due_date_lt")) {
            query.dueDateBefore = parseInteger(value);
            if (!query.dueDateBefore) {
                return invalid(QStringLiteral("milliseconds since 1970"));
            }
        }
    }
    return query;
}

bool TeamTaskQuery::matches(const StoreData& data, const Task& task) const {
    const TaskList* list = data.list(task.listID);
    if (!list) {
        return false;
    }
    if (!includeClosed && data.isClosed(*list, task.status)) {
        return false;
    }
    if (!subtasks && task.parentID) {
        return false;
    }
    if (!assignees.isEmpty() &&
        std::none_of(task.assignees.begin(), task.assignees.end(), [&](qint64 id) { return assignees.contains(id); })) {
        return false;
    }
    if (!listIDs.isEmpty() && !listIDs.contains(task.listID)) {
        return false;
    }
    if (!statuses.isEmpty() && !statuses.contains(task.status, Qt::CaseInsensitive)) {
        return false;
    }
    return !dueDateBefore || (task.dueDateMs && *task.dueDateMs < *dueDateBefore);
}

bool TeamTaskQuery::goesBefore(const Task& a, const Task& b) const {
    if (orderBy == QLatin1String("due_date")) {
        // Undated tasks come after all dated ones.
        const qint64 dueA = a.dueDateMs.value_or(std::numeric_limits<qint64>::max());
        const qint64 dueB = b.dueDateMs.value_or(std::numeric_limits<qint64>::max());
        if (dueA != dueB) {
            return dueA < dueB;
        }
    } else if (orderBy == QLatin1String("updated") && a.updatedMs != b.updatedMs) {
        return a.updatedMs > b.updatedMs;
    } else if (orderBy == QLatin1String("id")) {
        return a.id < b.id;
    }
    if (a.createdMs != b.createdMs) {
        return a.createdMs > b.createdMs;
    }
    return a.id < b.id;
}

TeamTaskQuery::Page TeamTaskQuery::run(const StoreData& data, const Workspace& workspace) const {
    std::vector<const Task*> found;
    for (const Task& task : data.tasks) {
        const Workspace* owner = data.workspaceOfList(task.listID);
        if (owner && owner->id == workspace.id && matches(data, task)) {
            found.push_back(&task);
        }
    }
    std::stable_sort(found.begin(), found.end(), [this](const Task* a, const Task* b) {
        return reverse ? goesBefore(*b, *a) : goesBefore(*a, *b);
    });
    Page result;
    const auto first = static_cast<qsizetype>(page) * pageSize;
    const auto total = static_cast<qsizetype>(found.size());
    for (qsizetype index = first; index < std::min(total, first + pageSize); ++index) {
        result.tasks.push_back(found[static_cast<size_t>(index)]);
    }
    result.lastPage = first + pageSize >= total;
    return result;
}
