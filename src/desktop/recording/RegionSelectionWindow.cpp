#include "desktop/recording/RegionSelectionWindow.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>

namespace {
// The rectangle with corners at both points, whichever way the drag went.
QRect spanning(QPoint from, QPoint to) {
    return QRect(QPoint(std::min(from.x(), to.x()), std::min(from.y(), to.y())),
                 QPoint(std::max(from.x(), to.x()), std::max(from.y(), to.y())));
}
} // namespace

RegionSelectionWindow::RegionSelectionWindow() {
    setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::BypassWindowManagerHint);
    setTitle(tr("Select a region to record"));
    setCursor(Qt::CrossCursor);
}

void RegionSelectionWindow::present() {
    QScreen* screen = QGuiApplication::primaryScreen();
    if (!screen) {
        emit cancelled();
        return;
    }
    setScreen(screen);
    setGeometry(screen->geometry());
    m_screen = screen->grabWindow(0).toImage();
    const QSize size = screen->geometry().size();
    m_selection = QRect(QPoint(size.width() / 4, size.height() / 4), size / 2);
    show();
    raise();
    requestActivate();
    // Without a window manager's help the keyboard comes only by a grab.
    setKeyboardGrabEnabled(true);
    update();
}

void RegionSelectionWindow::setSelection(const QRect& selection) {
    const QRect bounds(QPoint(0, 0), size());
    m_selection = selection.intersected(bounds);
    update();
}

void RegionSelectionWindow::dismiss() {
    setKeyboardGrabEnabled(false);
    hide();
}

void RegionSelectionWindow::finish() {
    dismiss();
    if (m_selection.width() < minimumSide || m_selection.height() < minimumSide) {
        emit cancelled();
        return;
    }
    emit selected(m_selection);
}

void RegionSelectionWindow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QRect all(QPoint(0, 0), size());
    painter.drawImage(all, m_screen);
    // Dimmed outside the frame.
    QRegion outside(all);
    outside -= m_selection;
    painter.setClipRegion(outside);
    painter.fillRect(all, QColor(0, 0, 0, 120));
    painter.setClipping(false);
    painter.setPen(QPen(QColor(0x3b, 0x82, 0xf6), 2));
    painter.drawRect(m_selection.adjusted(0, 0, -1, -1));
    const QString size = tr("%1 × %2").arg(m_selection.width()).arg(m_selection.height());
    painter.setPen(Qt::white);
    painter.drawText(m_selection.bottomLeft() + QPoint(4, 18), size);
}

void RegionSelectionWindow::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        m_dragging = true;
        m_dragStart = event->position().toPoint();
        setSelection(QRect(m_dragStart, QSize(1, 1)));
    }
}

void RegionSelectionWindow::mouseMoveEvent(QMouseEvent* event) {
    if (m_dragging) {
        setSelection(spanning(m_dragStart, event->position().toPoint()));
    }
}

void RegionSelectionWindow::mouseReleaseEvent(QMouseEvent* event) {
    if (m_dragging && event->button() == Qt::LeftButton) {
        m_dragging = false;
        setSelection(spanning(m_dragStart, event->position().toPoint()));
        finish();
    }
}

void RegionSelectionWindow::keyPressEvent(QKeyEvent* event) {
    const bool sizing = event->modifiers() & Qt::ShiftModifier;
    QRect next = m_selection;
    const auto step = [&](int dx, int dy) {
        if (sizing) {
            next.setSize(QSize(std::max(minimumSide, next.width() + dx), std::max(minimumSide, next.height() + dy)));
        } else {
            next.translate(dx, dy);
        }
    };
    switch (event->key()) {
    case Qt::Key_Left:
        step(-keyStep, 0);
        break;
    case Qt::Key_Right:
        step(keyStep, 0);
        break;
    case Qt::Key_Up:
        step(0, -keyStep);
        break;
    case Qt::Key_Down:
        step(0, keyStep);
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        finish();
        return;
    case Qt::Key_Escape:
        dismiss();
        emit cancelled();
        return;
    default:
        QRasterWindow::keyPressEvent(event);
        return;
    }
    // A frame moved against the edge keeps its size.
    const QRect bounds(QPoint(0, 0), size());
    if (!sizing) {
        next.moveLeft(std::clamp(next.left(), 0, std::max(0, bounds.width() - next.width())));
        next.moveTop(std::clamp(next.top(), 0, std::max(0, bounds.height() - next.height())));
    }
    setSelection(next);
}
