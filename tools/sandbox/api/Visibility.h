#pragma once

#include "sandbox/store/StoreData.h"

// What a user may see: the records of the workspaces they are a member of. Anything else is
// answered as if it did not exist.
namespace Visibility {

const Workspace* workspace(const StoreData& data, const QString& id, const User& user);
const Space* space(const StoreData& data, const QString& id, const User& user);
const TaskList* list(const StoreData& data, const QString& id, const User& user);
const Task* task(const StoreData& data, const QString& id, const User& user);

} // namespace Visibility
