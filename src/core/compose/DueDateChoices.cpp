#include "core/compose/DueDateChoices.h"

#include <algorithm>
#include <array>
#include <optional>

namespace DueDateChoices {
namespace {

constexpr qint64 secondsPerDay = 24 * 3600;

// The earliest instant at which the zone's clocks read that day and time, or, when the clocks skip it, the
// moment they skip to. Nothing when the zone has neither.
std::optional<QDateTime> firstInstantAt(QDate day, QTime time, const QTimeZone& zone) {
    // The wall time read as UTC, less each offset the zone has around that day, names every
    // instant with that wall time.
    const QDateTime asUtc(day, time, Qt::UTC);
    if (!asUtc.isValid()) {
        return std::nullopt;
    }
    std::array offsets{zone.offsetFromUtc(asUtc.addSecs(-secondsPerDay)), zone.offsetFromUtc(asUtc),
                       zone.offsetFromUtc(asUtc.addSecs(secondsPerDay))};
    std::optional<QDateTime> first;
    for (const int offset : offsets) {
        const QDateTime candidate = asUtc.addSecs(-offset);
        if (zone.offsetFromUtc(candidate) == offset && (!first || candidate < *first)) {
            first = candidate;
        }
    }
    if (first) {
        return first;
    }
    // In a gap: the clocks jump at a transition between the wall time read with the largest offset
    // and with the smallest; that transition is the next time that exists.
    const auto [smallest, largest] = std::minmax_element(offsets.cbegin(), offsets.cend());
    const QTimeZone::OffsetData jump = zone.nextTransition(asUtc.addSecs(-*largest - 1));
    if (jump.atUtc.isValid() && jump.atUtc <= asUtc.addSecs(-*smallest)) {
        return jump.atUtc;
    }
    return std::nullopt;
}

} // namespace

QDateTime at(int hour, int daysFromNow, const Clock& clock, const QTimeZone& zone) {
    const QDateTime shifted = clock().toTimeZone(zone).addDays(daysFromNow);
    if (!shifted.isValid()) {
        return clock().addDays(daysFromNow).toUTC();
    }
    const QDateTime instant = onDay(shifted.date(), QTime(hour, 0), zone);
    return instant.isValid() ? instant : shifted.toUTC();
}

QDateTime onDay(QDate day, QTime time, const QTimeZone& zone) {
    return firstInstantAt(day, time, zone).value_or(QDateTime());
}

QDateTime todayAtFive(const Clock& clock, const QTimeZone& zone) {
    return at(17, 0, clock, zone);
}

QDateTime tomorrowAtNine(const Clock& clock, const QTimeZone& zone) {
    return at(9, 1, clock, zone);
}

} // namespace DueDateChoices
