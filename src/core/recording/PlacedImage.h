#pragma once

#include <QImage>
#include <QRectF>

// An image laid on an unbounded plane, as the camera overlay is built: `extent` is where its pixels
// lie, in coordinates whose y axis points up. An empty extent shows nothing.
struct PlacedImage {
    QImage pixels;
    QRectF extent;

    bool isEmpty() const { return pixels.isNull() || extent.isEmpty(); }
};
