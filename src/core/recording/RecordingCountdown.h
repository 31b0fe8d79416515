#pragma once

#include "core/async/Sleeper.h"

#include <QObject>
#include <functional>

// The seconds before a recording starts, counted down one a second: started with 5, it shows
// 5, 4, 3, 2, 1 and reports its end five seconds later, as it reaches 0.
class RecordingCountdown : public QObject {
    Q_OBJECT
    Q_PROPERTY(int remaining READ remaining NOTIFY remainingChanged)

public:
    RecordingCountdown(int seconds, Sleeper sleeper, QObject* parent = nullptr);

    int seconds() const { return m_seconds; }
    int remaining() const { return m_remaining; }
    // Counts down and then calls `onComplete`, unless this object has gone.
    void start(std::function<void()> onComplete);

signals:
    void remainingChanged();

private:
    QCoro::Task<> tick(std::function<void()> onComplete);

    const int m_seconds;
    int m_remaining;
    Sleeper m_sleeper;
};
