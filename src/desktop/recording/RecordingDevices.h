#pragma once

#include <memory>

class FacecamOverlay;
class MicrophoneAccess;
class MovieWriterFactory;
class ScreenCaptureService;
struct FacecamStyle;

// The devices of a recording on this desktop: the screen's capture, the movie writers, the
// microphone and the camera behind the recording's overlay.
class RecordingDevices {
public:
    virtual ~RecordingDevices() = default;

    virtual ScreenCaptureService& capture() = 0;
    virtual MovieWriterFactory& writers() = 0;
    virtual MicrophoneAccess& microphone() = 0;
    virtual std::unique_ptr<FacecamOverlay> makeFacecam(const FacecamStyle& style) = 0;
};

// The entry of the module that holds them.
using MakeRecordingDevices = RecordingDevices* (*)();
