#pragma once

#include "core/async/Clock.h"

#include <QDateTime>
#include <QTimeZone>

// The quick choices of the due date popover, in the user's calendar and time zone.
namespace DueDateChoices {

// The hour, on the day `daysFromNow` days after today, at minute 0 and second 0. An hour that the
// clocks skip gives the first time after the gap; an hour that they repeat gives its first
// occurrence. When no such day can be made, now plus the days.
QDateTime at(int hour, int daysFromNow, const Clock& clock, const QTimeZone& zone = QTimeZone::systemTimeZone());

// The first instant at which the zone's clocks read that day and time; when the clocks skip that
// time, the moment they skip to. Invalid when the day can't be made.
QDateTime onDay(QDate day, QTime time, const QTimeZone& zone = QTimeZone::systemTimeZone());

// "Today 5 PM" and "Tomorrow 9 AM".
QDateTime todayAtFive(const Clock& clock, const QTimeZone& zone = QTimeZone::systemTimeZone());
QDateTime tomorrowAtNine(const Clock& clock, const QTimeZone& zone = QTimeZone::systemTimeZone());

} // namespace DueDateChoices
