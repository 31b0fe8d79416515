#pragma once

#include "core/api/TaskRecords.h"
#include "core/myday/DayBounds.h"

#include <QList>

// The fixed order of My Day: overdue, due today, later, undated; by due date within each; then by
// name.
namespace TaskOrdering {

enum DueRank { overdue = 0, dueToday = 1, later = 2, undated = 3 };

// 3 without a parsable due date; 0 before the start of today; 1 up to and including the end of
// today (when the calendar yields no end of today, the due date itself stands in, which gives 1);
// 2 after.
DueRank dueRank(const NVTaskSummary& task, const DayBounds& today);
DueRank dueRank(std::optional<double> dueMilliseconds, const DayBounds& today);

// A stable sort: lower rank first; then the earlier due date (none counts as the distant future);
// then the name, locale-aware and case-insensitive; equal names keep the service's order. Safe to
// run off the main thread.
QList<NVTaskSummary> sortTasks(QList<NVTaskSummary> tasks, const DayBounds& today);

} // namespace TaskOrdering
