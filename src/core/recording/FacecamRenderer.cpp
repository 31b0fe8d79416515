#include "core/recording/FacecamRenderer.h"

#include "core/recording/GaussianBlur.h"

#include <QImageReader>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

namespace FacecamRenderer {
namespace {
// Plain white over `rect`: one pixel stretched over it.
PlacedImage whiteOver(const QRectF& rect) {
    QImage white(1, 1, QImage::Format_ARGB32_Premultiplied);
    white.fill(Qt::white);
    return {white, rect};
}

// Opaque white out to `inner` from the middle of `rect`, fading linearly to transparent at `outer`,
// over `rect` only; none when there is nothing to draw.
std::optional<PlacedImage> radialGradientMask(const QRectF& rect, double inner, double outer) {
    QImage gradient(PlacedImage::pixelSize(rect), QImage::Format_ARGB32_Premultiplied);
    if (gradient.isNull()) {
        return std::nullopt;
    }
    const QPointF middle = rect.center();
    const double xStep = rect.width() / gradient.width();
    const double yStep = rect.height() / gradient.height();
    for (int row = 0; row < gradient.height(); ++row) {
        auto* line = reinterpret_cast<QRgb*>(gradient.scanLine(row));
        // Rows run down from the top edge; each pixel is taken at its middle.
        const double y = rect.bottom() - (row + 0.5) * yStep;
        for (int column = 0; column < gradient.width(); ++column) {
            const double x = rect.x() + (column + 0.5) * xStep;
            const double distance = std::hypot(x - middle.x(), y - middle.y());
            const double fade = std::clamp((distance - inner) / (outer - inner), 0.0, 1.0);
            const int level = static_cast<int>(std::lround(255 * (1 - fade)));
            line[column] = qRgba(level, level, level, level);
        }
    }
    return PlacedImage{gradient, rect};
}

// The style's picture filling `image`'s size, centred on the origin's rectangle of that size and
// cropped to the image; none without a picture that can be read.
std::optional<PlacedImage> customBackground(const PlacedImage& image, const std::optional<QString>& path) {
    if (!path) {
        return std::nullopt;
    }
    QImageReader reader(*path);
    const QImage picture = reader.read();
    if (picture.isNull()) {
        return std::nullopt;
    }
    const QSizeF size = image.extent.size();
    const double scale = std::max(size.width() / picture.width(), size.height() / picture.height());
    return PlacedImage::atOrigin(picture)
        .scaled(scale, scale)
        .translated((size.width() - picture.width() * scale) / 2, (size.height() - picture.height() * scale) / 2)
        .cropped(image.extent);
}
} // namespace

PlacedImage mirrored(const PlacedImage& image) {
    return image.scaled(-1, 1).translated(-image.extent.width(), 0);
}

PlacedImage roundedRectMaskImage(const QRectF& rect, double cornerRadius) {
    const QSize size = PlacedImage::pixelSize(rect);
    if (size.width() < 1 || size.height() < 1) {
        return whiteOver(rect);
    }
    QImage mask(size, QImage::Format_ARGB32_Premultiplied);
    if (mask.isNull()) {
        return whiteOver(rect);
    }
    mask.fill(Qt::transparent);
    // The rectangle stands on the bitmap's bottom edge, as the plane's y axis points up.
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    path.addRoundedRect(QRectF(0, size.height() - rect.height(), rect.width(), rect.height()), cornerRadius,
                        cornerRadius);
    QPainter painter(&mask);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(path, Qt::white);
    painter.end();
    return PlacedImage::atOrigin(mask).translated(rect.x(), rect.y());
}

PlacedImage applyRoundedMask(const PlacedImage& image, const QRectF& rect, double cornerRadius) {
    if (cornerRadius <= 0.5) {
        return image.cropped(rect);
    }
    const double halfSide = std::min(rect.width(), rect.height()) * 0.5;
    const PlacedImage mask = cornerRadius >= halfSide - 0.5
                                 ? radialGradientMask(rect, halfSide, halfSide + 1.0).value_or(whiteOver(rect))
                                 : roundedRectMaskImage(rect, cornerRadius);
    return blendedWithMask(image, PlacedImage(), mask);
}

std::optional<PlacedImage> generatePersonMask(const PlacedImage& image, const QRectF& extent,
                                              const PersonSegmenter& segmenter) {
    const std::optional<QImage> found = segmenter ? segmenter(image.pixels) : std::nullopt;
    if (!found || found->isNull()) {
        return std::nullopt;
    }
    return mirrored(PlacedImage::atOrigin(*found))
        .scaled(extent.width() / found->width(), extent.height() / found->height());
}

PlacedImage applyBackground(const PlacedImage& image, const PlacedImage& mask, const FacecamStyle& style) {
    PlacedImage replacement = image;
    switch (style.backgroundKind) {
    case FacecamBackgroundKind::blur:
        // The blur reads the edge pixels beyond the border, and keeps to the image's extent.
        replacement.pixels = gaussianBlurred(image.rendered(image.extent), style.blurRadius);
        break;
    case FacecamBackgroundKind::customImage:
        replacement = customBackground(image, style.customImagePath).value_or(image);
        break;
    case FacecamBackgroundKind::none:
        break;
    }
    return blendedWithMask(image, replacement, mask);
}

QRectF livePreviewScreenFrame(const FacecamStyle& style, const QRectF& visibleFrame) {
    const bool left = style.corner == FacecamCorner::topLeft || style.corner == FacecamCorner::bottomLeft;
    const bool top = style.corner == FacecamCorner::topLeft || style.corner == FacecamCorner::topRight;
    const double x = left ? visibleFrame.left() + previewMargin : visibleFrame.right() - previewSide - previewMargin;
    const double y = top ? visibleFrame.top() + previewMargin : visibleFrame.bottom() - previewSide - previewMargin;
    return {x, y, previewSide, previewSide};
}

QPainterPath previewMaskPath(QSizeF size, double cornerRadius) {
    const QRectF rect(QPointF(0, 0), size);
    const double radius = size.width() * 0.5 * cornerRadius;
    QPainterPath path;
    if (radius >= std::min(size.width(), size.height()) * 0.5 - 0.5) {
        path.addEllipse(rect);
    } else if (radius <= 0.5) {
        path.addRect(rect);
    } else {
        path.addRoundedRect(rect, radius, radius);
    }
    return path;
}
} // namespace FacecamRenderer
