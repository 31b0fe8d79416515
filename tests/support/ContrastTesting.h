#pragma once

#include <QColor>
#include <algorithm>
#include <cmath>

// The contrast ratio of WCAG 2 between two colours, from 1 (none) to 21 (black on white).
namespace ContrastTesting {

inline double luminance(const QColor& color) {
    const auto linear = [](double channel) {
        return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

inline double contrast(const QColor& first, const QColor& second) {
    const double a = luminance(first);
    const double b = luminance(second);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

} // namespace ContrastTesting
