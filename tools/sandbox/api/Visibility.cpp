#include "sandbox/api/Visibility.h"

namespace Visibility {

const Workspace* workspace(const StoreData& data, const QString& id, const User& user) {
    const Workspace* found = data.workspace(id);
    return data.isMember(found, user.id) ? found : nullptr;
}

const Space* space(const StoreData& data, const QString& id, const User& user) {
    return data.isMember(data.workspaceOfSpace(id), user.id) ? data.space(id) : nullptr;
}

const TaskList* list(const StoreData& data, const QString& id, const User& user) {
    return data.isMember(data.workspaceOfList(id), user.id) ? data.list(id) : nullptr;
}

const Task* task(const StoreData& data, const QString& id, const User& user) {
    return data.isMember(data.workspaceOfTask(id), user.id) ? data.task(id) : nullptr;
}

} // namespace Visibility
