#pragma once

#include "core/recording/FacecamOverlay.h"
#include "platform/linux/GStreamerMovieWriterFactory.h"
#include "platform/linux/GStreamerScreenCapture.h"
#include "platform/linux/PulseMicrophoneAccess.h"

#include <memory>

// The devices of a recording on this desktop: the capture of the X server on X11, else of the
// PipeWire node a ScreenCast portal hands out; the movie writers; the sound server's microphone;
// and the first camera, behind the recording's overlay.
struct RecordingDevices {
    GStreamerScreenCapture capture;
    GStreamerMovieWriterFactory writers;
    PulseMicrophoneAccess microphone;

    RecordingDevices();
    static std::unique_ptr<FacecamOverlay> makeFacecam(const FacecamStyle& style);
};
