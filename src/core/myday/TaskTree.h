#pragma once

#include "core/api/TaskRecords.h"

#include <QHash>
#include <QList>
#include <vector>

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
    // Where a task of the list stands in the tree: its index in the list and its depth.
    struct Placement {
        qsizetype index = 0;
        int depth = 0;
        bool operator==(const Placement&) const = default;
    };

    explicit TaskTreeList(QList<NVTaskSummary> tasks);

    const QList<NVTaskSummary>& tasks() const { return m_tasks; }
    // Every task without a parent id, or whose parent is not in the list, in list order.
    QList<NVTaskSummary> rootTasks() const;
    // The entries whose parent id is the node's task id, one level deeper.
    QList<TaskTreeNode> children(const TaskTreeNode& node) const;
    // The whole tree depth first: each root, then its children, each followed by theirs. Each entry
    // is placed once at most, so a cycle or a repeated id from the service can't loop or double a
    // row; an entry reachable from no root (a cycle) is left out.
    QList<Placement> placements() const;
    // The same with the tasks themselves.
    QList<TaskTreeNode> rows() const;

private:
    static constexpr qsizetype none = -1;

    QList<NVTaskSummary> m_tasks;
    std::vector<qsizetype> m_roots;
    // The first entry of each id: a child hangs from it.
    QHash<QString, qsizetype> m_firstIndexOf;
    // The children of each entry as a chain: the first child, and for each entry its next sibling.
    std::vector<qsizetype> m_firstChild;
    std::vector<qsizetype> m_lastChild;
    std::vector<qsizetype> m_nextSibling;
    // Whether the entry is the first of its id, from which the id's children hang.
    std::vector<bool> m_holdsChildren;
};
