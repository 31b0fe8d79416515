#include "core/recording/PersonSegmenter.h"

PersonSegmenter PersonSegmenters::unavailable() {
    return [](const QImage&) { return std::optional<QImage>(); };
}
