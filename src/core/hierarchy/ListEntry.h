#pragma once

#include "core/api/FieldRecords.h"
#include "core/api/HierarchyRecords.h"

#include <QList>
#include <QString>
#include <optional>

// One list a task can be created in, with its place in the tree. Its identity is the list's id;
// equality covers every field, the whole list and every status included.
struct ListEntry {
    QString workspaceID;
    QString spaceID;
    QString spaceName;
    // Absent, with folderName, for a list that stands directly in a space.
    std::optional<QString> folderID;
    std::optional<QString> folderName;
    NVList list;
    // The statuses of the enclosing space; empty when the space carries none.
    QList<NVStatus> spaceStatuses;

    const QString& id() const { return list.id; }
    // Where the list stands: the space's name, then " › " and the folder's name when it has one.
    QString path() const { return folderName ? spaceName + QStringLiteral(" › ") + *folderName : spaceName; }
    bool operator==(const ListEntry&) const = default;
};
