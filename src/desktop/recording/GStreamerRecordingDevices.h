#pragma once

#include "desktop/recording/RecordingDevices.h"
#include "platform/linux/GStreamerMovieWriterFactory.h"
#include "platform/linux/GStreamerScreenCapture.h"
#include "platform/linux/PulseMicrophoneAccess.h"

// The devices through GStreamer and the sound server: the capture of the X server on X11, else of
// the PipeWire node a ScreenCast portal hands out; the movie writers; the sound server's
// microphone; and the first camera.
class GStreamerRecordingDevices final : public RecordingDevices {
public:
    GStreamerRecordingDevices();

    ScreenCaptureService& capture() override { return m_capture; }
    MovieWriterFactory& writers() override { return m_writers; }
    MicrophoneAccess& microphone() override { return m_microphone; }
    std::unique_ptr<FacecamOverlay> makeFacecam(const FacecamStyle& style) override;

private:
    GStreamerScreenCapture m_capture;
    GStreamerMovieWriterFactory m_writers;
    PulseMicrophoneAccess m_microphone;
};
