#pragma once

#include "core/shell/PopoverToggle.h"

#include <QPointer>
#include <QQuickItem>
#include <QQuickWindow>
#include <QRect>
#include <QTimer>
#include <QVariantMap>
#include <chrono>
#include <memory>
#include <optional>

class QQmlEngine;

// The frameless window that hangs from the tray icon and holds NorvaneBar's pages. It closes on
// Escape and when another window takes the focus; the Menu key and Shift+F10 ask for the tray menu,
// which is the keyboard's way to it on a tray that only opens it for the mouse.
//
// Its pages and their QML engine are built when it is first shown, not before: a person who never
// opens it pays nothing for them. Hidden for a long while, it lets them go again.
class PopoverWindow : public QQuickWindow {
    Q_OBJECT

public:
    // How long the popover stays hidden before its pages are let go.
    static constexpr std::chrono::minutes defaultReleaseDelay{10};

    PopoverWindow();
    ~PopoverWindow() override;

    // Qt Quick settings every popover relies on, and the accessible interface of its secret fields;
    // called once, before any window exists.
    static void configureQuick();
    // Lets `engine` load the NorvaneBar module and its symbol pictures, as the popover's own does.
    static void configureEngine(QQmlEngine& engine);
    // Qt 6.4's Fusion style starts from a light palette of its own and takes the application's only
    // when that changes: the content of `window`, just loaded, takes the application's palette now.
    static void takeApplicationPalette(QWindow& window);

    // The models the pages are given each time they are built.
    void setInitialProperties(const QVariantMap& properties) { m_initialProperties = properties; }
    // The page and the engine that made it, while it is built.
    QQuickItem* rootObject() const { return m_root; }
    QQmlEngine* engine() const { return m_engine.get(); }
    // How long the popover stays hidden before its pages are let go; from the next hiding on.
    void setReleaseDelay(std::chrono::milliseconds delay) { m_releaseTimer.setInterval(delay); }

    // Shows the popover hanging from `anchor`; without one, where it last hung, or beside the pointer.
    void showPopover(std::optional<QRect> anchor = std::nullopt);

public slots:
    // Builds the pages once; showing the popover does it too when it has not happened yet.
    void prepare();
    // Lets the pages and their engine go; the next showing builds them anew. Not while shown.
    void release();
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
    // The window takes the page's size, as the page grows and shrinks.
    void fitToPage();

    PopoverToggle m_toggle;
    std::optional<QRect> m_anchor;
    QPoint m_pointer;
    bool m_presented = false;
    QVariantMap m_initialProperties;
    std::unique_ptr<QQmlEngine> m_engine;
    QPointer<QQuickItem> m_root;
    QTimer m_releaseTimer;
};
