#include "desktop/recording/ScreenPickerViewModel.h"

ScreenPickerViewModel::ScreenPickerViewModel(QObject* parent)
    : QObject(parent) {}

void ScreenPickerViewModel::setChoices(QList<Screen> screens, QList<X11TopLevelWindow> windows) {
    m_screens = std::move(screens);
    m_windows = std::move(windows);
    emit choicesChanged();
}

QStringList ScreenPickerViewModel::screenNames() const {
    QStringList names;
    for (qsizetype index = 0; index < m_screens.size(); ++index) {
        const QRect& geometry = m_screens[index].geometry;
        names.append(tr("Screen %1 — %2 × %3").arg(index + 1).arg(geometry.width()).arg(geometry.height()));
    }
    return names;
}

QStringList ScreenPickerViewModel::windowTitles() const {
    QStringList titles;
    for (const X11TopLevelWindow& window : m_windows) {
        titles.append(window.title);
    }
    return titles;
}

void ScreenPickerViewModel::chooseScreen(int index) {
    if (index >= 0 && index < m_screens.size()) {
        emit screenChosen(m_screens[index]);
    }
}

void ScreenPickerViewModel::chooseWindow(int index) {
    if (index >= 0 && index < m_windows.size()) {
        emit windowChosen(m_windows[index]);
    }
}
