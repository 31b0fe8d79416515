#include "core/support/DoubleText.h"

#include <QLocale>
#include <clocale>
#include <cmath>
#include <cstdlib>

namespace DoubleText {
namespace {
// strtod follows the process's locale, which Qt sets from the environment; strtod_l with the C
// locale reads "1.5" as one and a half everywhere.
locale_t cLocale() {
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
    return locale;
}

bool isCSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}
} // namespace

std::optional<double> parse(const QString& text) {
    const QByteArray bytes = text.toUtf8();
    if (bytes.isEmpty() || isCSpace(bytes.front())) {
        return std::nullopt;
    }
    char* end = nullptr;
    const double value = strtod_l(bytes.constData(), &end, cLocale());
    // A NUL inside the text ends the parse early, so it fails this test too.
    if (end != bytes.constData() + bytes.size() || !std::isfinite(value)) {
        return std::nullopt;
    }
    return value;
}

QString shortest(double value) {
    return QString::number(value, 'f', QLocale::FloatingPointShortest);
}

} // namespace DoubleText
