#include "core/compose/TagEntry.h"

#include "core/support/SpacesAndTabs.h"

namespace TagEntry {

bool addTag(QSet<QString>& tags, const QString& typed) {
    const QString tag = SpacesAndTabs::trimmed(typed);
    if (tag.isEmpty()) {
        return false;
    }
    tags.insert(tag);
    return true;
}

} // namespace TagEntry
