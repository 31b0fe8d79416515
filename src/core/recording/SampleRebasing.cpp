#include "core/recording/SampleRebasing.h"

std::optional<SampleTiming> rebasedTiming(const SampleTiming& timing, qint64 sessionStart) {
    if (!timing.presentation) {
        return std::nullopt;
    }
    SampleTiming moved = timing;
    moved.presentation = *timing.presentation - sessionStart;
    if (timing.decode) {
        moved.decode = *timing.decode - sessionStart;
    }
    return moved;
}

bool isCompleteVideoFrame(const VideoFrame& frame) {
    if (!frame.status) {
        return true;
    }
    const QVariant& status = *frame.status;
    const bool isInteger = status.typeId() == QMetaType::Int || status.typeId() == QMetaType::LongLong ||
                           status.typeId() == QMetaType::UInt || status.typeId() == QMetaType::ULongLong;
    return !isInteger || status.toLongLong() == 0;
}
