#pragma once

#include "api/TaskRecords.h"

#include <QHash>
#include <QList>
#include <QSet>

// One task placed in the tree, `depth` levels below the top; rows indent by it.
struct TaskTreeNode {
    NVTaskSummary task;
    int depth = 0;

    bool operator==(const TaskTreeNode&) const = default;
};

// Tasks nested by their parent ids. Subtasks come in the same flat list as their parents; a task
// whose parent is not in the list stands at the top. Built once in linear time; the order within
// each level is the list's.
class TaskTreeList {
public:
    explicit TaskTreeList(QList<NVTaskSummary> tasks);

    const QList<NVTaskSummary>& tasks() const { return m_tasks; }
    // Every task without a parent id, or whose parent is not in the list, in list order.
    QList<NVTaskSummary> rootTasks() const;
    // The entries whose parent id is the node's task id, one level deeper.
    QList<TaskTreeNode> children(const TaskTreeNode& node) const;
    // The whole tree depth first: each root, then its children, each followed by theirs. A task
    // whose id is already on the way down (a repeated id or a cycle from the service) is not
    // entered again.
    QList<TaskTreeNode> rows() const;

private:
    void appendSubtree(qsizetype index, int depth, QSet<QString>& path, QList<TaskTreeNode>& rows) const;

    QList<NVTaskSummary> m_tasks;
    QList<qsizetype> m_roots;
    QHash<QString, QList<qsizetype>> m_childrenByParent;
};
