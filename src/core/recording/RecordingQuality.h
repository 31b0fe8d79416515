#pragma once

#include "core/json/RawValue.h"

// The bit rate class of a screen recording. It sets nothing else: both capture the same size.
enum class RecordingQuality {
    hd720,
    hd1080,
};

template <> struct RawValues<RecordingQuality> {
    static constexpr std::array cases{
        std::pair{RecordingQuality::hd720, "hd720"},
        std::pair{RecordingQuality::hd1080, "hd1080"},
    };
};

// Every recording captures this many frames a second.
constexpr int recordingFramesPerSecond = 30;

// The average bit rate a recording of this quality is encoded at, in bits a second.
constexpr qint64 averageBitRate(RecordingQuality quality) {
    return quality == RecordingQuality::hd1080 ? 6'000'000 : 3'000'000;
}
