#pragma once

#include <QDateTime>
#include <QObject>
#include <functional>
#include <memory>

// Fires once at an instant of the wall clock, the time a person reads, rather than after a span of
// time: a span stops counting while the machine sleeps, an instant does not. One instant at a time;
// nothing repeats, and nothing wakes the program while it waits.
class WallClockAlarm : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    // Fires at `instant`, or at once when it has passed; replaces whatever was armed.
    virtual void arm(const QDateTime& instant) = 0;
    virtual void disarm() = 0;

signals:
    // The armed instant has come; nothing is armed any more.
    void fired();
    // While armed: the wall clock jumped, because it was set or the machine woke from sleep. What
    // depends on the time of day is worth working out again. The instant stays armed.
    void clockJumped();
};

// Makes the alarm of one user: each user arms its own.
using WallClockAlarms = std::function<std::unique_ptr<WallClockAlarm>()>;
