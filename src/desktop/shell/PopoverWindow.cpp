#include "shell/PopoverWindow.h"

#include "auth/SecretFieldAccessible.h"
#include "shell/PopoverPlacement.h"

#include <QCursor>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QQmlEngine>
#include <QQuickStyle>
#include <QScreen>

namespace {
qint64 monotonicMs() {
    static QElapsedTimer clock;
    if (!clock.isValid()) {
        clock.start();
    }
    return clock.elapsed();
}
} // namespace

void PopoverWindow::configureQuick() {
    // The software scene graph costs a fraction of the memory of the OpenGL one and opens as fast.
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QQuickStyle::setStyle(QStringLiteral("Basic"));
    SecretFieldAccessible::install();
}

PopoverWindow::PopoverWindow()
    : m_toggle(&monotonicMs) {
    setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    setTitle(QStringLiteral("NorvaneBar"));
    setResizeMode(QQuickView::SizeViewToRootObject);
    // Where qt_add_qml_module puts the NorvaneBar module; Qt 6.4 does not look there by itself.
    engine()->addImportPath(QStringLiteral("qrc:/qt/qml"));
    connect(this, &QWindow::activeChanged, this, [this] {
        if (!isActive() && isVisible()) {
            m_toggle.noteHiddenByFocusLoss();
            hide();
        }
    });
    connect(this, &QWindow::visibleChanged, this, [this](bool visible) {
        if (!visible && m_presented) {
            m_presented = false;
            emit presentedChanged(false);
        }
    });
}

void PopoverWindow::prepare() {
    if (source().isEmpty()) {
        setSource(QUrl(QStringLiteral("qrc:/qt/qml/NorvaneBar/shell/qml/CapturePopoverView.qml")));
    }
}

void PopoverWindow::toggle(std::optional<QRect> anchor) {
    if (m_toggle.shouldShow(isVisible())) {
        showAt(anchor);
    } else {
        hide();
    }
}

void PopoverWindow::showPopover() {
    showAt(m_anchor);
}

void PopoverWindow::showAt(std::optional<QRect> anchor) {
    prepare();
    m_anchor = anchor;
    const QPoint pointer = QCursor::pos();
    const QScreen* screen = QGuiApplication::screenAt(anchor ? anchor->center() : pointer);
    if (!screen) {
        screen = QGuiApplication::primaryScreen();
    }
    setPosition(PopoverPlacement::topLeft(anchor, pointer, size(), screen->availableGeometry()));
    if (!isVisible()) {
        connect(
            this, &QQuickWindow::frameSwapped, this,
            [this] {
                m_presented = true;
                emit presentedChanged(true);
            },
            Qt::SingleShotConnection);
    }
    show();
    raise();
    requestActivate();
}

void PopoverWindow::keyPressEvent(QKeyEvent* event) {
    QQuickView::keyPressEvent(event);
    if (!event->isAccepted() && event->key() == Qt::Key_Escape) {
        hide();
    }
}
