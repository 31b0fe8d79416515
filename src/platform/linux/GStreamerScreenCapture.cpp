#include "platform/linux/GStreamerScreenCapture.h"

#include "core/recording/ScreenRecordingError.h"
#include "platform/linux/GStreamerCaptureStream.h"

#include <xcb/xcb.h>

GStreamerScreenCapture::GStreamerScreenCapture(Screens screens)
    : m_screens(screens) {}

QCoro::Task<> GStreamerScreenCapture::checkAccess() {
    if (m_screens == Screens::pipeWire) {
        co_return;
    }
    // xcb opens the display of $DISPLAY, as ximagesrc does.
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    const bool opened = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    if (!opened) {
        throw ScreenRecordingError(ScreenRecordingError::PermissionDenied{
            tr("The screen cannot be captured: the X display \"%1\" does not open.")
                .arg(qEnvironmentVariable("DISPLAY"))});
    }
}

std::unique_ptr<CaptureStream> GStreamerScreenCapture::makeStream(const CaptureTarget& target,
                                                                  const CaptureConfiguration& configuration) {
    return std::make_unique<GStreamerCaptureStream>(target, configuration);
}
