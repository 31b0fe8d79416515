#include "settings/QuickLinks.h"

#include <QUrl>

namespace {
// Spaces and tabs only: a newline inside the address is kept and makes it invalid.
QString trimmed(const QString& text) {
    const auto blank = [](QChar character) { return character == u' ' || character == u'\t'; };
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && blank(text.at(begin))) {
        ++begin;
    }
    while (end > begin && blank(text.at(end - 1))) {
        --end;
    }
    return text.mid(begin, end - begin);
}
} // namespace

namespace QuickLinks {

bool canAdd(const QString& name, const QString& address) {
    if (trimmed(name).isEmpty()) {
        return false;
    }
    const QUrl url(trimmed(address), QUrl::StrictMode);
    const QString scheme = url.scheme().toLower();
    return url.isValid() && (scheme == QLatin1String("https") || scheme == QLatin1String("http"));
}

bool add(SettingsStore& settings, const QString& name, const QString& address) {
    if (!canAdd(name, address)) {
        return false;
    }
    settings.modify([&](AppSettings& changed) {
        changed.bookmarks.append(Bookmark{.name = trimmed(name), .urlString = trimmed(address)});
    });
    return true;
}

void remove(SettingsStore& settings, const QUuid& id) {
    settings.modify([&](AppSettings& changed) {
        changed.bookmarks.removeIf([&](const Bookmark& bookmark) { return bookmark.id == id; });
    });
}

} // namespace QuickLinks
