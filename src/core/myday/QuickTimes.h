#pragma once

#include <QDateTime>
#include <QList>
#include <QString>

// The times a row's menus offer, counted from the moment of the click ("now").
namespace QuickTimes {

// "Remind me": when the local reminder fires.
enum class ReminderTime { in30Minutes, in1Hour, in3Hours, tomorrowMorning };
// "Move due date…": the task's new due date. "+1 hour" counts from now, not from the old date.
enum class DueDateMove { plusOneHour, thisEvening, tomorrow9AM, nextMonday };

inline const QList<ReminderTime> reminderTimes{ReminderTime::in30Minutes, ReminderTime::in1Hour, ReminderTime::in3Hours,
                                               ReminderTime::tomorrowMorning};
inline const QList<DueDateMove> dueDateMoves{DueDateMove::plusOneHour, DueDateMove::thisEvening,
                                             DueDateMove::tomorrow9AM, DueDateMove::nextMonday};

// The menu entries: "In 30 minutes", …, "Tomorrow morning"; "+1 hour", …, "Next Monday".
QString label(ReminderTime time);
QString label(DueDateMove move);
// The title of each menu: "Remind me", "Move due date…".
QString remindMeTitle();
QString moveDueDateTitle();

QDateTime fireDate(ReminderTime time, const QDateTime& now);
QDateTime dueDate(DueDateMove move, const QDateTime& now);

} // namespace QuickTimes
