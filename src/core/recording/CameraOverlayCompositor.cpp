#include "core/recording/CameraOverlayCompositor.h"

#include "core/async/LoadGuard.h"
#include "core/recording/FacecamRenderer.h"
#include "core/recording/ScreenRecordingError.h"

#include <QCoreApplication>
#include <algorithm>

CameraOverlayCompositor::CameraOverlayCompositor(FacecamStyle style, std::unique_ptr<CameraFeed> feed,
                                                 PersonSegmenter segmenter, Sleeper sleeper)
    : m_feed(std::move(feed))
    , m_segmenter(std::move(segmenter))
    , m_sleeper(std::move(sleeper))
    , m_style(std::move(style)) {}

QCoro::Task<> CameraOverlayCompositor::start() {
    if (m_isRunning) {
        co_return;
    }
    // Linux has no camera permission to ask for outside a sandbox: whoever may open the device may
    // record from it, so access counts as granted.
    m_feed->start();
    std::chrono::milliseconds slept{0};
    bool running = m_feed->isRunning();
    while (!running && slept < startTimeout) {
        QCoro::Task<> sleeping = m_sleeper(startPollInterval);
        QCoro::Task<bool> waited = awaitGuarded(LoadGuard(this), std::move(sleeping));
        if (!co_await std::move(waited)) {
            throw ScreenRecordingError(ScreenRecordingError::Cancelled{});
        }
        slept += startPollInterval;
        running = m_feed->isRunning();
    }
    if (!running) {
        throw ScreenRecordingError::writerFailed(
            QCoreApplication::translate("CameraOverlayCompositor", "Camera failed to start."));
    }
    m_isRunning = true;
    m_isStopping = false;
}

void CameraOverlayCompositor::stop() {
    if (!m_isRunning) {
        return;
    }
    m_isRunning = false;
    m_isStopping = true;
    m_feed->stop();
    const std::lock_guard lock(m_mutex);
    m_cachedSegmentationMask.reset();
}

FacecamStyle CameraOverlayCompositor::style() const {
    const std::lock_guard lock(m_mutex);
    return m_style;
}

void CameraOverlayCompositor::setStyle(const FacecamStyle& style) {
    const std::lock_guard lock(m_mutex);
    m_style = style;
}

std::optional<PlacedImage> CameraOverlayCompositor::makePipImage(QSize frameSize) {
    const std::lock_guard lock(m_mutex);
    if (!m_isRunning || m_isStopping || !m_style.isVisible) {
        return std::nullopt;
    }
    QImage frame = m_feed->latestFrame();
    if (frame.isNull()) {
        return std::nullopt;
    }
    const double side = std::min(frameSize.width(), frameSize.height()) * m_style.sizeFraction;
    const bool segmenting = m_style.backgroundKind != FacecamBackgroundKind::none;

    // The person is looked for on requests 1, 4, 7…, and whenever no mask is kept; the two requests
    // in between reuse the mask.
    ++m_segmentationFrameCounter;
    std::optional<PlacedImage> mask;
    if (m_segmentationFrameCounter % 3 == 1 || !m_cachedSegmentationMask) {
        if (segmenting) {
            m_cachedSegmentationMask.reset();
        }
    } else {
        mask = m_cachedSegmentationMask;
    }

    // The camera delivers a mirror image; the overlay shows the scene the right way round, squeezed
    // to a square of `side`.
    const PlacedImage camera = FacecamRenderer::mirrored(PlacedImage::atOrigin(std::move(frame)));
    PlacedImage overlay = camera.scaled(side / camera.extent.width(), side / camera.extent.height());

    if (segmenting) {
        if (!mask) {
            mask = FacecamRenderer::generatePersonMask(camera, overlay.extent, m_segmenter);
        }
        if (mask) {
            overlay = FacecamRenderer::applyBackground(overlay, *mask, m_style);
            m_cachedSegmentationMask = mask;
        }
    }
    const double radius = side * 0.5 * m_style.cornerRadius;
    return FacecamRenderer::applyRoundedMask(overlay, QRectF(0, 0, side, side), radius);
}
