#include "core/auth/AccountNavigation.h"

namespace AccountNavigation {
namespace {
QString accountKey(qint64 userID) {
    return QString::number(userID);
}

template <typename T> void storeOrRemove(QMap<QString, T>& stored, const QString& key, const std::optional<T>& value) {
    if (value) {
        stored.insert(key, *value);
    } else {
        stored.remove(key);
    }
}

template <typename T> std::optional<T> storedValue(const QMap<QString, T>& stored, const QString& key) {
    return stored.contains(key) ? std::optional(stored.value(key)) : std::nullopt;
}
} // namespace

void stash(AppSettings& settings, qint64 userID) {
    const QString key = accountKey(userID);
    storeOrRemove(settings.accountLocations, key, settings.lastLocation);
    storeOrRemove(settings.accountPreferredWorkspaceIDs, key, settings.preferredWorkspaceID);
}

void restore(AppSettings& settings, qint64 userID) {
    const QString key = accountKey(userID);
    settings.lastLocation = storedValue(settings.accountLocations, key);
    settings.preferredWorkspaceID = storedValue(settings.accountPreferredWorkspaceIDs, key);
}

void forget(AppSettings& settings, qint64 userID) {
    const QString key = accountKey(userID);
    settings.accountLocations.remove(key);
    settings.accountPreferredWorkspaceIDs.remove(key);
}

} // namespace AccountNavigation
