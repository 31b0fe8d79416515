#include "support/SpacesAndTabs.h"

QString trimmedOfSpacesAndTabs(const QString& text) {
    const auto blank = [](QChar character) { return character == u' ' || character == u'\t'; };
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
