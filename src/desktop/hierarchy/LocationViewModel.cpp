#include "hierarchy/LocationViewModel.h"

LocationViewModel::LocationViewModel(AppState& app, QObject* parent)
    : QObject(parent)
    , m_app(app) {
    connect(&app, &AppState::currentContextChanged, this, &LocationViewModel::changed);
    connect(&app.hierarchy(), &HierarchyStore::entriesByWorkspaceChanged, this, &LocationViewModel::changed);
}

QList<ListEntry> LocationViewModel::entries() const {
    const std::optional<QString> workspaceID = m_app.activeWorkspaceID();
    return workspaceID ? m_app.hierarchy().entriesByWorkspace().value(*workspaceID) : QList<ListEntry>();
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
    const ListContext* context = m_app.currentContext();
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
    const ListContext* context = m_app.currentContext();
    return context ? context->entry().list.name : tr("Choose workspace and list…");
}

void LocationViewModel::select(int index) {
    const QList<ListEntry> all = entries();
    if (index >= 0 && index < all.size()) {
        m_app.selectLocation(all.at(index));
    }
}

void LocationViewModel::loadEntries() {
    const std::optional<QString> workspaceID = m_app.activeWorkspaceID();
    if (m_app.authState().is<AuthState::SignedIn>() && workspaceID) {
        QCoro::connect(m_app.hierarchy().loadEntries(*workspaceID, false), this, [] {});
    }
}
