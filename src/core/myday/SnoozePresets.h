#pragma once

#include <QDate>
#include <QDateTime>
#include <QTime>

// The dates behind the quick times of a row, in the user's calendar and time zone (local time).
// Results are in UTC.
namespace SnoozePresets {

// The day of `from` at 18:00:00, even when that has passed; `from` plus six hours if the calendar
// yields no such date.
QDateTime thisEvening(const QDateTime& from);
// The next day at 09:00:00.
QDateTime tomorrowMorning(const QDateTime& from);
// The first Monday after the day of `from` (on a Monday, the one a week later) at 09:00:00.
QDateTime nextMonday(const QDateTime& from);

// `day` at the wall-clock `time`. When that time does not exist on the day (clocks go forward), the
// first moment after it that does; when it occurs twice (clocks go back), the first. Invalid for an
// invalid day or time.
QDateTime atTimeOfDay(QDate day, QTime time);

} // namespace SnoozePresets
