#include "core/recording/PlacedImage.h"

#include <QPainter>
#include <cmath>

namespace {
// Rectangles that cover nothing are all the same empty one, so that uniting with one adds nothing.
QRectF orNothing(const QRectF& rect) {
    return rect.isEmpty() ? QRectF() : rect;
}

int mixed(int input, int background, int weight) {
    return (input * weight + background * (255 - weight) + 127) / 255;
}
} // namespace

PlacedImage PlacedImage::atOrigin(QImage image) {
    const QRectF extent(0, 0, image.width(), image.height());
    return {std::move(image), extent};
}

QSize PlacedImage::pixelSize(const QRectF& area) {
    return {static_cast<int>(std::ceil(area.width())), static_cast<int>(std::ceil(area.height()))};
}

PlacedImage PlacedImage::scaled(double sx, double sy) const {
    const QRectF moved = QRectF(extent.x() * sx, extent.y() * sy, extent.width() * sx, extent.height() * sy);
    return {pixels.mirrored(sx < 0, sy < 0), orNothing(moved.normalized())};
}

PlacedImage PlacedImage::translated(double dx, double dy) const {
    return {pixels, orNothing(extent.translated(dx, dy))};
}

PlacedImage PlacedImage::cropped(const QRectF& rect) const {
    const QRectF inside = orNothing(extent.intersected(rect));
    if (inside.isEmpty() || isEmpty()) {
        return {};
    }
    if (inside == extent) {
        return *this;
    }
    return {rendered(inside), inside};
}

QImage PlacedImage::rendered(const QRectF& area) const {
    if (area.isEmpty()) {
        return {};
    }
    QImage image(pixelSize(area), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    if (isEmpty() || !extent.intersects(area)) {
        return image;
    }
    const double xScale = image.width() / area.width();
    const double yScale = image.height() / area.height();
    // The image's rows run down from the top edge, bottom() on this plane.
    const QRectF target((extent.x() - area.x()) * xScale, (area.bottom() - extent.bottom()) * yScale,
                        extent.width() * xScale, extent.height() * yScale);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(target, pixels);
    return image;
}

PlacedImage blendedWithMask(const PlacedImage& input, const PlacedImage& background, const PlacedImage& mask) {
    const QRectF masked = input.isEmpty() || mask.isEmpty() ? QRectF() : orNothing(input.extent & mask.extent);
    const QRectF area = orNothing((background.isEmpty() ? QRectF() : background.extent) | masked);
    if (area.isEmpty()) {
        return {};
    }
    QImage result = input.rendered(area);
    const QImage under = background.rendered(area);
    const QImage weights = mask.rendered(area);
    for (int y = 0; y < result.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(result.scanLine(y));
        const auto* underLine = reinterpret_cast<const QRgb*>(under.constScanLine(y));
        const auto* weightLine = reinterpret_cast<const QRgb*>(weights.constScanLine(y));
        for (int x = 0; x < result.width(); ++x) {
            const int weight = qGreen(weightLine[x]);
            const QRgb over = line[x];
            const QRgb below = underLine[x];
            line[x] = qRgba(mixed(qRed(over), qRed(below), weight), mixed(qGreen(over), qGreen(below), weight),
                            mixed(qBlue(over), qBlue(below), weight), mixed(qAlpha(over), qAlpha(below), weight));
        }
    }
    return {result, area};
}
