#include "notify/ReminderSchedule.h"

#include "notify/ReminderFile.h"

#include <algorithm>
#include <limits>

ReminderSchedule::ReminderSchedule(QString filePath, Clock clock, QObject* parent)
    : QObject(parent)
    , m_filePath(std::move(filePath))
    , m_clock(std::move(clock))
    , m_reminders(ReminderFile::read(m_filePath)) {
    m_timer.setSingleShot(true);
    // A coarse timer may fire some percent early or late; a reminder is meant for its second.
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &ReminderSchedule::wakeUp);
}

void ReminderSchedule::add(Reminder reminder) {
    m_reminders.append(std::move(reminder));
    ReminderFile::write(m_filePath, m_reminders);
    wakeUp();
}

void ReminderSchedule::wakeUp() {
    const QDateTime now = m_clock();
    const auto firstLater = std::stable_partition(
        m_reminders.begin(), m_reminders.end(), [&now](const Reminder& reminder) { return reminder.fireDate <= now; });
    QList<Reminder> dueNow(m_reminders.begin(), firstLater);
    if (!dueNow.isEmpty()) {
        // Out of the file before it is handed out: a reminder is delivered at most once.
        m_reminders.erase(m_reminders.begin(), firstLater);
        ReminderFile::write(m_filePath, m_reminders);
    }
    arm(now);
    std::stable_sort(dueNow.begin(), dueNow.end(),
                     [](const Reminder& a, const Reminder& b) { return a.fireDate < b.fireDate; });
    for (const Reminder& reminder : dueNow) {
        emit due(reminder);
    }
}

void ReminderSchedule::arm(const QDateTime& now) {
    const auto earliest =
        std::min_element(m_reminders.cbegin(), m_reminders.cend(),
                         [](const Reminder& a, const Reminder& b) { return a.fireDate < b.fireDate; });
    if (earliest == m_reminders.cend()) {
        m_timer.stop();
        m_armedFor.reset();
        return;
    }
    // A timer counts at most about 24 days; one further away wakes up then and waits again.
    const qint64 wait = std::clamp<qint64>(now.msecsTo(earliest->fireDate), 0, std::numeric_limits<int>::max());
    m_timer.start(static_cast<int>(wait));
    m_armedFor = earliest->fireDate;
}
