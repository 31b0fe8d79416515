#include "core/support/SpacesAndTabs.h"

namespace SpacesAndTabs {

QString trimmed(const QString& text) {
    const auto blank = [](QChar c) { return c == u' ' || c == u'\t'; };
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && blank(text.at(begin))) {
        ++begin;
    }
    while (end > begin && blank(text.at(end - 1))) {
        --end;
    }
    return text.sliced(begin, end - begin);
}

} // namespace SpacesAndTabs
