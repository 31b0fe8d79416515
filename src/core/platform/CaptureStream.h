#pragma once

#include "core/platform/MediaSample.h"

#include <QRect>
#include <QRectF>
#include <QSize>
#include <functional>
#include <memory>
#include <qcoro/qcorotask.h>
#include <variant>

// An X11 window (the root window for a whole screen), or a region of it in its own pixels; an empty
// region is the whole window.
struct X11CaptureWindow {
    quint32 window = 0;
    QRect region;

    bool operator==(const X11CaptureWindow&) const = default;
};

// A PipeWire node of a ScreenCast session; the session keeps `fd` open while it lasts.
struct PipeWireCaptureNode {
    int fd = -1;
    quint32 nodeId = 0;

    bool operator==(const PipeWireCaptureNode&) const = default;
};

// What a recording captures, as the person chose it: a screen, a window or a region.
struct CaptureTarget {
    using X11Window = X11CaptureWindow;
    using PipeWireNode = PipeWireCaptureNode;

    // The captured area in device-independent pixels, and how many device pixels one of them is.
    QRectF contentRect;
    double pointPixelScale = 1.0;
    std::variant<X11Window, PipeWireNode> surface;

    bool operator==(const CaptureTarget&) const = default;
};

// How a capture stream delivers.
struct CaptureConfiguration {
    // Every frame is scaled to this size.
    QSize size;
    // Frames a second at most.
    int framesPerSecond = 30;
    bool showsCursor = true;
    // Microphone samples beside the frames.
    bool captureMicrophone = false;

    bool operator==(const CaptureConfiguration&) const = default;
};

// A running screen capture, with the microphone when configured. Frames and samples are handed to
// the outputs on the source's own threads as they come; nothing is queued for a slow receiver.
// Their presentation times run on one monotonic clock that goes on across a stop and a start.
// Failures are thrown as ScreenRecordingError.
class CaptureStream {
public:
    virtual ~CaptureStream() = default;

    virtual void addScreenOutput(std::function<void(VideoFrame)> output) = 0;
    virtual void addMicrophoneOutput(std::function<void(AudioBuffer)> output) = 0;
    virtual QCoro::Task<> startCapture() = 0;
    // Stopping a stream that has stopped already does nothing.
    virtual QCoro::Task<> stopCapture() = 0;
};

// Makes capture streams of the desktop's screens.
class ScreenCaptureService {
public:
    virtual ~ScreenCaptureService() = default;

    // Fails when the screen may not be captured at all.
    virtual QCoro::Task<> checkAccess() = 0;
    // A stream of the target, which may be the one prepared for it.
    virtual std::unique_ptr<CaptureStream> makeStream(const CaptureTarget& target,
                                                      const CaptureConfiguration& configuration) = 0;
    // A stream of the target will be made in a few seconds: the service may start one now and hold
    // back what it captures, so that the stream's first frames come as soon as it is started. A
    // service that can't leaves it.
    virtual void prepareStream(const CaptureTarget&, const CaptureConfiguration&) {}
};
