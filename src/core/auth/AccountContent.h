#pragma once

#include <QCoroTask>
#include <QtGlobal>
#include <functional>

// What belongs to the active account besides its token and its settings, as sign-in reaches it: the
// workspace tree with the composer's list, the tasks of the Tasks tab, and the draft.
struct AccountContent {
    // Forgets the composer's list and everything loaded of the tree.
    std::function<void()> forgetHierarchy;
    // Fetches the workspaces unless some are known.
    std::function<QCoro::Task<>()> loadWorkspaces;
    // Selects the remembered list once its workspace's entries are known.
    std::function<QCoro::Task<>()> restoreLastLocation;
    // Empties the tasks and the workspace search.
    std::function<void()> emptyTasks;
    // Every field of the draft back to its first value; the reminder lead takes the argument.
    std::function<void(qint64)> resetDraft;
};
