#include "core/compose/AttachmentSizeLimits.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <cmath>
#include <limits>

namespace AttachmentSizeLimits {

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

std::optional<qint64> fileSize(const QUrl& url) {
    const QFileInfo info(url.toLocalFile());
    if (!url.isLocalFile() || !info.exists()) {
        return std::nullopt;
    }
    return info.size();
}

ValidationResult validate(qint64 sizeBytes) {
    if (sizeBytes < 1) {
        return Rejected{QCoreApplication::translate("AttachmentSizeLimits", "The file is empty.")};
    }
    const QString size = formattedByteCount(sizeBytes);
    if (sizeBytes > hardLimit) {
        return Rejected{QCoreApplication::translate("AttachmentSizeLimits",
                                                    "This file is %1, which exceeds Norvane's %2 attachment limit. "
                                                    "Try a shorter recording or lower quality.")
                            .arg(size, formattedByteCount(hardLimit))};
    }
    if (sizeBytes <= warningThreshold) {
        return Ok{};
    }
    return Warning{sizeBytes, QCoreApplication::translate("AttachmentSizeLimits",
                                                          "This file is %1. Norvane allows up to 1 GB per attachment.")
                                  .arg(size)};
}

QString formattedDuration(double seconds) {
    // Compared after rounding, so 3599.6 s is an hour; NaN and negatives count as 0.
    const double rounded = std::round(seconds);
    constexpr int most = std::numeric_limits<int>::max();
    const int total = !(rounded > 0) ? 0 : rounded >= most ? most : static_cast<int>(rounded);
    if (total < 3600) {
        return QString::asprintf("%d:%02d", total / 60, total % 60);
    }
    return QString::asprintf("%d:%02d:%02d", total / 3600, total / 60 % 60, total % 60);
}

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

} // namespace AttachmentSizeLimits
