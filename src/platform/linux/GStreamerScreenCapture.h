#pragma once

#include "core/platform/CaptureStream.h"

#include <QCoreApplication>

// The desktop's screens, captured through GStreamer (GStreamerCaptureStream): on X11 from the X
// server of $DISPLAY, on Wayland from the PipeWire nodes that the ScreenCast portal hands out.
class GStreamerScreenCapture : public ScreenCaptureService {
    Q_DECLARE_TR_FUNCTIONS(GStreamerScreenCapture)

public:
    enum class Screens { x11, pipeWire };

    explicit GStreamerScreenCapture(Screens screens);

    // On X11, fails when the display does not open; the portal decides for PipeWire's screens.
    QCoro::Task<> checkAccess() override;
    std::unique_ptr<CaptureStream> makeStream(const CaptureTarget& target,
                                              const CaptureConfiguration& configuration) override;

private:
    Screens m_screens;
};
