#pragma once

#include "core/recording/FacecamStyle.h"
#include "core/recording/RecordingQuality.h"

// What one screen recording is to do. The settings keep its parts under keys of their own, the
// maximum duration in whole minutes (AppSettings::recordingConfiguration).
struct RecordingConfiguration {
    RecordingQuality quality = RecordingQuality::hd720;
    bool captureMicrophone = true;
    bool showCursor = true;
    bool includeFacecam = false;
    FacecamStyle facecamStyle;
    // The recording stops after this much wall-clock time.
    double maxDurationSeconds = 900.0;

    bool operator==(const RecordingConfiguration&) const = default;
};
