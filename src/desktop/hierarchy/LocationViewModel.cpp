#include "hierarchy/LocationViewModel.h"

#include "async/StartTask.h"

LocationViewModel::LocationViewModel(LocationMemory& location, const AuthController& auth, QObject* parent)
    : QObject(parent)
    , m_location(location)
    , m_auth(auth) {
    connect(&location, &LocationMemory::currentContextChanged, this, &LocationViewModel::changed);
    connect(&location.hierarchy(), &HierarchyStore::entriesByWorkspaceChanged, this, &LocationViewModel::changed);
}

QList<ListEntry> LocationViewModel::entries() const {
    const std::optional<QString> workspaceID = m_location.activeWorkspaceID();
    return workspaceID ? m_location.hierarchy().entriesByWorkspace().value(*workspaceID) : QList<ListEntry>();
}

QStringList LocationViewModel::entryTitles() const {
    QStringList titles;
    for (const ListEntry& entry : entries()) {
        QStringList path{entry.spaceName};
        if (entry.folderName) {
            path.append(*entry.folderName);
        }
        path.append(entry.list.name);
        titles.append(path.join(QStringLiteral(" › ")));
    }
    return titles;
}

int LocationViewModel::currentIndex() const {
    const ListContext* context = m_location.currentContext();
    if (!context) {
        return -1;
    }
    const QList<ListEntry> all = entries();
    for (qsizetype i = 0; i < all.size(); ++i) {
        if (all.at(i).id() == context->entry().id()) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

QString LocationViewModel::locationTitle() const {
    const ListContext* context = m_location.currentContext();
    return context ? context->entry().list.name : tr("Choose workspace and list…");
}

void LocationViewModel::select(int index) {
    const QList<ListEntry> all = entries();
    if (index >= 0 && index < all.size()) {
        m_location.selectLocation(all.at(index));
    }
}

void LocationViewModel::loadEntries() {
    const std::optional<QString> workspaceID = m_location.activeWorkspaceID();
    if (m_auth.authState().is<AuthState::SignedIn>() && workspaceID) {
        startTask(this, m_location.hierarchy().loadEntries(*workspaceID, false));
    }
}
