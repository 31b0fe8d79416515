#pragma once

#include "core/hierarchy/HierarchyStore.h"
#include "core/hierarchy/ListEntry.h"
#include "core/hierarchy/LocationMemory.h"
#include "core/settings/SettingsStore.h"

#include <QCoroTask>
#include <QObject>
#include <QString>
#include <QUrl>
#include <optional>

// The state of the location picker: the workspace it shows, the search over that workspace's
// lists, what stands in its place while nothing can be listed, and the star of each list. The
// picker is shown between appear() and disappear(); only then does it follow the workspace list.
// Main thread only.
class LocationPickerModel : public QObject {
    Q_OBJECT

public:
    // What the picker shows below its header, in this order of precedence.
    enum class Content { loading, failed, noMatch, empty, rows };

    // The stores must outlive this object. `webBaseURL` is the service's address in the browser.
    LocationPickerModel(SettingsStore& settings, LocationMemory& location, QUrl webBaseURL, QObject* parent = nullptr);

    HierarchyStore& hierarchy() const { return m_location.hierarchy(); }

    const std::optional<QString>& workspaceID() const { return m_workspaceID; }
    // A workspace becomes the preferred one and its lists are loaded unless known; absent writes
    // nothing.
    void setWorkspaceID(const std::optional<QString>& workspaceID);
    const QString& searchText() const { return m_searchText; }
    void setSearchText(const QString& text);
    // The search text trimmed of spaces and tabs (not of line breaks), lower-cased.
    QString query() const;

    // The shown workspace's lists by space, folder (none first) and name, in plain case-sensitive
    // order; the sort is stable, so equal names keep the store's order. A query keeps the lists
    // whose name or path contains it; a list's id is never searched.
    QList<ListEntry> filteredEntries() const;
    // Whether the shown workspace's lists are being fetched.
    bool isLoading() const;
    Content content() const;

    // The list's address in the browser, which its bookmark holds.
    QString bookmarkAddress(const ListEntry& entry) const;
    bool isBookmarked(const ListEntry& entry) const;
    // Removes every bookmark of the list's address, or adds one; does nothing when the address is
    // no URL.
    void toggleBookmark(const ListEntry& entry);

    // The picker opens: the search starts empty and the workspace is chosen afresh, the current
    // list's first, then the preferred, the last location's, and the first one known.
    void appear();
    void disappear() { m_shown = false; }
    // The refresh button and "Try again": the workspaces and the shown workspace's lists fetched
    // again, also when known.
    QCoro::Task<> refresh();

signals:
    void workspaceIDChanged();
    void searchTextChanged();
    // filteredEntries(), isLoading() or content() may differ.
    void entriesChanged();
    void bookmarksChanged();

private:
    QCoro::Task<> loadWorkspaces();
    // The workspace list changed: a workspace that is no longer in it gives way to the first.
    void followWorkspaces();

    SettingsStore& m_settings;
    LocationMemory& m_location;
    const QUrl m_webBaseURL;
    std::optional<QString> m_workspaceID;
    QString m_searchText;
    bool m_shown = false;
};
