#include "core/myday/TaskOrdering.h"

#include "core/myday/DueDate.h"

#include <QCollator>
#include <algorithm>
#include <limits>
#include <vector>

namespace TaskOrdering {

DueRank dueRank(std::optional<double> due, const DayBounds& today) {
    if (!due) {
        return undated;
    }
    if (today.startOfToday && *due < *today.startOfToday) {
        return overdue;
    }
    return *due <= today.endOfToday.value_or(*due) ? dueToday : later;
}

DueRank dueRank(const NVTaskSummary& task, const DayBounds& today) {
    return dueRank(DueDate::milliseconds(task.dueDate), today);
}

QList<NVTaskSummary> sortTasks(QList<NVTaskSummary> tasks, const DayBounds& today) {
    // Each key is worked out once; the names are compared only where rank and date are equal.
    struct Key {
        DueRank rank;
        double due;
        qsizetype index;
    };
    std::vector<Key> keys;
    keys.reserve(static_cast<size_t>(tasks.size()));
    for (qsizetype index = 0; index < tasks.size(); ++index) {
        const std::optional<double> due = DueDate::milliseconds(tasks[index].dueDate);
        keys.push_back({dueRank(due, today), due.value_or(std::numeric_limits<double>::infinity()), index});
    }
    QCollator collator;
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::stable_sort(keys.begin(), keys.end(), [&](const Key& a, const Key& b) {
        if (a.rank != b.rank) {
            return a.rank < b.rank;
        }
        if (a.due != b.due) {
            return a.due < b.due;
        }
        return collator.compare(tasks[a.index].name, tasks[b.index].name) < 0;
    });
    QList<NVTaskSummary> sorted;
    sorted.reserve(tasks.size());
    for (const Key& key : keys) {
        sorted.append(std::move(tasks[key.index]));
    }
    return sorted;
}

} // namespace TaskOrdering
