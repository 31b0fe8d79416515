#include "core/hierarchy/LocationMemory.h"

#include "core/async/LoadGuard.h"
#include "core/async/StartTask.h"

#include <algorithm>

LocationMemory::LocationMemory(SettingsStore& settings, HierarchyStore& hierarchy, const NorvaneClient& client,
                               QObject* parent)
    : QObject(parent)
    , m_settings(settings)
    , m_hierarchy(hierarchy)
    , m_client(client)
    , m_activeWorkspaceID(activeWorkspaceID()) {
    connect(&m_settings, &SettingsStore::settingsChanged, this, &LocationMemory::updateActiveWorkspaceID);
    connect(&m_hierarchy, &HierarchyStore::workspacesChanged, this, &LocationMemory::updateActiveWorkspaceID);
    connect(this, &LocationMemory::currentContextChanged, this, &LocationMemory::updateActiveWorkspaceID);
}

std::optional<QString> LocationMemory::activeWorkspaceID() const {
    if (m_currentContext) {
        return m_currentContext->entry().workspaceID;
    }
    const AppSettings& settings = m_settings.settings();
    if (settings.preferredWorkspaceID) {
        return settings.preferredWorkspaceID;
    }
    if (settings.lastLocation) {
        return settings.lastLocation->workspaceID;
    }
    if (!m_hierarchy.workspaces().isEmpty()) {
        return m_hierarchy.workspaces().constFirst().id;
    }
    return std::nullopt;
}

QCoro::Task<> LocationMemory::restoreLastLocation() {
    const std::optional<SavedLocation> location = m_settings.settings().lastLocation;
    if (!location) {
        co_return;
    }
    const QList<Workspace>& workspaces = m_hierarchy.workspaces();
    if (std::none_of(workspaces.begin(), workspaces.end(),
                     [&location](const Workspace& workspace) { return workspace.id == location->workspaceID; })) {
        // The workspace is gone, perhaps for now: the location stays for when it comes back.
        co_return;
    }
    QCoro::Task<bool> entriesLoad =
        awaitGuarded(LoadGuard(this), m_hierarchy.loadEntries(location->workspaceID, false));
    if (!co_await std::move(entriesLoad)) {
        co_return;
    }
    if (const std::optional<ListEntry> entry = m_hierarchy.entry(location->listID)) {
        selectLocation(*entry);
    } else {
        m_settings.set(&AppSettings::preferredWorkspaceID, location->workspaceID);
    }
}

void LocationMemory::selectLocation(const ListEntry& entry) {
    const bool sameList = m_currentContext && m_currentContext->entry().list.id == entry.list.id;
    m_settings.modify([&entry](AppSettings& changed) {
        changed.preferredWorkspaceID = entry.workspaceID;
        changed.lastLocation = SavedLocation{entry.workspaceID, entry.list.id, entry.list.name, entry.path()};
    });
    if (sameList) {
        return;
    }
    emit otherListSelected();
    auto* context = new ListContext(entry, this);
    setCurrentContext(context);
    // A newer selection leaves the load to finish on its own context, unseen.
    startTask(context, context->load(m_client));
}

void LocationMemory::setCurrentContext(ListContext* context) {
    if (m_currentContext == context) {
        return;
    }
    if (m_currentContext) {
        m_currentContext->deleteLater();
    }
    m_currentContext = context;
    emit currentContextChanged();
}

void LocationMemory::updateActiveWorkspaceID() {
    std::optional<QString> workspaceID = activeWorkspaceID();
    if (workspaceID == m_activeWorkspaceID) {
        return;
    }
    m_activeWorkspaceID = std::move(workspaceID);
    emit activeWorkspaceIDChanged();
}

void LocationMemory::forgetHierarchy() {
    setCurrentContext(nullptr);
    m_hierarchy.setWorkspaces({});
    m_hierarchy.setEntriesByWorkspace({});
}
