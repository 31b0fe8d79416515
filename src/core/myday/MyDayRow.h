#pragma once

#include "core/myday/TaskTree.h"

#include <QString>

// One row of the Tasks tab as plain values: the title of a section ("Overdue", "Due today",
// "Later"), or a task at its depth in the tree (a subtask has a depth above 0).
struct MyDayRow {
    enum class Kind { section, task };

    Kind kind = Kind::task;
    // The section's title; empty for a task.
    QString title;
    // The task and its depth; empty for a section.
    TaskTreeNode node;

    static MyDayRow section(const QString& title) { return {Kind::section, title, {}}; }
    static MyDayRow task(TaskTreeNode node) { return {Kind::task, {}, std::move(node)}; }
    // What stays the same when the row's content changes: the section title, or the task id.
    QString key() const { return kind == Kind::section ? QLatin1Char('#') + title : node.task.id; }

    bool operator==(const MyDayRow&) const = default;
};
