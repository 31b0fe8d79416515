#include "core/myday/DayBounds.h"

namespace {
QDateTime startOfDay(const QDateTime& now) {
    return now.toLocalTime().date().startOfDay();
}

QDateTime endOfDay(const QDateTime& now) {
    const QDateTime start = startOfDay(now);
    // One day on the wall clock, then one second back.
    return start.isValid() ? start.addDays(1).addSecs(-1) : QDateTime();
}

std::optional<double> milliseconds(const QDateTime& instant) {
    return instant.isValid() ? std::optional(static_cast<double>(instant.toMSecsSinceEpoch())) : std::nullopt;
}
} // namespace

DayBounds DayBounds::at(const QDateTime& now) {
    return {milliseconds(startOfDay(now)), milliseconds(endOfDay(now))};
}

QDateTime DayBounds::endOfTodayAt(const QDateTime& now) {
    const QDateTime end = endOfDay(now);
    return end.isValid() ? end.toUTC() : now;
}
