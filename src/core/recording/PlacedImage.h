#pragma once

#include <QImage>
#include <QRectF>

// An image laid on an unbounded plane, as the camera overlay is built: `extent` is where its pixels
// lie, in coordinates whose y axis points up. An empty extent shows nothing.
//
// The pixels are stretched over the extent, their first row along its top (the largest y). Moving
// and scaling change only the extent, so the pixels are resampled once, when the image is drawn.
// A rectangle here has its x() and y() at the smallest x and y; bottom() is the top edge.
struct PlacedImage {
    QImage pixels;
    QRectF extent;

    bool isEmpty() const { return pixels.isNull() || extent.isEmpty(); }

    // `image` from the origin to (width, height), a pixel to a unit.
    static PlacedImage atOrigin(QImage image);
    // The pixels of an image drawn over `area` a pixel to a unit: its size rounded up.
    static QSize pixelSize(const QRectF& area);

    // Each point (x, y) moved to (sx · x, sy · y); a negative factor mirrors along that axis.
    PlacedImage scaled(double sx, double sy) const;
    PlacedImage translated(double dx, double dy) const;
    // The part inside `rect`; nothing when the two don't meet.
    PlacedImage cropped(const QRectF& rect) const;

    // The plane over `area`, a pixel to a unit (rounded up), transparent where the image doesn't
    // lie. Premultiplied ARGB; null for an empty area.
    QImage rendered(const QRectF& area) const;
};

// `input` where the mask is white, `background` where it is black, mixed by the mask's grey in
// between; outside its extent the mask is black, and outside theirs the images are transparent. The
// result covers the background's extent and where the input and the mask meet.
PlacedImage blendedWithMask(const PlacedImage& input, const PlacedImage& background, const PlacedImage& mask);
