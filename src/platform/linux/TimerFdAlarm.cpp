#include "platform/linux/TimerFdAlarm.h"

#include <algorithm>
#include <cerrno>
#include <sys/timerfd.h>
#include <unistd.h>

namespace {
constexpr qint64 millisecondsPerSecond = 1000;
constexpr qint64 nanosecondsPerMillisecond = 1'000'000;
} // namespace

TimerFdAlarm::TimerFdAlarm(QObject* parent)
    : WallClockAlarm(parent)
    , m_fd(timerfd_create(CLOCK_REALTIME, TFD_NONBLOCK | TFD_CLOEXEC)) {
    if (m_fd >= 0) {
        m_notifier.setSocket(m_fd);
        m_notifier.setEnabled(true);
        connect(&m_notifier, &QSocketNotifier::activated, this, &TimerFdAlarm::readTimer);
    }
}

TimerFdAlarm::~TimerFdAlarm() {
    m_notifier.setEnabled(false);
    if (m_fd >= 0) {
        close(m_fd);
    }
}

void TimerFdAlarm::arm(const QDateTime& instant) {
    m_armed = instant;
    setTimer(m_armed);
}

void TimerFdAlarm::disarm() {
    m_armed.reset();
    setTimer(std::nullopt);
}

void TimerFdAlarm::setTimer(const std::optional<QDateTime>& instant) const {
    itimerspec expiry{};
    int flags = 0;
    if (instant) {
        const qint64 milliseconds = std::max<qint64>(instant->toMSecsSinceEpoch(), 0);
        expiry.it_value.tv_sec = static_cast<time_t>(milliseconds / millisecondsPerSecond);
        expiry.it_value.tv_nsec = static_cast<long>(milliseconds % millisecondsPerSecond * nanosecondsPerMillisecond);
        // A value of zero would stop the timer; the first nanosecond of 1970 has passed just as well.
        if (milliseconds == 0) {
            expiry.it_value.tv_nsec = 1;
        }
        flags = TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET;
    }
    timerfd_settime(m_fd, flags, &expiry, nullptr);
}

void TimerFdAlarm::readTimer() {
    quint64 expirations = 0;
    if (read(m_fd, &expirations, sizeof expirations) == sizeof expirations) {
        m_armed.reset();
        emit fired();
    } else if (errno == ECANCELED && m_armed) {
        // The clock was set and the timer with it: set it again for the same instant, which fires at
        // once when the jump went past it. Those who hear of the jump may arm anew.
        setTimer(m_armed);
        emit clockJumped();
    }
    // EAGAIN: the expiration was taken back by a new arming before it was read.
}
