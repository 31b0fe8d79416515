// Planted for the check of translated statics, which passes it: the statics keep source texts only,
// marked for lupdate, and each is translated where it is shown.
#include <QCoreApplication>
#include <array>

namespace {
static constexpr std::array labels{QT_TRANSLATE_NOOP("Labels", "First"), QT_TRANSLATE_NOOP("Labels", "Second")};
static const char* const title = QT_TR_NOOP("Title");
} // namespace

QString label(int index) {
    static const QString separator = QStringLiteral(": ");
    return QCoreApplication::translate("Labels", labels.at(index)) + separator +
           QCoreApplication::translate("Labels", title);
}

static QString shown(const char* text) {
    return QCoreApplication::translate("Labels", text);
}
