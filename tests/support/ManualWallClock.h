#pragma once

#include "core/async/Clock.h"
#include "core/platform/WallClockAlarm.h"

#include <QDateTime>
#include <QList>
#include <QPointer>
#include <memory>
#include <optional>

// A wall clock the test moves by hand. Its time is a Clock; its alarms ring when the clock is moved
// past their instant, and hear of a jump when the clock is set, as after a resume from sleep.
class ManualWallClock {
public:
    // One alarm, armed or not; rung by the clock that made it.
    class Alarm : public WallClockAlarm {
    public:
        void arm(const QDateTime& instant) override { m_armed = instant; }
        void disarm() override { m_armed.reset(); }
        const std::optional<QDateTime>& armedFor() const { return m_armed; }
        void ring();
        void jump();

    private:
        std::optional<QDateTime> m_armed;
    };

    explicit ManualWallClock(const QDateTime& now);

    QDateTime now() const { return *m_now; }
    // Reads the time this clock shows, also after it has moved.
    Clock clock() const;
    // An alarm that this clock rings, and the maker of such alarms.
    std::unique_ptr<WallClockAlarm> alarm();
    WallClockAlarms alarms();

    // Moves the clock on to `instant`, then rings, earliest first, each alarm armed for that instant or
    // before.
    void advanceTo(const QDateTime& instant);
    void advance(qint64 seconds) { advanceTo(now().addSecs(seconds)); }
    // Sets the clock to `instant`, forward or back, as a person setting it or a resume from sleep
    // does: no alarm rings, each armed one hears of the jump.
    void jumpTo(const QDateTime& instant);
    // The instants the living alarms are armed for, earliest first.
    QList<QDateTime> armed() const;

private:
    std::shared_ptr<QDateTime> m_now;
    QList<QPointer<Alarm>> m_alarms;
};
