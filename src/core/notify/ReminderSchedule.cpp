#include "core/notify/ReminderSchedule.h"

#include "core/async/LoadGuard.h"
#include "core/async/StartTask.h"
#include "core/notify/ReminderFile.h"

#include <algorithm>
#include <iterator>

namespace {
bool earlier(const Reminder& a, const Reminder& b) {
    return a.fireDate < b.fireDate;
}
} // namespace

ReminderSchedule::ReminderSchedule(QString filePath, Clock clock, std::unique_ptr<WallClockAlarm> alarm,
                                   Deliver deliver, QObject* parent)
    : QObject(parent)
    , m_filePath(std::move(filePath))
    , m_clock(std::move(clock))
    , m_alarm(std::move(alarm))
    , m_deliver(std::move(deliver))
    , m_reminders(ReminderFile::read(m_filePath)) {
    connect(m_alarm.get(), &WallClockAlarm::fired, this, &ReminderSchedule::wakeUp);
    connect(m_alarm.get(), &WallClockAlarm::clockJumped, this, &ReminderSchedule::wakeUp);
}

void ReminderSchedule::add(Reminder reminder) {
    m_reminders.append(std::move(reminder));
    ReminderFile::write(m_filePath, m_reminders);
    wakeUp();
}

void ReminderSchedule::wakeUp() {
    if (m_delivering) {
        // The round under way looks again before it ends.
        m_wokenMeanwhile = true;
        return;
    }
    startTask(this, deliverDue());
}

QCoro::Task<> ReminderSchedule::deliverDue() {
    m_delivering = true;
    QDateTime now;
    do {
        m_wokenMeanwhile = false;
        now = m_clock();
        const QList<Reminder> due = dueAt(now);
        for (const Reminder& reminder : due) {
            QCoro::Task<std::optional<bool>> delivering = awaitGuarded(LoadGuard(this), m_deliver(reminder));
            const std::optional<bool> delivered = co_await std::move(delivering);
            if (!delivered) {
                co_return; // the schedule is gone
            }
            if (!*delivered) {
                break; // the desktop takes none now: these wait in the file
            }
            forget(reminder.identifier);
        }
    } while (m_wokenMeanwhile);
    m_delivering = false;
    // Armed for what came after `now`: one that fell due while the round ran fires at once.
    arm(now);
}

QList<Reminder> ReminderSchedule::dueAt(const QDateTime& now) const {
    QList<Reminder> due;
    std::copy_if(m_reminders.cbegin(), m_reminders.cend(), std::back_inserter(due),
                 [&now](const Reminder& reminder) { return reminder.fireDate <= now; });
    std::stable_sort(due.begin(), due.end(), earlier);
    return due;
}

void ReminderSchedule::forget(const QString& identifier) {
    m_reminders.removeIf([&identifier](const Reminder& reminder) { return reminder.identifier == identifier; });
    ReminderFile::write(m_filePath, m_reminders);
}

void ReminderSchedule::arm(const QDateTime& now) {
    // Those already due wait for the next wake-up, not for the alarm.
    std::optional<QDateTime> next;
    for (const Reminder& reminder : m_reminders) {
        if (reminder.fireDate > now && (!next || reminder.fireDate < *next)) {
            next = reminder.fireDate;
        }
    }
    m_armedFor = next;
    if (next) {
        m_alarm->arm(*next);
    } else {
        m_alarm->disarm();
    }
}
