#include "core/support/ByteCountText.h"

namespace {
// `scaled` counts units of 10^-decimals: 10734 with 2 decimals reads "107.34", 10700 reads "107".
QString decimalText(quint64 scaled, int decimals) {
    quint64 divisor = 1;
    for (int i = 0; i < decimals; ++i) {
        divisor *= 10;
    }
    const QString whole = QString::number(scaled / divisor);
    QString fraction = QString::number(scaled % divisor).rightJustified(decimals, QLatin1Char('0'));
    while (fraction.endsWith(QLatin1Char('0'))) {
        fraction.chop(1);
    }
    return fraction.isEmpty() ? whole : whole + QLatin1Char('.') + fraction;
}
} // namespace

QString formattedByteCount(qint64 bytes) {
    // Integer arithmetic rounds halves up exactly, where a double would land on either side.
    const quint64 magnitude = bytes < 0 ? 0 - static_cast<quint64>(bytes) : static_cast<quint64>(bytes);
    const QString sign = bytes < 0 ? QStringLiteral("-") : QString();
    const quint64 tenthsOfMB = (magnitude + 50'000) / 100'000;
    if (tenthsOfMB < 10'000) {
        return sign + decimalText(tenthsOfMB, 1) + QStringLiteral(" MB");
    }
    const quint64 hundredthsOfGB = (magnitude + 5'000'000) / 10'000'000;
    return sign + decimalText(hundredthsOfGB, 2) + QStringLiteral(" GB");
}
