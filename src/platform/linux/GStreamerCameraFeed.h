#pragma once

#include "core/platform/CameraFeed.h"

#include <QImage>
#include <QString>
#include <atomic>
#include <memory>
#include <mutex>
#include <optional>

// The camera through GStreamer: the first video source the desktop lists (a V4L2 camera, or one
// that PipeWire offers), mirrored, as BGRx of 640 × 480 where the camera gives that size and no
// larger otherwise, into a sink that keeps only the newest frame. start(), stop() and isRunning()
// on one thread; latestFrame() from any.
class GStreamerCameraFeed : public CameraFeed {
public:
    GStreamerCameraFeed();
    // Frames of the elements that `sourceDescription` names as gst-launch-1.0 writes them (for
    // example "videotestsrc is-live=true") in place of a camera.
    explicit GStreamerCameraFeed(QString sourceDescription);
    ~GStreamerCameraFeed() override;

    void start() override;
    void stop() override;
    // Once the first frame has come, until the stream ends or fails.
    bool isRunning() const override;
    QImage latestFrame() const override;

private:
    // The pipeline while started; its threads deliver into m_delivery.
    struct Pipeline;
    // What the pipeline's threads hand over.
    struct Delivery {
        mutable std::mutex mutex;
        QImage latestFrame;
        std::atomic<bool> delivering = false;
        std::atomic<bool> ended = false;
    };

    std::optional<QString> m_sourceDescription;
    Delivery m_delivery;
    std::unique_ptr<Pipeline> m_pipeline;
};
