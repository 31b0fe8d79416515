#pragma once

#include "core/api/NorvaneClient.h"
#include "core/hierarchy/HierarchyStore.h"
#include "core/hierarchy/ListContext.h"
#include "core/settings/SettingsStore.h"

#include <QCoroTask>
#include <QObject>
#include <QPointer>
#include <optional>

// Which list the composer creates tasks in, and the memory of it in the settings: the last
// location, restored at start, and the preferred workspace. Main thread only.
class LocationMemory : public QObject {
    Q_OBJECT
    Q_PROPERTY(ListContext* currentContext READ currentContext NOTIFY currentContextChanged)

public:
    // Everything given must outlive this object.
    LocationMemory(SettingsStore& settings, HierarchyStore& hierarchy, const NorvaneClient& client,
                   QObject* parent = nullptr);

    // The tree the lists are chosen from.
    HierarchyStore& hierarchy() const { return m_hierarchy; }
    // The chosen list with what is known of it; null before a selection.
    ListContext* currentContext() const { return m_currentContext; }
    // The workspace to show: the current list's, else the preferred one, else the last location's,
    // else the first known one. activeWorkspaceIDChanged tells each change, from whichever source.
    std::optional<QString> activeWorkspaceID() const;

    // Aims the composer at a list and remembers it as the last location. Another list is told
    // (otherListSelected) and gets a new context, loaded in the background; the same list keeps its
    // context.
    void selectLocation(const ListEntry& entry);
    // Selects the remembered list once its workspace's entries are known. A workspace that is gone
    // leaves the memory as it is; a list that is gone leaves its workspace preferred.
    QCoro::Task<> restoreLastLocation();
    // Forgets the current list and everything loaded of the tree, when the account changes.
    void forgetHierarchy();

signals:
    // Another list than the current one was chosen, so what the composer set for the old list no
    // longer applies. Told before the new list's context takes over.
    void otherListSelected();
    void currentContextChanged();
    void activeWorkspaceIDChanged();

private:
    void setCurrentContext(ListContext* context);
    void updateActiveWorkspaceID();

    SettingsStore& m_settings;
    HierarchyStore& m_hierarchy;
    const NorvaneClient& m_client;
    QPointer<ListContext> m_currentContext;
    // As last told.
    std::optional<QString> m_activeWorkspaceID;
};
