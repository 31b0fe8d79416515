#include "core/compose/AttachmentSizeLimits.h"
#include "core/support/ByteCountText.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <cmath>
#include <limits>

namespace AttachmentSizeLimits {

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

} // namespace AttachmentSizeLimits
