#include "core/myday/SnoozePresets.h"

#include <algorithm>
#include <array>

namespace SnoozePresets {
namespace {
constexpr qint64 secondsPerDay = 24LL * 3600;
constexpr int mondayNumber = 1;

const QTime evening(18, 0);
const QTime morning(9, 0);

// The offset from UTC, in seconds, of local time at this instant.
int localOffsetAt(qint64 secsSinceEpoch) {
    return QDateTime::fromSecsSinceEpoch(secsSinceEpoch, Qt::UTC).toLocalTime().offsetFromUtc();
}

bool showsOnTheWallClock(qint64 secsSinceEpoch, QDate day, QTime time) {
    const QDateTime local = QDateTime::fromSecsSinceEpoch(secsSinceEpoch, Qt::UTC).toLocalTime();
    return local.date() == day && local.time() == time;
}

// The morning of `day`, or `day` unchanged when the time can't be set.
QDateTime morningOf(const QDateTime& day) {
    const QDateTime result = atTimeOfDay(day.toLocalTime().date(), morning);
    return result.isValid() ? result : day.toUTC();
}
} // namespace

QDateTime atTimeOfDay(QDate day, QTime time) {
    if (!day.isValid() || !time.isValid()) {
        return {};
    }
    // The wall-clock reading taken as UTC, then shifted by each offset in force a day around it.
    const qint64 wall = QDateTime(day, time, Qt::UTC).toSecsSinceEpoch();
    const std::array<int, 2> offsets{localOffsetAt(wall - secondsPerDay), localOffsetAt(wall + secondsPerDay)};
    std::array<qint64, 2> candidates{wall - offsets[0], wall - offsets[1]};
    std::sort(candidates.begin(), candidates.end());
    for (const qint64 candidate : candidates) {
        if (showsOnTheWallClock(candidate, day, time)) {
            return QDateTime::fromSecsSinceEpoch(candidate, Qt::UTC);
        }
    }
    // The time falls into a gap: the clocks jumped over it somewhere between the two candidates.
    // The first moment after the jump is the one wanted.
    qint64 before = candidates[0];
    qint64 after = candidates[1];
    const int offsetBefore = localOffsetAt(before);
    while (after - before > 1) {
        const qint64 middle = before + (after - before) / 2;
        (localOffsetAt(middle) == offsetBefore ? before : after) = middle;
    }
    return QDateTime::fromSecsSinceEpoch(after, Qt::UTC);
}

QDateTime thisEvening(const QDateTime& from) {
    const QDateTime result = atTimeOfDay(from.toLocalTime().date(), evening);
    return result.isValid() ? result : from.toUTC().addSecs(21600);
}

QDateTime tomorrowMorning(const QDateTime& from) {
    const QDateTime next = from.toLocalTime().addDays(1);
    return morningOf(next.isValid() ? next : from);
}

QDateTime nextMonday(const QDateTime& from) {
    QDateTime day = from.toLocalTime();
    do {
        const QDateTime next = day.addDays(1);
        if (!next.isValid()) {
            return morningOf(from);
        }
        day = next;
    } while (day.date().dayOfWeek() != mondayNumber);
    return morningOf(day);
}

} // namespace SnoozePresets
