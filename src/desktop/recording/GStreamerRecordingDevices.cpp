#include "desktop/recording/GStreamerRecordingDevices.h"

#include "core/recording/CameraOverlayCompositor.h"
#include "platform/linux/GStreamerCameraFeed.h"
#include "platform/linux/X11Connection.h"

GStreamerRecordingDevices::GStreamerRecordingDevices()
    : m_capture(x11Connection() ? GStreamerScreenCapture::Screens::x11 : GStreamerScreenCapture::Screens::pipeWire) {}

std::unique_ptr<FacecamOverlay> GStreamerRecordingDevices::makeFacecam(const FacecamStyle& style) {
    return std::make_unique<CameraOverlayCompositor>(style, std::make_unique<GStreamerCameraFeed>(),
                                                     PersonSegmenters::unavailable());
}

extern "C" Q_DECL_EXPORT RecordingDevices* norvanebarMakeRecordingDevices() {
    return new GStreamerRecordingDevices;
}
