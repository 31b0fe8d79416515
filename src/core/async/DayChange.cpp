#include "core/async/DayChange.h"

DayChange::DayChange(Clock clock, std::unique_ptr<WallClockAlarm> alarm, const QTimeZone& zone, QObject* parent)
    : QObject(parent)
    , m_clock(std::move(clock))
    , m_alarm(std::move(alarm))
    , m_zone(zone)
    , m_today(m_clock().toTimeZone(m_zone).date()) {
    connect(m_alarm.get(), &WallClockAlarm::fired, this, &DayChange::check);
    connect(m_alarm.get(), &WallClockAlarm::clockJumped, this, &DayChange::check);
    check();
}

void DayChange::check() {
    const QDate today = m_clock().toTimeZone(m_zone).date();
    // The first moment of tomorrow on the zone's clocks, counted anew each day, so a day of 23 or 25
    // hours ends where its clocks say.
    m_nextMidnight = today.addDays(1).startOfDay(m_zone);
    if (m_nextMidnight.isValid()) {
        m_alarm->arm(m_nextMidnight);
    } else {
        m_alarm->disarm();
    }
    if (today != m_today) {
        m_today = today;
        emit dayChanged();
    }
}
