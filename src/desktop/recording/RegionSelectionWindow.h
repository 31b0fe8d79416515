#pragma once

#include <QImage>
#include <QRasterWindow>
#include <QRect>

// A region of the main screen to record, dragged out with the mouse over a still picture of the
// screen, or by keyboard: the arrow keys move the frame, with Shift they size it, Return takes it
// and Escape gives up.
class RegionSelectionWindow : public QRasterWindow {
    Q_OBJECT

public:
    // The smallest region taken, in either direction.
    static constexpr int minimumSide = 16;
    static constexpr int keyStep = 10;

    RegionSelectionWindow();

    // Covers the main screen with its picture and a frame of half its size in the middle.
    void present();
    // In the screen's own coordinates (device-independent pixels).
    QRect selection() const { return m_selection; }

signals:
    void selected(const QRect& region);
    void cancelled();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void setSelection(const QRect& selection);
    void finish();
    void dismiss();

    QImage m_screen;
    QRect m_selection;
    QPoint m_dragStart;
    bool m_dragging = false;
};
