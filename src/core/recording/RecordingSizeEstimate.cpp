#include "core/recording/RecordingSizeEstimate.h"

#include "core/support/ByteCountText.h"

#include <QCoreApplication>

namespace RecordingSizeEstimate {

namespace {
constexpr qint64 warningThreshold = 524'288'001;
constexpr double microphoneBytesPerSecond = 16'000;

double videoBytesPerSecond(RecordingQuality quality) {
    return quality == RecordingQuality::hd1080 ? 750'000 : 375'000;
}
} // namespace

qint64 estimatedFileBytes(const RecordingConfiguration& configuration, double elapsedSeconds) {
    qint64 bytes = static_cast<qint64>(videoBytesPerSecond(configuration.quality) * elapsedSeconds);
    if (configuration.captureMicrophone) {
        bytes += static_cast<qint64>(microphoneBytesPerSecond * elapsedSeconds);
    }
    return bytes;
}

std::optional<QString> sizeWarning(qint64 bytes) {
    if (bytes < warningThreshold) {
        return std::nullopt;
    }
    return QCoreApplication::translate("ScreenRecordingEngine",
                                       "Recording is approaching Norvane's 1 GB limit (%1 estimated).")
        .arg(formattedByteCount(bytes));
}

} // namespace RecordingSizeEstimate
