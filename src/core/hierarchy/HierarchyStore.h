#pragma once

#include "core/api/HierarchyRecords.h"
#include "core/api/NorvaneClient.h"
#include "core/hierarchy/ListEntry.h"

#include <QCoroTask>
#include <QHash>
#include <QObject>
#include <QSet>
#include <optional>

// The cache of what the signed-in account sees of the service's tree: its workspaces, and for each
// loaded workspace one flat list of entries, in the service's order, folderless lists of a space
// before its folders. Nothing is persisted and nothing expires. Main thread only.
class HierarchyStore : public QObject {
    Q_OBJECT
    Q_PROPERTY(QList<Workspace> workspaces READ workspaces WRITE setWorkspaces NOTIFY workspacesChanged)
    Q_PROPERTY(EntriesByWorkspace entriesByWorkspace READ entriesByWorkspace WRITE setEntriesByWorkspace NOTIFY
                   entriesByWorkspaceChanged)
    Q_PROPERTY(bool isLoadingWorkspaces READ isLoadingWorkspaces NOTIFY isLoadingWorkspacesChanged)
    Q_PROPERTY(QSet<QString> loadingLists READ loadingLists NOTIFY loadingListsChanged)
    Q_PROPERTY(std::optional<QString> lastError READ lastError NOTIFY lastErrorChanged)

public:
    // A key that is present, even with no entries, marks its workspace as loaded.
    using EntriesByWorkspace = QHash<QString, QList<ListEntry>>;

    // The client must outlive the store.
    explicit HierarchyStore(const NorvaneClient& client, QObject* parent = nullptr);

    const QList<Workspace>& workspaces() const { return m_workspaces; }
    void setWorkspaces(const QList<Workspace>& workspaces);
    const EntriesByWorkspace& entriesByWorkspace() const { return m_entriesByWorkspace; }
    void setEntriesByWorkspace(const EntriesByWorkspace& entries);
    bool isLoadingWorkspaces() const { return m_isLoadingWorkspaces; }
    // The ids of the workspaces whose entries are being fetched.
    const QSet<QString>& loadingLists() const { return m_loadingLists; }
    // The description of the last failure of either load; cleared when a load starts.
    const std::optional<QString>& lastError() const { return m_lastError; }

    // Fetches the workspaces unless some are known and `force` is false. A call while a load runs
    // is dropped, forced or not.
    QCoro::Task<> loadWorkspaces(bool force);
    // Fetches the entries of one workspace unless it is loaded and `force` is false, space after
    // space with the folders and the folderless lists of each read side by side. A call while the
    // same workspace loads is dropped. All or nothing: after a failure the workspace keeps what it
    // had before.
    QCoro::Task<> loadEntries(QString workspaceID, bool force);
    // The first cached entry of the list, in any loaded workspace.
    std::optional<ListEntry> entry(const QString& listID) const;

signals:
    void workspacesChanged();
    void entriesByWorkspaceChanged();
    void isLoadingWorkspacesChanged();
    void loadingListsChanged();
    void lastErrorChanged();

private:
    void setLoadingWorkspaces(bool loading);
    void setLoadingList(const QString& workspaceID, bool loading);
    void setLastError(const std::optional<QString>& error);

    const NorvaneClient& m_client;
    QList<Workspace> m_workspaces;
    EntriesByWorkspace m_entriesByWorkspace;
    bool m_isLoadingWorkspaces = false;
    QSet<QString> m_loadingLists;
    std::optional<QString> m_lastError;
};
