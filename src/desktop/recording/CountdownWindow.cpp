#include "desktop/recording/CountdownWindow.h"

#include <QGuiApplication>
#include <QPainter>
#include <QScreen>

CountdownWindow::CountdownWindow() {
    setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::WindowTransparentForInput |
             Qt::WindowDoesNotAcceptFocus | Qt::BypassWindowManagerHint);
    setTitle(tr("Recording countdown"));
    QSurfaceFormat format;
    format.setAlphaBufferSize(8);
    setFormat(format);
}

void CountdownWindow::present(RecordingCountdown& countdown) {
    if (m_countdown) {
        disconnect(m_countdown, nullptr, this, nullptr);
    }
    m_countdown = &countdown;
    connect(&countdown, &RecordingCountdown::remainingChanged, this, [this] { update(); });
    if (QScreen* screen = QGuiApplication::primaryScreen()) {
        setScreen(screen);
        setGeometry(screen->geometry());
    }
    setMask(QRegion(badgeRect(), QRegion::Ellipse));
    show();
    raise();
    update();
}

QRect CountdownWindow::badgeRect() const {
    return QRect((width() - badgeSide) / 2, (height() - badgeSide) / 2, badgeSide, badgeSide);
}

void CountdownWindow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(QRect(QPoint(0, 0), size()), Qt::transparent);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0, 0, 0, 150));
    painter.drawEllipse(badgeRect());
    QFont font = painter.font();
    font.setPointSize(120);
    font.setBold(true);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(badgeRect(), Qt::AlignCenter, QString::number(shownSeconds()));
}
