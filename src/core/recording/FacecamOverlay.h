#pragma once

#include "core/recording/FacecamStyle.h"
#include "core/recording/PlacedImage.h"

#include <QImage>
#include <QSize>
#include <optional>
#include <qcoro/qcorotask.h>

// The camera picture a recording draws into its frames: started and stopped with the facecam,
// asked for one overlay a frame on the recording's writer thread.
class FacecamOverlay {
public:
    virtual ~FacecamOverlay() = default;

    // Fails with a ScreenRecordingError.
    virtual QCoro::Task<> start() = 0;
    virtual void stop() = 0;
    virtual bool isRunning() const = 0;
    virtual void setStyle(const FacecamStyle& style) = 0;
    // The square overlay for a frame of `frameSize`, its bottom-left corner at the origin; none
    // when there is nothing to show.
    virtual std::optional<PlacedImage> makePipImage(QSize frameSize) = 0;
    // The camera's newest picture as it came, for the live preview; null before the first.
    virtual QImage latestCameraFrame() const = 0;
};
