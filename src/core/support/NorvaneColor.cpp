#include "core/support/NorvaneColor.h"

#include <algorithm>
#include <cmath>

namespace {
constexpr double channelMax = 255;

double channel(quint64 value, int shift) {
    return static_cast<double>((value >> shift) & 0xFF) / channelMax;
}

bool isHexDigit(QChar c) {
    return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
}

int byteOf(double channel) {
    return static_cast<int>(std::lround(std::clamp(channel, 0.0, 1.0) * channelMax));
}
} // namespace

std::optional<NorvaneColor> NorvaneColor::fromHex(const std::optional<QString>& hex) {
    if (!hex || hex->isEmpty()) {
        return std::nullopt;
    }
    const QStringView digits = hex->startsWith(u'#') ? QStringView(*hex).sliced(1) : QStringView(*hex);
    // toULongLong alone would also take white space, a sign and "0x".
    const bool allHex = std::all_of(digits.begin(), digits.end(), isHexDigit);
    bool ok = false;
    const quint64 value = allHex ? digits.toULongLong(&ok, 16) : 0;
    if (!ok) {
        return std::nullopt;
    }
    return NorvaneColor{channel(value, 16), channel(value, 8), channel(value, 0)};
}

QString NorvaneColor::nameOf(const std::optional<QString>& hex) {
    const std::optional<NorvaneColor> color = fromHex(hex);
    return color ? color->name() : QString();
}

QString NorvaneColor::name() const {
    return QStringLiteral("#%1%2%3")
        .arg(byteOf(red), 2, 16, QLatin1Char('0'))
        .arg(byteOf(green), 2, 16, QLatin1Char('0'))
        .arg(byteOf(blue), 2, 16, QLatin1Char('0'));
}
