#pragma once

#include "async/Clock.h"
#include "notify/Reminder.h"

#include <QList>
#include <QObject>
#include <QTimer>
#include <optional>

// The reminders not yet due, kept in a file so that they outlive the program, and one single-shot
// timer set for the earliest of them: nothing wakes the program between reminders. A reminder that
// has fallen due, also while the program was not running, is handed out once and leaves the file
// first. Main thread only.
class ReminderSchedule : public QObject {
    Q_OBJECT

public:
    // Reads the file; nothing is armed before the first wakeUp() or add().
    ReminderSchedule(QString filePath, Clock clock, QObject* parent = nullptr);

    const QString& filePath() const { return m_filePath; }
    const QList<Reminder>& reminders() const { return m_reminders; }
    // The fire date the timer is set for; absent with nothing to wait for.
    std::optional<QDateTime> armedFor() const { return m_armedFor; }

    // Keeps the reminder and wakes up: one whose date has passed is due at once.
    void add(Reminder reminder);
    // Hands out what has fallen due by the clock and arms the timer for the next. The timer calls it;
    // so does the start of the program, and anyone who knows the clock has jumped.
    void wakeUp();

signals:
    void due(const Reminder& reminder);

private:
    void arm(const QDateTime& now);

    QString m_filePath;
    Clock m_clock;
    QList<Reminder> m_reminders;
    QTimer m_timer;
    std::optional<QDateTime> m_armedFor;
};
