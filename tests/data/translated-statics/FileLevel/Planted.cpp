// Planted for the check of translated statics: a table of texts translated once, when the file's
// statics are made, before any catalogue is installed.
#include <QCoreApplication>
#include <QStringList>

namespace {
const QString format = QStringLiteral("yyyy-MM-dd");

static const QStringList labels{
    QCoreApplication::translate("Labels", "First"),
    QCoreApplication::translate("Labels", "Second"),
};
} // namespace

QString label(int index) {
    return labels.value(index);
}
