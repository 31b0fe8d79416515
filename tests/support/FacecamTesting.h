#pragma once

#include "core/recording/FacecamStyle.h"

#include <QColor>
#include <QImage>

// What tests of the camera overlay share: pictures to draw with, and styles.
namespace FacecamTesting {

inline QImage solid(QSize size, QColor color) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(color);
    return image;
}

// Every pixel different from its neighbours, opaque.
inline QImage pattern(QSize size) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            image.setPixel(x, y, qRgb((x * 37 + 11) % 256, (y * 53 + 7) % 256, (x * y * 13) % 256));
        }
    }
    return image;
}

// The default style with another background.
inline FacecamStyle withBackground(FacecamBackgroundKind kind) {
    FacecamStyle style;
    style.backgroundKind = kind;
    return style;
}

} // namespace FacecamTesting
