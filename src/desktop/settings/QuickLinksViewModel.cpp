#include "desktop/settings/QuickLinksViewModel.h"

#include "core/settings/QuickLinks.h"

QuickLinksViewModel::QuickLinksViewModel(SettingsStore& settings, const ServiceAddresses& addresses, QObject* parent)
    : QObject(parent)
    , m_settings(settings)
    , m_addressPlaceholder(addresses.webBaseURL.toString() + QStringLiteral("…"))
    , m_shown(settings.settings().bookmarks) {
    // The rows are made again only when the links change, so that a switch elsewhere in the window
    // keeps the keyboard.
    connect(&m_settings, &SettingsStore::settingsChanged, this, [this] {
        if (m_shown != m_settings.settings().bookmarks) {
            m_shown = m_settings.settings().bookmarks;
            emit linksChanged();
        }
    });
}

QList<QuickLink> QuickLinksViewModel::links() const {
    QList<QuickLink> links;
    for (const Bookmark& bookmark : m_shown) {
        links.append({bookmark.id.toString(QUuid::WithoutBraces), bookmark.name, bookmark.urlString});
    }
    return links;
}

void QuickLinksViewModel::setNewName(const QString& name) {
    if (m_newName != name) {
        m_newName = name;
        emit newLinkChanged();
    }
}

void QuickLinksViewModel::setNewURL(const QString& url) {
    if (m_newURL != url) {
        m_newURL = url;
        emit newLinkChanged();
    }
}

bool QuickLinksViewModel::canAdd() const {
    return QuickLinks::canAdd(m_newName, m_newURL);
}

void QuickLinksViewModel::add() {
    if (QuickLinks::add(m_settings, m_newName, m_newURL)) {
        m_newName.clear();
        m_newURL.clear();
        emit newLinkChanged();
    }
}

void QuickLinksViewModel::remove(const QString& id) {
    QuickLinks::remove(m_settings, QUuid::fromString(id));
}
