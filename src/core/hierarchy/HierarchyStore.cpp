#include "core/hierarchy/HierarchyStore.h"

#include "core/api/Endpoints.h"
#include "core/async/LoadGuard.h"
#include "core/hierarchy/SpaceEntries.h"

namespace {
// The user-facing text of a failed load; the client fails with NVError alone.
QString describe(const std::exception& error) {
    if (const auto* serviceError = dynamic_cast<const NVError*>(&error)) {
        return serviceError->errorDescription();
    }
    return QString::fromUtf8(error.what());
}
} // namespace

HierarchyStore::HierarchyStore(const NorvaneClient& client, QObject* parent)
    : QObject(parent)
    , m_client(client) {}

void HierarchyStore::setWorkspaces(const QList<Workspace>& workspaces) {
    if (m_workspaces == workspaces) {
        return;
    }
    m_workspaces = workspaces;
    emit workspacesChanged();
}

void HierarchyStore::setEntriesByWorkspace(const EntriesByWorkspace& entries) {
    if (m_entriesByWorkspace == entries) {
        return;
    }
    m_entriesByWorkspace = entries;
    emit entriesByWorkspaceChanged();
}

void HierarchyStore::setLoadingWorkspaces(bool loading) {
    if (m_isLoadingWorkspaces == loading) {
        return;
    }
    m_isLoadingWorkspaces = loading;
    emit isLoadingWorkspacesChanged();
}

void HierarchyStore::setLoadingList(const QString& workspaceID, bool loading) {
    if (m_loadingLists.contains(workspaceID) == loading) {
        return;
    }
    if (loading) {
        m_loadingLists.insert(workspaceID);
    } else {
        m_loadingLists.remove(workspaceID);
    }
    emit loadingListsChanged();
}

void HierarchyStore::setLastError(const std::optional<QString>& error) {
    if (m_lastError == error) {
        return;
    }
    m_lastError = error;
    emit lastErrorChanged();
}

QCoro::Task<> HierarchyStore::loadWorkspaces(bool force) {
    if ((!force && !m_workspaces.isEmpty()) || m_isLoadingWorkspaces) {
        co_return;
    }
    setLoadingWorkspaces(true);
    setLastError(std::nullopt);
    QCoro::Task<std::optional<TeamsResponse>> request =
        awaitGuarded(LoadGuard(this), Endpoints::getWorkspaces(m_client));
    try {
        const std::optional<TeamsResponse> answer = co_await std::move(request);
        if (!answer) {
            co_return;
        }
        setWorkspaces(answer->teams);
    } catch (const std::exception& error) {
        setLastError(describe(error));
    }
    setLoadingWorkspaces(false);
}

QCoro::Task<> HierarchyStore::loadEntries(QString workspaceID, bool force) {
    if ((!force && m_entriesByWorkspace.contains(workspaceID)) || m_loadingLists.contains(workspaceID)) {
        co_return;
    }
    setLoadingList(workspaceID, true);
    setLastError(std::nullopt);
    QCoro::Task<std::optional<QList<ListEntry>>> walk =
        awaitGuarded(LoadGuard(this), SpaceEntries::ofWorkspace(m_client, workspaceID));
    try {
        const std::optional<QList<ListEntry>> entries = co_await std::move(walk);
        if (!entries) {
            co_return;
        }
        EntriesByWorkspace changed = m_entriesByWorkspace;
        changed.insert(workspaceID, *entries);
        setEntriesByWorkspace(changed);
    } catch (const std::exception& error) {
        setLastError(describe(error));
    }
    setLoadingList(workspaceID, false);
}

std::optional<ListEntry> HierarchyStore::entry(const QString& listID) const {
    for (const QList<ListEntry>& entries : m_entriesByWorkspace) {
        for (const ListEntry& entry : entries) {
            if (entry.list.id == listID) {
                return entry;
            }
        }
    }
    return std::nullopt;
}
