// A page of the task search as My Day takes it in: decoded, sorted, nested into the subtask tree and
// searched, from the same bytes. Decoding may fail, but only with DecodingError; whatever decodes
// goes through the rest without a crash, and no task is lost or doubled on the way.
#include "core/api/TaskRecords.h"
#include "core/myday/DayBounds.h"
#include "core/myday/DueDate.h"
#include "core/myday/TaskOrdering.h"
#include "core/myday/TaskSearch.h"
#include "core/myday/TaskTree.h"
#include "support/FuzzJson.h"

#include <QTimeZone>

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::optional<QJsonValue> json = fuzzedJson(data, size);
    if (!json) {
        return 0;
    }
    TeamTasksResponse page;
    try {
        page = Json::decode<TeamTasksResponse>(*json, QStringLiteral("$"));
    } catch (const DecodingError&) {
        return 0;
    }
    const DayBounds today = DayBounds::at(QDateTime::fromMSecsSinceEpoch(1'781'000'000'000, QTimeZone::utc()));
    for (const NVTaskSummary& task : page.tasks) {
        DueDate::milliseconds(task.dueDate);
    }
    const QList<NVTaskSummary> sorted = TaskOrdering::sortTasks(page.tasks, today);
    if (sorted.size() != page.tasks.size()) {
        std::abort();
    }
    const TaskTreeList tree(sorted);
    if (tree.rows().size() > sorted.size()) {
        std::abort();
    }
    for (const TaskTreeNode& node : tree.rows()) {
        tree.children(node);
    }
    const QStringList tokens =
        TaskSearch::normalizedTokens(sorted.isEmpty() ? QString() : sorted.first().name.left(40));
    for (const NVTaskSummary& task : sorted) {
        TaskSearch::matchesSearchQuery(task, tokens);
    }
    return 0;
}
