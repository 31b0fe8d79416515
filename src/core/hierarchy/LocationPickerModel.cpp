#include "core/hierarchy/LocationPickerModel.h"

#include "core/async/LoadGuard.h"
#include "core/async/StartTask.h"
#include "core/support/SpacesAndTabs.h"

#include <algorithm>

namespace {

// Plain string order, by space, folder (none counts as empty) and list name.
bool sortsBefore(const ListEntry& left, const ListEntry& right) {
    if (const int space = QString::compare(left.spaceName, right.spaceName); space != 0) {
        return space < 0;
    }
    if (const int folder = QString::compare(left.folderName.value_or(QString()), right.folderName.value_or(QString()));
        folder != 0) {
        return folder < 0;
    }
    return QString::compare(left.list.name, right.list.name) < 0;
}

} // namespace

LocationPickerModel::LocationPickerModel(SettingsStore& settings, LocationMemory& location, QUrl webBaseURL,
                                         QObject* parent)
    : QObject(parent)
    , m_settings(settings)
    , m_location(location)
    , m_webBaseURL(std::move(webBaseURL)) {
    HierarchyStore& store = location.hierarchy();
    connect(&store, &HierarchyStore::workspacesChanged, this, &LocationPickerModel::followWorkspaces);
    for (const auto change : {&HierarchyStore::entriesByWorkspaceChanged, &HierarchyStore::loadingListsChanged,
                              &HierarchyStore::lastErrorChanged}) {
        connect(&store, change, this, &LocationPickerModel::entriesChanged);
    }
    connect(&settings, &SettingsStore::settingsChanged, this, &LocationPickerModel::bookmarksChanged);
}

void LocationPickerModel::setWorkspaceID(const std::optional<QString>& workspaceID) {
    if (m_workspaceID == workspaceID) {
        return;
    }
    m_workspaceID = workspaceID;
    emit workspaceIDChanged();
    emit entriesChanged();
    if (workspaceID) {
        m_settings.set(&AppSettings::preferredWorkspaceID, *workspaceID);
        startTask(this, hierarchy().loadEntries(*workspaceID, false));
    }
}

void LocationPickerModel::setSearchText(const QString& text) {
    if (m_searchText == text) {
        return;
    }
    m_searchText = text;
    emit searchTextChanged();
    emit entriesChanged();
}

QString LocationPickerModel::query() const {
    return SpacesAndTabs::trimmed(m_searchText).toLower();
}

QList<ListEntry> LocationPickerModel::filteredEntries() const {
    if (!m_workspaceID) {
        return {};
    }
    QList<ListEntry> entries = hierarchy().entriesByWorkspace().value(*m_workspaceID);
    std::stable_sort(entries.begin(), entries.end(), sortsBefore);
    const QString wanted = query();
    if (wanted.isEmpty()) {
        return entries;
    }
    entries.removeIf([&wanted](const ListEntry& entry) {
        return !entry.list.name.toLower().contains(wanted) && !entry.path().toLower().contains(wanted);
    });
    return entries;
}

bool LocationPickerModel::isLoading() const {
    return m_workspaceID && hierarchy().loadingLists().contains(*m_workspaceID);
}

LocationPickerModel::Content LocationPickerModel::content() const {
    // "No entries" is said of what the search leaves: a search with no match during a load shows
    // the load, and after a failure the failure.
    if (!filteredEntries().isEmpty()) {
        return Content::rows;
    }
    if (isLoading()) {
        return Content::loading;
    }
    if (hierarchy().lastError()) {
        return Content::failed;
    }
    return query().isEmpty() ? Content::empty : Content::noMatch;
}

QString LocationPickerModel::bookmarkAddress(const ListEntry& entry) const {
    return m_webBaseURL.toString(QUrl::StripTrailingSlash) + u'/' + entry.workspaceID + QStringLiteral("/v/l/li/") +
           entry.list.id;
}

bool LocationPickerModel::isBookmarked(const ListEntry& entry) const {
    const QString address = bookmarkAddress(entry);
    const QList<Bookmark>& bookmarks = m_settings.settings().bookmarks;
    return std::any_of(bookmarks.begin(), bookmarks.end(),
                       [&address](const Bookmark& bookmark) { return bookmark.urlString == address; });
}

void LocationPickerModel::toggleBookmark(const ListEntry& entry) {
    const QString address = bookmarkAddress(entry);
    const QUrl url(address, QUrl::StrictMode);
    if (!url.isValid() || url.scheme().isEmpty() || url.host().isEmpty()) {
        return;
    }
    const bool bookmarked = isBookmarked(entry);
    m_settings.modify([&address, &entry, bookmarked](AppSettings& settings) {
        if (bookmarked) {
            settings.bookmarks.removeIf([&address](const Bookmark& bookmark) { return bookmark.urlString == address; });
        } else {
            settings.bookmarks.append(Bookmark{.name = entry.list.name, .urlString = address});
        }
    });
}

void LocationPickerModel::appear() {
    m_shown = true;
    setSearchText(QString());
    // Each appearance chooses anew, and the choice counts as a change.
    setWorkspaceID(std::nullopt);
    setWorkspaceID(m_location.activeWorkspaceID());
    startTask(this, loadWorkspaces());
}

QCoro::Task<> LocationPickerModel::loadWorkspaces() {
    QCoro::Task<bool> load = awaitGuarded(LoadGuard(this), hierarchy().loadWorkspaces(false));
    // A preferred workspace of another account gives way as soon as the workspaces are known, also
    // when they were known before the picker appeared.
    if (co_await std::move(load) && m_shown && (!m_workspaceID || !hierarchy().workspaces().isEmpty())) {
        followWorkspaces();
    }
}

void LocationPickerModel::followWorkspaces() {
    if (!m_shown) {
        return;
    }
    const QList<Workspace>& workspaces = hierarchy().workspaces();
    if (m_workspaceID && std::any_of(workspaces.begin(), workspaces.end(),
                                     [this](const Workspace& workspace) { return workspace.id == *m_workspaceID; })) {
        return;
    }
    setWorkspaceID(workspaces.isEmpty() ? std::nullopt : std::optional(workspaces.constFirst().id));
}

QCoro::Task<> LocationPickerModel::refresh() {
    QCoro::Task<bool> workspaces = awaitGuarded(LoadGuard(this), hierarchy().loadWorkspaces(true));
    if (co_await std::move(workspaces) && m_workspaceID) {
        QCoro::Task<> entries = hierarchy().loadEntries(*m_workspaceID, true);
        co_await std::move(entries);
    }
}
