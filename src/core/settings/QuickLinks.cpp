#include "core/settings/QuickLinks.h"

#include "core/support/SpacesAndTabs.h"

#include <QUrl>

namespace QuickLinks {

bool canAdd(const QString& name, const QString& address) {
    if (SpacesAndTabs::trimmed(name).isEmpty()) {
        return false;
    }
    const QUrl url(SpacesAndTabs::trimmed(address), QUrl::StrictMode);
    const QString scheme = url.scheme().toLower();
    return url.isValid() && (scheme == QLatin1String("https") || scheme == QLatin1String("http"));
}

bool add(SettingsStore& settings, const QString& name, const QString& address) {
    if (!canAdd(name, address)) {
        return false;
    }
    settings.modify([&](AppSettings& changed) {
        changed.bookmarks.append(
            Bookmark{.name = SpacesAndTabs::trimmed(name), .urlString = SpacesAndTabs::trimmed(address)});
    });
    return true;
}

void remove(SettingsStore& settings, const QUuid& id) {
    settings.modify([&](AppSettings& changed) {
        changed.bookmarks.removeIf([&](const Bookmark& bookmark) { return bookmark.id == id; });
    });
}

} // namespace QuickLinks
