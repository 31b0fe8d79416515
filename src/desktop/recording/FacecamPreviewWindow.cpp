#include "desktop/recording/FacecamPreviewWindow.h"

#include "core/recording/FacecamRenderer.h"

#include <QGuiApplication>
#include <QPainter>
#include <QScreen>

FacecamPreviewWindow::FacecamPreviewWindow() {
    setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::WindowTransparentForInput |
             Qt::WindowDoesNotAcceptFocus);
    setTitle(tr("Facecam preview"));
    QSurfaceFormat format;
    format.setAlphaBufferSize(8);
    setFormat(format);
    m_frames.setInterval(frameInterval);
    connect(&m_frames, &QTimer::timeout, this, [this] { update(); });
}

void FacecamPreviewWindow::present(FacecamOverlay& facecam, const FacecamStyle& style) {
    if (!style.isVisible) {
        dismiss();
        return;
    }
    m_facecam = &facecam;
    m_style = style;
    const QScreen* screen = QGuiApplication::primaryScreen();
    const QRect place =
        FacecamRenderer::livePreviewScreenFrame(style, screen ? QRectF(screen->availableGeometry()) : QRectF())
            .toRect();
    setGeometry(place);
    setMask(QRegion(FacecamRenderer::previewMaskPath(place.size(), style.cornerRadius).toFillPolygon().toPolygon()));
    show();
    raise();
    m_frames.start();
}

void FacecamPreviewWindow::dismiss() {
    m_frames.stop();
    m_facecam = nullptr;
    hide();
}

void FacecamPreviewWindow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(QRect(QPoint(0, 0), size()), Qt::transparent);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipPath(FacecamRenderer::previewMaskPath(size(), m_style.cornerRadius));
    painter.fillRect(QRect(QPoint(0, 0), size()), Qt::black);
    const QImage frame = m_facecam ? m_facecam->latestCameraFrame() : QImage();
    if (frame.isNull()) {
        return;
    }
    // Filled, and cut where it overflows; then mirrored.
    const QSizeF filled = QSizeF(frame.size()).scaled(size(), Qt::KeepAspectRatioByExpanding);
    const QRectF target((width() - filled.width()) / 2, (height() - filled.height()) / 2, filled.width(),
                        filled.height());
    painter.translate(width(), 0);
    painter.scale(-1, 1);
    painter.drawImage(target, frame);
}
