#pragma once

#include <QDateTime>
#include <optional>

// Today as My Day sees it, in the user's calendar and time zone (local time), for a given "now".
struct DayBounds {
    // Milliseconds since 1970 of the first moment of today.
    std::optional<double> startOfToday;
    // Milliseconds since 1970 of the start of today plus one day minus one second, added in one
    // calculation on the wall clock: 23:59:59, also on a day of 23 or 25 hours. Absent when the
    // calendar yields no such date.
    std::optional<double> endOfToday;

    static DayBounds at(const QDateTime& now);

    // The end of today as an instant; `now` itself when the calendar yields none.
    static QDateTime endOfTodayAt(const QDateTime& now);
};
