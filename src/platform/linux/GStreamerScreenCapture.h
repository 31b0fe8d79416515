#pragma once

#include "core/platform/CaptureStream.h"

#include <QCoreApplication>
#include <QTimer>
#include <chrono>
#include <optional>

class GStreamerCaptureStream;

// The desktop's screens, captured through GStreamer (GStreamerCaptureStream): on X11 from the X
// server of $DISPLAY, on Wayland from the PipeWire nodes that the ScreenCast portal hands out.
class GStreamerScreenCapture : public ScreenCaptureService {
    Q_DECLARE_TR_FUNCTIONS(GStreamerScreenCapture)

public:
    enum class Screens { x11, pipeWire };

    // A prepared stream that no recording has taken by `preparedLifetime` is ended.
    explicit GStreamerScreenCapture(Screens screens,
                                    std::chrono::milliseconds preparedLifetime = std::chrono::seconds(15));
    ~GStreamerScreenCapture() override;

    // On X11, fails when the display does not open; the portal decides for PipeWire's screens.
    QCoro::Task<> checkAccess() override;
    // The prepared stream when it was prepared for this target and configuration.
    std::unique_ptr<CaptureStream> makeStream(const CaptureTarget& target,
                                              const CaptureConfiguration& configuration) override;
    // Plays a stream of the target now, holding back what it captures, in place of any prepared
    // before: the screen source and the sound server have settled when the recording starts.
    void prepareStream(const CaptureTarget& target, const CaptureConfiguration& configuration) override;
    bool holdsPreparedStream() const { return m_prepared.has_value(); }

private:
    struct Prepared {
        CaptureTarget target;
        CaptureConfiguration configuration;
        std::unique_ptr<GStreamerCaptureStream> stream;
    };

    Screens m_screens;
    std::optional<Prepared> m_prepared;
    QTimer m_preparedExpiry;
};
