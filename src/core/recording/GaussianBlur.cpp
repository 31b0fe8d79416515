#include "core/recording/GaussianBlur.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace {
constexpr int channels = 4;
constexpr int boxes = 3;

// The half widths of three box blurs whose sum spreads as a Gaussian of `radius` would: their
// variances, (width² − 1) / 12 each, add up to radius² as nearly as odd widths allow.
std::array<int, boxes> boxReaches(double radius) {
    const double variance = radius * radius;
    int lower = static_cast<int>(std::floor(std::sqrt(12 * variance / boxes + 1)));
    if (lower % 2 == 0) {
        --lower;
    }
    const double lowerCount =
        (12 * variance - boxes * lower * lower - 4 * boxes * lower - 3 * boxes) / (-4.0 * lower - 4);
    const int narrow = static_cast<int>(std::lround(lowerCount));
    std::array<int, boxes> reaches{};
    for (int i = 0; i < boxes; ++i) {
        reaches[static_cast<size_t>(i)] = ((i < narrow ? lower : lower + 2) - 1) / 2;
    }
    return reaches;
}

// The pixels of an image as floats, four channels each, and a way through them along rows or
// columns.
struct Lines {
    std::vector<float>& values;
    int count;
    int length;
    // From one line to the next, and from one pixel of a line to the next, in floats.
    size_t lineStep;
    size_t pixelStep;

    // Each line averaged over a window of `reach` pixels each side, running; a window beyond the
    // line's ends repeats its end pixels.
    void boxBlur(int reach) {
        std::vector<float> line(static_cast<size_t>(length) * channels);
        const auto width = static_cast<float>(2 * reach + 1);
        for (int l = 0; l < count; ++l) {
            float* first = values.data() + l * lineStep;
            auto at = [first, this](int i, int c) { return first[std::clamp(i, 0, length - 1) * pixelStep + c]; };
            for (int c = 0; c < channels; ++c) {
                float sum = 0;
                for (int i = -reach; i <= reach; ++i) {
                    sum += at(i, c);
                }
                for (int i = 0; i < length; ++i) {
                    line[static_cast<size_t>(i) * channels + c] = sum / width;
                    sum += at(i + reach + 1, c) - at(i - reach, c);
                }
            }
            for (int i = 0; i < length; ++i) {
                std::copy_n(line.data() + static_cast<size_t>(i) * channels, channels, first + i * pixelStep);
            }
        }
    }
};
} // namespace

QImage gaussianBlurred(const QImage& image, double radius) {
    QImage result = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    if (!(radius > 0) || result.isNull()) {
        return result;
    }
    const int width = result.width();
    const int height = result.height();
    // The bytes of a pixel are its four channels in some order, which the blur treats alike.
    std::vector<float> values(static_cast<size_t>(width) * height * channels);
    for (int y = 0; y < height; ++y) {
        std::copy_n(result.constScanLine(y), static_cast<size_t>(width) * channels,
                    values.begin() + static_cast<std::ptrdiff_t>(y) * width * channels);
    }
    const size_t row = static_cast<size_t>(width) * channels;
    Lines rows{values, height, width, row, channels};
    Lines columns{values, width, height, channels, row};
    for (const int reach : boxReaches(radius)) {
        rows.boxBlur(reach);
        columns.boxBlur(reach);
    }
    for (int y = 0; y < height; ++y) {
        uchar* line = result.scanLine(y);
        const float* blurred = values.data() + static_cast<size_t>(y) * row;
        for (size_t i = 0; i < row; ++i) {
            line[i] = static_cast<uchar>(std::clamp(std::lround(blurred[i]), 0L, 255L));
        }
    }
    return result;
}
