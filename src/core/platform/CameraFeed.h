#pragma once

#include <QImage>

// The camera of a recording's overlay. It keeps only its newest frame, already mirrored left to right
// as the person sees themselves in a mirror; older frames are dropped as newer ones come.
class CameraFeed {
public:
    virtual ~CameraFeed() = default;

    // Chooses the camera, sets it up and lets it run; frames come once isRunning() says so. Throws
    // ScreenRecordingError::writerFailed: "No camera found.", "Could not access the camera." or
    // "Could not configure camera output.".
    virtual void start() = 0;
    // Stops the camera and drops its newest frame; stopping a stopped camera does nothing.
    virtual void stop() = 0;
    // Whether the camera delivers frames.
    virtual bool isRunning() const = 0;
    // The newest frame (QImage::Format_RGB32), from any thread; null before the first and after stop().
    virtual QImage latestFrame() const = 0;
};
