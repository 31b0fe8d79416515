#pragma once

#include <QSet>
#include <QString>

// The "New tag" field of the tags chip.
namespace TagEntry {

// Adds what was typed, less the spaces and tabs around it and otherwise as typed (capitals stay),
// to the tags. False, and the tags unchanged, when nothing is left; the field is emptied on true.
bool addTag(QSet<QString>& tags, const QString& typed);

} // namespace TagEntry
