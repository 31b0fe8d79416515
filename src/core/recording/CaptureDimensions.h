#pragma once

#include <QSize>
#include <QSizeF>

// The size a recording captures the chosen screen, window or region at, in pixels: its own size,
// even, and no more than 1080 lines high, the width scaled with the height. An empty area gives
// 1280 × 720. The quality of the recording plays no part: it sets only the bit rate.
QSize captureDimensions(QSizeF contentSize, double pixelScale);
