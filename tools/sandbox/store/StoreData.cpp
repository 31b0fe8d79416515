#include "sandbox/store/StoreData.h"

#include <algorithm>

namespace {
template <typename Records, typename Key> auto findIn(Records& records, const Key& key) {
    const auto found =
        std::find_if(records.begin(), records.end(), [&](const auto& record) { return record.id == key; });
    return found == records.end() ? nullptr : &*found;
}
} // namespace

QString User::displayName() const {
    if (username) {
        return *username;
    }
    if (email) {
        return *email;
    }
    return QStringLiteral("User %1").arg(id);
}

const User* StoreData::user(qint64 id) const {
    return findIn(users, id);
}

const User* StoreData::userWithToken(QByteArrayView token) const {
    const auto found = std::find_if(users.begin(), users.end(), [&](const User& user) {
        return user.token && !token.isEmpty() && user.token->toUtf8() == token;
    });
    return found == users.end() ? nullptr : &*found;
}

const Workspace* StoreData::workspace(const QString& id) const {
    return findIn(workspaces, id);
}
const Space* StoreData::space(const QString& id) const {
    return findIn(spaces, id);
}
const Folder* StoreData::folder(const QString& id) const {
    return findIn(folders, id);
}
const TaskList* StoreData::list(const QString& id) const {
    return findIn(lists, id);
}
const Task* StoreData::task(const QString& id) const {
    return findIn(tasks, id);
}
Task* StoreData::task(const QString& id) {
    return findIn(tasks, id);
}

const Workspace* StoreData::workspaceOfSpace(const QString& spaceID) const {
    const Space* found = space(spaceID);
    return found ? workspace(found->workspaceID) : nullptr;
}

const Workspace* StoreData::workspaceOfList(const QString& listID) const {
    const TaskList* found = list(listID);
    return found ? workspaceOfSpace(found->spaceID) : nullptr;
}

const Workspace* StoreData::workspaceOfTask(const QString& taskID) const {
    const Task* found = task(taskID);
    return found ? workspaceOfList(found->listID) : nullptr;
}

bool StoreData::isMember(const Workspace* workspace, qint64 userID) const {
    return workspace &&
           std::find(workspace->memberIDs.begin(), workspace->memberIDs.end(), userID) != workspace->memberIDs.end();
}

std::vector<Status> StoreData::statusesOf(const TaskList& list) const {
    if (list.statuses && !list.statuses->empty()) {
        return *list.statuses;
    }
    const Space* owner = space(list.spaceID);
    if (owner && owner->statuses && !owner->statuses->empty()) {
        return *owner->statuses;
    }
    return {Status{QStringLiteral("to do"), QStringLiteral("#d3d3d3"), QStringLiteral("open")},
            Status{QStringLiteral("complete"), QStringLiteral("#6bc950"), QStringLiteral("closed")}};
}

std::optional<Status> StoreData::findStatus(const TaskList& list, const QString& statusName) const {
    for (const Status& status : statusesOf(list)) {
        if (status.status.compare(statusName, Qt::CaseInsensitive) == 0) {
            return status;
        }
    }
    return std::nullopt;
}

bool StoreData::isClosed(const TaskList& list, const QString& statusName) const {
    const std::vector<Status> statuses = statusesOf(list);
    const bool hasClosedType = std::any_of(
        statuses.begin(), statuses.end(), [](const Status& status) { return status.type == QStringLiteral("closed"); });
    if (hasClosedType) {
        const std::optional<Status> status = findStatus(list, statusName);
        return status && status->type == QStringLiteral("closed");
    }
    return statuses.back().status.compare(statusName, Qt::CaseInsensitive) == 0;
}

QString StoreData::newID(const QString& prefix) {
    return prefix + QString::number(nextNumber++, 36).rightJustified(6, QLatin1Char('0'));
}

std::optional<QString> StoreData::nextCustomTaskID(const Workspace& workspace) const {
    if (!workspace.customTaskIDPrefix) {
        return std::nullopt;
    }
    const QString prefix = *workspace.customTaskIDPrefix + QLatin1Char('-');
    qint64 highest = 0;
    for (const Task& each : tasks) {
        if (each.customID && each.customID->startsWith(prefix)) {
            highest = std::max(highest, each.customID->mid(prefix.size()).toLongLong());
        }
    }
    return prefix + QString::number(highest + 1);
}

qint64 StoreData::storageUsed(const QString& workspaceID) const {
    qint64 used = 0;
    for (const Task& each : tasks) {
        const Workspace* owner = workspaceOfTask(each.id);
        if (owner && owner->id == workspaceID) {
            for (const Attachment& attachment : each.attachments) {
                used += attachment.size;
            }
        }
    }
    return used;
}
