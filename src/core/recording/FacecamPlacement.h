#pragma once

#include "core/recording/FacecamStyle.h"
#include "core/recording/PlacedImage.h"

#include <QImage>
#include <QPointF>
#include <QSize>

// Where the camera overlay goes in a recorded frame.
namespace FacecamPlacement {

// The bottom-left corner of the overlay's square of `side` pixels in a frame of `frameSize`,
// 16 pixels from the frame's edges, with the y axis pointing up.
QPointF overlayOrigin(FacecamCorner corner, QSize frameSize, double side);

// Draws `frame` into `target` (of the frame's size) with `overlay` moved by `origin` over it.
void composeOverlay(QImage& target, const QImage& frame, const PlacedImage& overlay, QPointF origin);

} // namespace FacecamPlacement
