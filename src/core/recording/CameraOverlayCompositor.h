#pragma once

#include "core/async/Sleeper.h"
#include "core/platform/CameraFeed.h"
#include "core/recording/FacecamOverlay.h"
#include "core/recording/FacecamStyle.h"
#include "core/recording/PersonSegmenter.h"
#include "core/recording/PlacedImage.h"

#include <QObject>
#include <QSize>
#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <optional>
#include <qcoro/qcorotask.h>

// Runs the camera of a recording and makes, on request, the square overlay of its newest frame:
// the background blurred or replaced behind the person where the style asks for it and a person is
// found, the corners rounded. Created stopped; start() and stop() on the main thread, makePipImage()
// on the recording's writer thread.
class CameraOverlayCompositor : public QObject, public FacecamOverlay {
public:
    static constexpr std::chrono::milliseconds startPollInterval{50};
    // How long the camera may take to run, in waits of startPollInterval.
    static constexpr std::chrono::milliseconds startTimeout{7950};

    CameraOverlayCompositor(FacecamStyle style, std::unique_ptr<CameraFeed> feed, PersonSegmenter segmenter,
                            Sleeper sleeper = Sleepers::real());

    // Starts the camera and waits until it runs. Throws ScreenRecordingError: the camera's own
    // failure, "Camera failed to start." when it doesn't run in time, or a cancel when this object
    // goes meanwhile. Does nothing while running.
    QCoro::Task<> start() override;
    // Stops the camera and forgets its frame and the person's mask; only while running.
    void stop() override;
    bool isRunning() const override { return m_isRunning; }

    FacecamStyle style() const;
    void setStyle(const FacecamStyle& style) override;

    // The overlay for a frame of `frameSize`: a square of the style's fraction of the shorter edge.
    // Absent while not running, when the style hides it, or before the camera's first frame.
    std::optional<PlacedImage> makePipImage(QSize frameSize) override;
    QImage latestCameraFrame() const override { return m_feed->latestFrame(); }

private:
    std::unique_ptr<CameraFeed> m_feed;
    PersonSegmenter m_segmenter;
    Sleeper m_sleeper;
    std::atomic<bool> m_isRunning = false;
    std::atomic<bool> m_isStopping = false;
    // Guards the style, the request count and the mask between the writer thread and the main one.
    mutable std::mutex m_mutex;
    FacecamStyle m_style;
    // Overlays asked for; the person is looked for on every third.
    qint64 m_segmentationFrameCounter = 0;
    std::optional<PlacedImage> m_cachedSegmentationMask;
};
