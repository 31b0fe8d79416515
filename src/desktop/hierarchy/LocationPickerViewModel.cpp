#include "desktop/hierarchy/LocationPickerViewModel.h"

#include "core/async/StartTask.h"

LocationPickerViewModel::LocationPickerViewModel(SettingsStore& settings, LocationMemory& location,
                                                 const QUrl& webBaseURL, OnSelect onSelect, QObject* parent)
    : QObject(parent)
    , m_location(location)
    , m_model(settings, location, webBaseURL)
    , m_onSelect(std::move(onSelect)) {
    connect(&location, &LocationMemory::currentContextChanged, this, &LocationPickerViewModel::selectedListIDChanged);
    connect(&m_model, &LocationPickerModel::searchTextChanged, this, &LocationPickerViewModel::searchTextChanged);
    connect(&m_model, &LocationPickerModel::workspaceIDChanged, this, &LocationPickerViewModel::workspacesChanged);
    connect(&location.hierarchy(), &HierarchyStore::workspacesChanged, this,
            &LocationPickerViewModel::workspacesChanged);
    connect(&m_model, &LocationPickerModel::entriesChanged, this, [this] {
        m_rows.setEntries(m_model.filteredEntries());
        emit contentChanged();
        emit bookmarksChanged();
    });
    connect(&m_model, &LocationPickerModel::bookmarksChanged, this, &LocationPickerViewModel::bookmarksChanged);
}

QString LocationPickerViewModel::locationTitle() const {
    const ListContext* context = m_location.currentContext();
    return context ? context->entry().list.name : tr("Choose workspace and list…");
}

QString LocationPickerViewModel::selectedListID() const {
    if (m_onSelect) {
        return m_selectedListID;
    }
    const ListContext* context = m_location.currentContext();
    return context ? context->entry().id() : QString();
}

void LocationPickerViewModel::setSelectedListID(const QString& listID) {
    if (m_selectedListID != listID) {
        m_selectedListID = listID;
        emit selectedListIDChanged();
    }
}

QStringList LocationPickerViewModel::workspaceNames() const {
    QStringList names;
    for (const Workspace& workspace : m_location.hierarchy().workspaces()) {
        names.append(workspace.name);
    }
    return names;
}

int LocationPickerViewModel::workspaceIndex() const {
    const QList<Workspace>& workspaces = m_location.hierarchy().workspaces();
    for (qsizetype index = 0; index < workspaces.size(); ++index) {
        if (workspaces.at(index).id == m_model.workspaceID()) {
            return static_cast<int>(index);
        }
    }
    return -1;
}

LocationPickerViewModel::Content LocationPickerViewModel::content() const {
    switch (m_model.content()) {
    case LocationPickerModel::Content::loading:
        return Loading;
    case LocationPickerModel::Content::failed:
        return Failed;
    case LocationPickerModel::Content::noMatch:
        return NoMatch;
    case LocationPickerModel::Content::empty:
        return Empty;
    case LocationPickerModel::Content::rows:
        break;
    }
    return Rows;
}

QString LocationPickerViewModel::errorMessage() const {
    return m_location.hierarchy().lastError().value_or(QString());
}

QString LocationPickerViewModel::noMatchTitle() const {
    return tr("No lists match “%1”").arg(m_model.query());
}

QStringList LocationPickerViewModel::bookmarkedListIDs() const {
    QStringList ids;
    for (const ListEntry& entry : m_rows.entries()) {
        if (m_model.isBookmarked(entry)) {
            ids.append(entry.id());
        }
    }
    return ids;
}

void LocationPickerViewModel::chooseWorkspace(int index) {
    const QList<Workspace>& workspaces = m_location.hierarchy().workspaces();
    if (index >= 0 && index < workspaces.size()) {
        m_model.setWorkspaceID(workspaces.at(index).id);
    }
}

void LocationPickerViewModel::refresh() {
    startTask(this, m_model.refresh());
}

const ListEntry* LocationPickerViewModel::entryAt(int row) const {
    return row >= 0 && row < m_rows.entries().size() ? &m_rows.entries().at(row) : nullptr;
}

void LocationPickerViewModel::choose(int row) {
    const ListEntry* entry = entryAt(row);
    if (!entry) {
        return;
    }
    // A copy: the choice may change the rows.
    const ListEntry choice = *entry;
    if (m_onSelect) {
        m_onSelect(choice);
    } else {
        m_location.selectLocation(choice);
    }
    emit chosen();
}

void LocationPickerViewModel::toggleBookmark(int row) {
    if (const ListEntry* entry = entryAt(row)) {
        m_model.toggleBookmark(*entry);
    }
}

int LocationPickerViewModel::rowOf(const QString& listID) const {
    const QList<ListEntry>& entries = m_rows.entries();
    for (qsizetype row = 0; row < entries.size(); ++row) {
        if (entries.at(row).id() == listID) {
            return static_cast<int>(row);
        }
    }
    return -1;
}
