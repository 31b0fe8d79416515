#pragma once

#include <QObject>
#include <QPointer>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

// Drives a Qt Quick window as a person at the keyboard would: keys and typed text sent to the
// window, the focus moved with Tab, and entries of an open menu chosen with the arrows and Return.
class KeyboardDriver {
public:
    explicit KeyboardDriver(QQuickWindow& window)
        : m_window(window) {}

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(&m_window, key, modifiers);
    }

    // Types `text` key by key into the focused item; a newline is Return.
    void type(const QString& text) {
        for (const QChar character : text) {
            if (character == u'\n') {
                press(Qt::Key_Return);
            } else {
                QTest::sendKeyEvent(QTest::Click, &m_window, Qt::Key_unknown, QString(character), Qt::NoModifier);
            }
        }
    }

    QQuickItem* focused() const { return m_window.activeFocusItem(); }

    // Presses Tab (or Shift+Tab with `backwards`) until the item has the keyboard focus: false when a
    // round doesn't reach it.
    bool tabTo(QQuickItem* target, bool backwards = false) {
        for (int presses = 0; target && presses < 40 && !target->hasActiveFocus(); ++presses) {
            if (backwards) {
                press(Qt::Key_Backtab, Qt::ShiftModifier);
            } else {
                press(Qt::Key_Tab);
            }
        }
        return target && target->hasActiveFocus();
    }

    // Waits until the menu is open with the keyboard in it and holds more than `entries` entries:
    // false when it doesn't come to that.
    static bool waitForMenu(QObject* menu, int entries = 0) {
        const QPointer<QObject> watched(menu);
        return menu && QTest::qWaitFor([&watched, entries] {
                   return watched && watched->property("opened").toBool() &&
                          watched->property("activeFocus").toBool() && watched->property("count").toInt() > entries;
               });
    }

    // In a menu that opens with the keyboard in it, moves the current entry to `index` with Up or
    // Down (the entry under the pointer may be current already) and chooses it with Return: false
    // when the menu doesn't open, the entry isn't reached or the menu stays. The current entry is
    // read right before Return, which reaches the menu with no event handled in between.
    bool chooseInMenu(QObject* menu, int index) {
        if (!waitForMenu(menu, index)) {
            return false;
        }
        const QPointer<QObject> watched(menu);
        for (int presses = 0; presses < 20 && menu->property("currentIndex").toInt() != index; ++presses) {
            press(menu->property("currentIndex").toInt() < index ? Qt::Key_Down : Qt::Key_Up);
        }
        if (!watched || menu->property("currentIndex").toInt() != index) {
            return false;
        }
        press(Qt::Key_Return);
        return QTest::qWaitFor([&watched] { return !watched || !watched->property("opened").toBool(); });
    }

private:
    QQuickWindow& m_window;
};
