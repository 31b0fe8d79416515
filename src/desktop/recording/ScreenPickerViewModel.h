#pragma once

#include "platform/linux/X11TopLevelWindows.h"

#include <QList>
#include <QObject>
#include <QRect>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

// What our own picker offers on X11: each screen, each application window by its title, and a
// region to drag out. The person's answer is told by the signals.
class ScreenPickerViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The picker builds its view model.")
    Q_PROPERTY(QStringList screenNames READ screenNames NOTIFY choicesChanged)
    Q_PROPERTY(QStringList windowTitles READ windowTitles NOTIFY choicesChanged)

public:
    // A screen as the picker lists it: in the root window's pixels.
    struct Screen {
        QString name;
        QRect geometry;
    };

    explicit ScreenPickerViewModel(QObject* parent = nullptr);

    void setChoices(QList<Screen> screens, QList<X11TopLevelWindow> windows);
    const QList<Screen>& screens() const { return m_screens; }
    const QList<X11TopLevelWindow>& windows() const { return m_windows; }
    // "Screen 1 — 1280 × 800"
    QStringList screenNames() const;
    // Titles as the windows give them; the page shows them as plain text.
    QStringList windowTitles() const;

    Q_INVOKABLE void chooseScreen(int index);
    Q_INVOKABLE void chooseWindow(int index);
    Q_INVOKABLE void chooseRegion() { emit regionWanted(); }
    Q_INVOKABLE void cancel() { emit cancelled(); }

signals:
    void choicesChanged();
    void screenChosen(const ScreenPickerViewModel::Screen& screen);
    void windowChosen(const X11TopLevelWindow& window);
    void regionWanted();
    void cancelled();

private:
    QList<Screen> m_screens;
    QList<X11TopLevelWindow> m_windows;
};
