#include "desktop/recording/RecordingDevices.h"

#include "core/recording/CameraOverlayCompositor.h"
#include "platform/linux/GStreamerCameraFeed.h"
#include "platform/linux/X11Connection.h"

RecordingDevices::RecordingDevices()
    : capture(x11Connection() ? GStreamerScreenCapture::Screens::x11 : GStreamerScreenCapture::Screens::pipeWire) {}

std::unique_ptr<FacecamOverlay> RecordingDevices::makeFacecam(const FacecamStyle& style) {
    return std::make_unique<CameraOverlayCompositor>(style, std::make_unique<GStreamerCameraFeed>(),
                                                     PersonSegmenters::unavailable());
}
