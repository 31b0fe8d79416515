#include "core/shell/StatusItemIcon.h"

#include <QPainter>
#include <QPainterPath>
#include <cmath>

namespace StatusItemIcon {

QImage make(const QColor& ink, qreal scale) {
    const int side = static_cast<int>(std::lround(pointSize * scale));
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    image.setText(QStringLiteral("Description"), accessibilityDescription);

    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    // The design's frame has its origin at the lower left; flip it onto the image's.
    painter.scale(scale, scale);
    painter.translate(0, pointSize);
    painter.scale(1, -1);
    painter.setPen(QPen(ink, 2.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));

    QPainterPath chevron;
    chevron.moveTo(4, 8.5);
    chevron.lineTo(9, 13.5);
    chevron.lineTo(14, 8.5);
    painter.drawPath(chevron);
    painter.drawLine(QPointF(4, 4), QPointF(14, 4));
    return image;
}

} // namespace StatusItemIcon
