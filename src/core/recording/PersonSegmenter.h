#pragma once

#include <QImage>
#include <functional>
#include <optional>

// Finds the person in a camera image: a mask the size of the image (or of its own size), white where
// the person is and black elsewhere, in greys between; none when it finds nobody or can't tell.
// Called on the recording's writer thread.
using PersonSegmenter = std::function<std::optional<QImage>(const QImage& image)>;

namespace PersonSegmenters {
// What this system has: no person segmentation, so it never yields a mask and a replaced or blurred
// background falls back to the camera's own.
PersonSegmenter unavailable();
} // namespace PersonSegmenters
