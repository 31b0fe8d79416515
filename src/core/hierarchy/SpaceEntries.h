#pragma once

#include "core/api/NorvaneClient.h"
#include "core/hierarchy/ListEntry.h"

#include <QCoroTask>
#include <QList>

// The reads behind one workspace's entries, apart from the store that keeps them.
namespace SpaceEntries {

// Every list of the workspace's spaces, space after space. The client must outlive the call.
QCoro::Task<QList<ListEntry>> ofWorkspace(const NorvaneClient& client, QString workspaceID);

// The entries of one space: its folders and its folderless lists are read side by side; when one
// read fails, the other's request is aborted and awaited before the failure goes on.
QCoro::Task<QList<ListEntry>> ofSpace(const NorvaneClient& client, QString workspaceID, Space space);

} // namespace SpaceEntries
