#include "core/recording/CaptureDimensions.h"

#include <algorithm>
#include <cmath>

namespace {
constexpr int heightCap = 1080;
const QSize fallback(1280, 720);

int even(int pixels) {
    return pixels & ~1;
}
} // namespace

QSize captureDimensions(QSizeF contentSize, double pixelScale) {
    const double width = std::floor(contentSize.width() * pixelScale);
    const double height = std::floor(contentSize.height() * pixelScale);
    if (!(width >= 1) || !(height >= 1)) {
        return fallback;
    }
    int w = even(static_cast<int>(std::min(width, double(1 << 30))));
    int h = even(static_cast<int>(std::min(height, double(1 << 30))));
    if (h > heightCap) {
        w = even(static_cast<int>(std::floor(double(w) / double(h) * heightCap)));
        h = heightCap;
    }
    return {std::max(w, 2), std::max(h, 2)};
}
