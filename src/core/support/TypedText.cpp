#include "support/TypedText.h"

namespace {
bool isSpaceOrTab(QChar character) {
    return character == u' ' || character == u'\t';
}
} // namespace

QString TypedText::trimmedOfSpacesAndTabs(const QString& text) {
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && isSpaceOrTab(text.at(begin))) {
        ++begin;
    }
    while (end > begin && isSpaceOrTab(text.at(end - 1))) {
        --end;
    }
    return text.sliced(begin, end - begin);
}
