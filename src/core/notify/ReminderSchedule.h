#pragma once

#include "core/async/Clock.h"
#include "core/notify/Reminder.h"
#include "core/platform/WallClockAlarm.h"

#include <QCoroTask>
#include <QList>
#include <QObject>
#include <functional>
#include <memory>
#include <optional>

// The reminders not yet shown, kept in a file so that they outlive the program, and one wall-clock
// alarm set for the earliest of them: nothing wakes the program between reminders, and a sleep of
// the machine doesn't delay them. Reminders that have fallen due, also while the program was not
// running, are handed to the desktop one after another, earliest first; each leaves the file once
// the desktop took it. One the desktop can't take (no notification server) stays in the file until
// the next wake-up. Main thread only.
class ReminderSchedule : public QObject {
    Q_OBJECT

public:
    // Hands a reminder to the desktop: whether the desktop took it.
    using Deliver = std::function<QCoro::Task<bool>(const Reminder& reminder)>;

    // Reads the file; nothing is armed before the first wakeUp() or add().
    ReminderSchedule(QString filePath, Clock clock, std::unique_ptr<WallClockAlarm> alarm, Deliver deliver,
                     QObject* parent = nullptr);

    const QString& filePath() const { return m_filePath; }
    const QList<Reminder>& reminders() const { return m_reminders; }
    // The fire date the alarm is set for; absent with nothing to wait for.
    std::optional<QDateTime> armedFor() const { return m_armedFor; }

    // Keeps the reminder and wakes up: one whose date has passed is due at once.
    void add(Reminder reminder);
    // Hands out what has fallen due by the clock and arms the alarm for the next. The alarm calls
    // it, and so does a jump of the clock; the start of the program, and anyone who knows the
    // desktop can take notifications again.
    void wakeUp();

private:
    // Delivers what is due, again while wake-ups came meanwhile, then arms the alarm.
    QCoro::Task<> deliverDue();
    // The reminders due at `now`, earliest first.
    QList<Reminder> dueAt(const QDateTime& now) const;
    void forget(const QString& identifier);
    void arm(const QDateTime& now);

    QString m_filePath;
    Clock m_clock;
    std::unique_ptr<WallClockAlarm> m_alarm;
    Deliver m_deliver;
    QList<Reminder> m_reminders;
    std::optional<QDateTime> m_armedFor;
    bool m_delivering = false;
    bool m_wokenMeanwhile = false;
};
