#pragma once

#include "core/json/JsonDecoding.h"

#include <QHashFunctions>
#include <QJsonObject>
#include <QString>

// A list the composer was pointed at, remembered across launches.
struct SavedLocation {
    QString workspaceID;
    QString listID;
    QString listName;
    // The space name, and " › " and the folder name if the list stands in a folder.
    QString pathDescription;

    static SavedLocation fromJson(const Json::JsonObject& json);
    QJsonObject toJson() const;

    bool operator==(const SavedLocation&) const = default;
};

inline size_t qHash(const SavedLocation& location, size_t seed = 0) noexcept {
    return qHashMulti(seed, location.workspaceID, location.listID, location.listName, location.pathDescription);
}
