#pragma once

#include "core/async/Clock.h"
#include "core/platform/WallClockAlarm.h"

#include <QDate>
#include <QObject>
#include <QTimeZone>
#include <memory>

// Tells when the local day changes, so that what reads "today" is worked out again: at each local
// midnight, and when the wall clock jumps into another day (set by hand, or a resume from a sleep
// across midnight). One wall-clock alarm, armed for the next midnight only, so nothing wakes the
// program in between. Built once by the central state. Main thread only.
class DayChange : public QObject {
    Q_OBJECT

public:
    DayChange(Clock clock, std::unique_ptr<WallClockAlarm> alarm, const QTimeZone& zone = QTimeZone::systemTimeZone(),
              QObject* parent = nullptr);

    QDate today() const { return m_today; }
    // The start of the next day in the zone, which the alarm is armed for; it may be other than
    // 00:00 on a day whose midnight the clocks skip.
    QDateTime nextMidnight() const { return m_nextMidnight; }

signals:
    void dayChanged();

private:
    // Reads the day, tells when it is another, and arms the alarm for its end.
    void check();

    Clock m_clock;
    std::unique_ptr<WallClockAlarm> m_alarm;
    QTimeZone m_zone;
    QDate m_today;
    QDateTime m_nextMidnight;
};
