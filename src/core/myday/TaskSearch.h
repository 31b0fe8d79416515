#pragma once

#include "core/api/TaskRecords.h"

#include <QString>
#include <QStringList>

// Searching what My Day has loaded: a query becomes tokens, and a task matches when its text holds
// every token, without regard to case, accents, word order or word boundaries.
namespace TaskSearch {

// Folded for comparison: case-insensitive and diacritic-insensitive.
QString fold(const QString& text);

// The query trimmed, folded and split at white space, empty pieces dropped.
QStringList normalizedTokens(const QString& query);

// The folded text a task is searched in: name, id, list name, status, and the assignees' labels
// joined by blanks, one per line, an absent one empty.
QString searchText(const NVTaskSummary& task);

// Whether every token stands in the folded text.
bool matchesTokens(const QString& foldedText, const QStringList& tokens);
inline bool matchesSearchQuery(const NVTaskSummary& task, const QStringList& tokens) {
    return matchesTokens(searchText(task), tokens);
}

} // namespace TaskSearch
