#pragma once

#include <QColor>
#include <QImage>
#include <QString>

// The tray icon: a chevron over a line, drawn on an 18 by 18 point canvas.
namespace StatusItemIcon {

inline constexpr int pointSize = 18;
inline const QString accessibilityDescription = QStringLiteral("NorvaneBar");

// Draws the icon in `ink` on a transparent image of 18 × `scale` pixels a side. The design is a
// template: black by default, tinted to suit the panel it sits on.
QImage make(const QColor& ink = Qt::black, qreal scale = 1.0);

} // namespace StatusItemIcon
