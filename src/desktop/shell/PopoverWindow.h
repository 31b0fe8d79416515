#pragma once

#include "core/shell/PopoverToggle.h"

#include <QQuickView>
#include <QRect>
#include <optional>

class QQmlEngine;

// The frameless window that hangs from the tray icon and holds NorvaneBar's pages. It closes on
// Escape and when another window takes the focus; the Menu key and Shift+F10 ask for the tray menu,
// which is the keyboard's way to it on a tray that only opens it for the mouse.
class PopoverWindow : public QQuickView {
    Q_OBJECT

public:
    PopoverWindow();

    // Qt Quick settings every popover relies on, and the accessible interface of its secret fields;
    // called once, before any window exists.
    static void configureQuick();
    // Lets `engine` load the NorvaneBar module and its symbol pictures, as the popover's own does.
    static void configureEngine(QQmlEngine& engine);
    // Qt 6.4's Fusion style starts from a light palette of its own and takes the application's only
    // when that changes: the content of `window`, just loaded, takes the application's palette now.
    static void takeApplicationPalette(QWindow& window);

    // Shows the popover hanging from `anchor`; without one, where it last hung, or beside the pointer.
    void showPopover(std::optional<QRect> anchor = std::nullopt);

public slots:
    // Loads the content once; showing the popover does it too when it has not happened yet.
    void prepare();
    void toggle(std::optional<QRect> anchor);

signals:
    // True once the first frame after showing is on screen, false when hidden.
    void presentedChanged(bool presented);
    // The Menu key or Shift+F10 was pressed and nothing in the page took it; `at` is the
    // popover's top left corner on screen.
    void menuRequested(QPoint at);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void showAt(std::optional<QRect> anchor);
    // Moves the window to hang from the anchor, or beside the pointer it opened at, at its size.
    void place();

    PopoverToggle m_toggle;
    std::optional<QRect> m_anchor;
    QPoint m_pointer;
    bool m_presented = false;
};
