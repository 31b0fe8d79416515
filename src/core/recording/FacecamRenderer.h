#pragma once

#include "core/recording/FacecamStyle.h"
#include "core/recording/PersonSegmenter.h"
#include "core/recording/PlacedImage.h"

#include <QPainterPath>
#include <QRectF>
#include <QSizeF>
#include <optional>

// The image work of the camera overlay, pure functions of their arguments.
namespace FacecamRenderer {
// The floating preview of the camera: its side, and its distance from the screen's edges.
inline constexpr double previewSide = 160;
inline constexpr double previewMargin = 16;

// Mirrored left to right in two steps: scaled by (−1, 1), then moved by minus its width. An image
// between x = 0 and W thus ends up between −2W and −W, left of the origin.
PlacedImage mirrored(const PlacedImage& image);

// White inside a rectangle of `rect`'s size with corners of radius `cornerRadius`, transparent
// outside: drawn into a bitmap of the rectangle's size rounded up, placed at its origin. A rectangle
// too small to draw gives plain white over `rect`.
PlacedImage roundedRectMaskImage(const QRectF& rect, double cornerRadius);

// `image` inside `rect` with its corners rounded by `cornerRadius` pixels: up to half a pixel it is
// only cropped; from half of the shorter side less half a pixel it is a circle; in between a
// rounded rectangle. Outside the rounding it is transparent.
PlacedImage applyRoundedMask(const PlacedImage& image, const QRectF& rect, double cornerRadius);

// Where the segmenter finds the person in `image`: its mask mirrored as the camera image is, then
// scaled to the size of `extent`. None when the segmenter finds nobody.
std::optional<PlacedImage> generatePersonMask(const PlacedImage& image, const QRectF& extent,
                                              const PersonSegmenter& segmenter);

// The person of `image` where `mask` is white, before the background the style asks for: `image`
// blurred by blurRadius, or the custom picture filling the image's size; the image itself for
// `none` and for a picture that is missing or can't be read.
PlacedImage applyBackground(const PlacedImage& image, const PlacedImage& mask, const FacecamStyle& style);

// Where the floating preview stands on a screen whose free area is `visibleFrame`, in the screen's
// own coordinates (y down): in the style's corner, previewMargin from both edges.
QRectF livePreviewScreenFrame(const FacecamStyle& style, const QRectF& visibleFrame);

// The outline of the floating preview of `size` for the style's roundness: corners of half the
// width times `cornerRadius`; an ellipse from half the shorter side less half a point, the plain
// rectangle up to half a point.
QPainterPath previewMaskPath(QSizeF size, double cornerRadius);
} // namespace FacecamRenderer
