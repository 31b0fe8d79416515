#include "myday/TaskTree.h"

TaskTreeList::TaskTreeList(QList<NVTaskSummary> tasks)
    : m_tasks(std::move(tasks)) {
    QSet<QString> ids;
    ids.reserve(m_tasks.size());
    for (const NVTaskSummary& task : m_tasks) {
        ids.insert(task.id);
    }
    for (qsizetype index = 0; index < m_tasks.size(); ++index) {
        const std::optional<QString>& parent = m_tasks[index].parentTaskID;
        if (parent && ids.contains(*parent)) {
            m_childrenByParent[*parent].append(index);
        } else {
            m_roots.append(index);
        }
    }
}

QList<NVTaskSummary> TaskTreeList::rootTasks() const {
    QList<NVTaskSummary> roots;
    roots.reserve(m_roots.size());
    for (const qsizetype index : m_roots) {
        roots.append(m_tasks[index]);
    }
    return roots;
}

QList<TaskTreeNode> TaskTreeList::children(const TaskTreeNode& node) const {
    QList<TaskTreeNode> children;
    for (const qsizetype index : m_childrenByParent.value(node.task.id)) {
        children.append({m_tasks[index], node.depth + 1});
    }
    return children;
}

QList<TaskTreeNode> TaskTreeList::rows() const {
    QList<TaskTreeNode> rows;
    rows.reserve(m_tasks.size());
    QSet<QString> path;
    for (const qsizetype index : m_roots) {
        appendSubtree(index, 0, path, rows);
    }
    return rows;
}

void TaskTreeList::appendSubtree(qsizetype index, int depth, QSet<QString>& path, QList<TaskTreeNode>& rows) const {
    const NVTaskSummary& task = m_tasks[index];
    if (path.contains(task.id)) {
        return;
    }
    rows.append({task, depth});
    const auto children = m_childrenByParent.constFind(task.id);
    if (children == m_childrenByParent.cend()) {
        return;
    }
    path.insert(task.id);
    for (const qsizetype child : *children) {
        appendSubtree(child, depth + 1, path, rows);
    }
    path.remove(task.id);
}
