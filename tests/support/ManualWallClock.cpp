#include "support/ManualWallClock.h"

#include <algorithm>

void ManualWallClock::Alarm::ring() {
    m_armed.reset();
    emit fired();
}

void ManualWallClock::Alarm::jump() {
    if (m_armed) {
        emit clockJumped();
    }
}

ManualWallClock::ManualWallClock(const QDateTime& now)
    : m_now(std::make_shared<QDateTime>(now)) {}

Clock ManualWallClock::clock() const {
    return [now = m_now] { return *now; };
}

std::unique_ptr<WallClockAlarm> ManualWallClock::alarm() {
    auto made = std::make_unique<Alarm>();
    m_alarms.append(made.get());
    return made;
}

WallClockAlarms ManualWallClock::alarms() {
    return [this] { return alarm(); };
}

void ManualWallClock::advanceTo(const QDateTime& instant) {
    *m_now = instant;
    const auto due = [&instant](const QPointer<Alarm>& alarm) {
        return alarm && alarm->armedFor() && *alarm->armedFor() <= instant;
    };
    QList<QPointer<Alarm>> ringing = m_alarms;
    ringing.removeIf([&due](const QPointer<Alarm>& alarm) { return !due(alarm); });
    std::stable_sort(ringing.begin(), ringing.end(), [](const QPointer<Alarm>& a, const QPointer<Alarm>& b) {
        return *a->armedFor() < *b->armedFor();
    });
    // Each rings once, if it is still due when its turn comes; what is armed anew waits for the next move.
    for (const QPointer<Alarm>& alarm : ringing) {
        if (due(alarm)) {
            alarm->ring();
        }
    }
}

void ManualWallClock::jumpTo(const QDateTime& instant) {
    *m_now = instant;
    const QList<QPointer<Alarm>> told = m_alarms;
    for (const QPointer<Alarm>& alarm : told) {
        if (alarm) {
            alarm->jump();
        }
    }
}

QList<QDateTime> ManualWallClock::armed() const {
    QList<QDateTime> instants;
    for (const QPointer<Alarm>& alarm : m_alarms) {
        if (alarm && alarm->armedFor()) {
            instants.append(*alarm->armedFor());
        }
    }
    std::sort(instants.begin(), instants.end());
    return instants;
}
