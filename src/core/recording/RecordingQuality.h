#pragma once

#include "core/json/RawValue.h"

// The bit rate class of a screen recording.
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
