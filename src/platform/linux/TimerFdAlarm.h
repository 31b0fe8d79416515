#pragma once

#include "core/platform/WallClockAlarm.h"

#include <QSocketNotifier>
#include <optional>

// A wall-clock alarm on a timerfd of CLOCK_REALTIME, set for an absolute time
// (TFD_TIMER_ABSTIME): the kernel fires it when that time comes, also right after a resume from
// sleep. With TFD_TIMER_CANCEL_ON_SET a read fails with ECANCELED once the clock has been set (the
// kernel counts a resume as such a change too): that is the jump, and the alarm is armed again.
// The event loop watches the descriptor, so waiting costs no wake-ups.
class TimerFdAlarm : public WallClockAlarm {
    Q_OBJECT

public:
    explicit TimerFdAlarm(QObject* parent = nullptr);
    ~TimerFdAlarm() override;
    TimerFdAlarm(const TimerFdAlarm&) = delete;
    TimerFdAlarm& operator=(const TimerFdAlarm&) = delete;

    void arm(const QDateTime& instant) override;
    void disarm() override;

private:
    // Sets the kernel's timer for `instant`, or stops it.
    void setTimer(const std::optional<QDateTime>& instant) const;
    void readTimer();

    int m_fd;
    QSocketNotifier m_notifier{QSocketNotifier::Read};
    std::optional<QDateTime> m_armed;
};
