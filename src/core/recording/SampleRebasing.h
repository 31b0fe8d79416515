#pragma once

#include "core/platform/MediaSample.h"

#include <optional>

// Moves a sample's times so that `sessionStart` becomes zero: the presentation time and, where the
// source gave one, the decode time; the duration stays. A sample without a presentation time has
// nothing to move and gives none.
std::optional<SampleTiming> rebasedTiming(const SampleTiming& timing, qint64 sessionStart);

// The same sample with its times moved by rebasedTiming; none when they can't be.
template <typename Sample> std::optional<Sample> rebasedSampleBuffer(const Sample& sample, qint64 sessionStart) {
    const std::optional<SampleTiming> timing = rebasedTiming(sample.timing, sessionStart);
    if (!timing) {
        return std::nullopt;
    }
    Sample moved = sample;
    moved.timing = *timing;
    return moved;
}

// Whether a frame is whole: only a status that is an integer other than 0 says it isn't, so a
// source that gives no status loses nothing.
bool isCompleteVideoFrame(const VideoFrame& frame);
