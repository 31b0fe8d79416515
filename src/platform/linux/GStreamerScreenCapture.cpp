#include "platform/linux/GStreamerScreenCapture.h"

#include "core/recording/ScreenRecordingError.h"
#include "platform/linux/GStreamerCaptureStream.h"

#include <xcb/xcb.h>

GStreamerScreenCapture::GStreamerScreenCapture(Screens screens, std::chrono::milliseconds preparedLifetime)
    : m_screens(screens) {
    m_preparedExpiry.setSingleShot(true);
    m_preparedExpiry.setInterval(preparedLifetime);
    QObject::connect(&m_preparedExpiry, &QTimer::timeout, &m_preparedExpiry, [this] { m_prepared.reset(); });
}

GStreamerScreenCapture::~GStreamerScreenCapture() = default;

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
    m_preparedExpiry.stop();
    std::optional<Prepared> prepared = std::exchange(m_prepared, std::nullopt);
    if (prepared && prepared->target == target && prepared->configuration == configuration) {
        return std::move(prepared->stream);
    }
    return std::make_unique<GStreamerCaptureStream>(target, configuration);
}

void GStreamerScreenCapture::prepareStream(const CaptureTarget& target, const CaptureConfiguration& configuration) {
    m_prepared.reset();
    try {
        auto stream = std::make_unique<GStreamerCaptureStream>(target, configuration);
        stream->prepare();
        m_prepared = Prepared{target, configuration, std::move(stream)};
        m_preparedExpiry.start();
    } catch (const ScreenRecordingError&) {
        // The recording's own stream fails the same way, and says so.
    }
}
