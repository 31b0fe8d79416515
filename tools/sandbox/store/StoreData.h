#pragma once

#include "sandbox/store/Records.h"

#include <QByteArray>

// Everything the sandbox holds, with the lookups its routes need. Not locked: SandboxStore guards it.
struct StoreData {
    std::vector<User> users;
    std::vector<Workspace> workspaces;
    std::vector<Space> spaces;
    std::vector<Folder> folders;
    std::vector<TaskList> lists;
    std::vector<Task> tasks;
    qint64 nextNumber = 1;

    const User* user(qint64 id) const;
    const User* userWithToken(QByteArrayView token) const;
    const Workspace* workspace(const QString& id) const;
    const Space* space(const QString& id) const;
    const Folder* folder(const QString& id) const;
    const TaskList* list(const QString& id) const;
    const Task* task(const QString& id) const;
    Task* task(const QString& id);

    // The workspace that holds a record, or null when the record's chain is broken.
    const Workspace* workspaceOfSpace(const QString& spaceID) const;
    const Workspace* workspaceOfList(const QString& listID) const;
    const Workspace* workspaceOfTask(const QString& taskID) const;
    bool isMember(const Workspace* workspace, qint64 userID) const;

    // The statuses a list's tasks move through: its own, else its space's, else the default pair.
    std::vector<Status> statusesOf(const TaskList& list) const;
    // Closed is the type "closed"; a list without such a status closes with its last status.
    bool isClosed(const TaskList& list, const QString& statusName) const;
    std::optional<Status> findStatus(const TaskList& list, const QString& statusName) const;

    // A new id of the service's kind, unique within this store.
    QString newID(const QString& prefix);
    // The next custom task id of a workspace that has them: its prefix and the next free number.
    std::optional<QString> nextCustomTaskID(const Workspace& workspace) const;
    qint64 storageUsed(const QString& workspaceID) const;
};
