#include "core/recording/FacecamPlacement.h"

#include <QPainter>

namespace FacecamPlacement {

namespace {
constexpr double margin = 16;
} // namespace

QPointF overlayOrigin(FacecamCorner corner, QSize frameSize, double side) {
    const double left = margin;
    const double right = frameSize.width() - side - margin;
    const double bottom = margin;
    const double top = frameSize.height() - side - margin;
    switch (corner) {
    case FacecamCorner::topLeft:
        return {left, top};
    case FacecamCorner::topRight:
        return {right, top};
    case FacecamCorner::bottomLeft:
        return {left, bottom};
    case FacecamCorner::bottomRight:
        break;
    }
    return {right, bottom};
}

void composeOverlay(QImage& target, const QImage& frame, const PlacedImage& overlay, QPointF origin) {
    QPainter painter(&target);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.drawImage(0, 0, frame);
    if (overlay.isEmpty()) {
        return;
    }
    // The overlay's extent counts up from the bottom; the picture's rows count down from the top.
    const QRectF placed = overlay.extent.translated(origin);
    const QRectF onPicture(placed.x(), target.height() - placed.bottom(), placed.width(), placed.height());
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.drawImage(onPicture, overlay.pixels);
}

} // namespace FacecamPlacement
