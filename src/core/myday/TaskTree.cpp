#include "core/myday/TaskTree.h"

#include <algorithm>

TaskTreeList::TaskTreeList(QList<NVTaskSummary> tasks)
    : m_tasks(std::move(tasks)) {
    const auto count = static_cast<size_t>(m_tasks.size());
    m_firstChild.assign(count, none);
    m_lastChild.assign(count, none);
    m_nextSibling.assign(count, none);
    m_holdsChildren.assign(count, false);
    m_firstIndexOf.reserve(m_tasks.size());
    for (qsizetype index = 0; index < m_tasks.size(); ++index) {
        const QString& id = m_tasks[index].id;
        if (m_firstIndexOf.constFind(id) == m_firstIndexOf.cend()) {
            m_firstIndexOf.insert(id, index);
            m_holdsChildren[static_cast<size_t>(index)] = true;
        }
    }
    for (qsizetype index = 0; index < m_tasks.size(); ++index) {
        const std::optional<QString>& parentID = m_tasks[index].parentTaskID;
        const auto parent = parentID ? m_firstIndexOf.constFind(*parentID) : m_firstIndexOf.cend();
        if (parent == m_firstIndexOf.cend()) {
            m_roots.push_back(index);
            continue;
        }
        const auto parentIndex = static_cast<size_t>(*parent);
        if (m_lastChild[parentIndex] == none) {
            m_firstChild[parentIndex] = index;
        } else {
            m_nextSibling[static_cast<size_t>(m_lastChild[parentIndex])] = index;
        }
        m_lastChild[parentIndex] = index;
    }
}

QList<NVTaskSummary> TaskTreeList::rootTasks() const {
    QList<NVTaskSummary> roots;
    roots.reserve(static_cast<qsizetype>(m_roots.size()));
    for (const qsizetype index : m_roots) {
        roots.append(m_tasks[index]);
    }
    return roots;
}

QList<TaskTreeNode> TaskTreeList::children(const TaskTreeNode& node) const {
    QList<TaskTreeNode> children;
    const qsizetype parent = m_firstIndexOf.value(node.task.id, none);
    for (qsizetype child = parent == none ? none : m_firstChild[static_cast<size_t>(parent)]; child != none;
         child = m_nextSibling[static_cast<size_t>(child)]) {
        children.append({m_tasks[child], node.depth + 1});
    }
    return children;
}

QList<TaskTreeList::Placement> TaskTreeList::placements() const {
    QList<Placement> placements;
    placements.reserve(m_tasks.size());
    std::vector<bool> placed(static_cast<size_t>(m_tasks.size()), false);
    // Depth first without recursion: the stack holds what comes next, the next sibling below the
    // first child.
    std::vector<Placement> stack;
    stack.reserve(m_roots.size());
    for (const qsizetype root : m_roots) {
        stack.push_back({root, 0});
    }
    std::reverse(stack.begin(), stack.end());
    while (!stack.empty()) {
        const Placement current = stack.back();
        stack.pop_back();
        const auto index = static_cast<size_t>(current.index);
        if (placed[index]) {
            continue;
        }
        placed[index] = true;
        placements.append(current);
        // A repeated id hangs its children from its first entry; only that entry shows them.
        if (!m_holdsChildren[index]) {
            continue;
        }
        const size_t firstPushed = stack.size();
        for (qsizetype child = m_firstChild[index]; child != none; child = m_nextSibling[static_cast<size_t>(child)]) {
            stack.push_back({child, current.depth + 1});
        }
        std::reverse(stack.begin() + static_cast<std::ptrdiff_t>(firstPushed), stack.end());
    }
    return placements;
}

QList<TaskTreeNode> TaskTreeList::rows() const {
    QList<TaskTreeNode> rows;
    rows.reserve(m_tasks.size());
    for (const Placement& placement : placements()) {
        rows.append({m_tasks[placement.index], placement.depth});
    }
    return rows;
}
