#pragma once

#include "core/recording/RecordingCountdown.h"

#include <QPointer>
#include <QRasterWindow>

// The seconds before a recording, large in the middle of the main screen, over every window and
// letting every click through to what is under it, so the person can go on working meanwhile.
// Only the number's badge is drawn; the rest of the screen is left out of the window's shape, so a
// desktop without a compositor shows nothing there either.
class CountdownWindow : public QRasterWindow {
    Q_OBJECT

public:
    static constexpr int badgeSide = 220;

    CountdownWindow();

    // Follows `countdown` over the main screen, brought to the front without the keyboard.
    void present(RecordingCountdown& countdown);
    int shownSeconds() const { return m_countdown ? m_countdown->remaining() : 0; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QRect badgeRect() const;

    QPointer<RecordingCountdown> m_countdown;
};
