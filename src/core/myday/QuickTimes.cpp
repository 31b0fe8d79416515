#include "core/myday/QuickTimes.h"

#include "core/myday/SnoozePresets.h"

#include <QCoreApplication>

namespace QuickTimes {

QString label(ReminderTime time) {
    switch (time) {
    case ReminderTime::in30Minutes:
        return QCoreApplication::translate("QuickTimes", "In 30 minutes");
    case ReminderTime::in1Hour:
        return QCoreApplication::translate("QuickTimes", "In 1 hour");
    case ReminderTime::in3Hours:
        return QCoreApplication::translate("QuickTimes", "In 3 hours");
    case ReminderTime::tomorrowMorning:
        break;
    }
    return QCoreApplication::translate("QuickTimes", "Tomorrow morning");
}

QString label(DueDateMove move) {
    switch (move) {
    case DueDateMove::plusOneHour:
        return QCoreApplication::translate("QuickTimes", "+1 hour");
    case DueDateMove::thisEvening:
        return QCoreApplication::translate("QuickTimes", "This evening");
    case DueDateMove::tomorrow9AM:
        return QCoreApplication::translate("QuickTimes", "Tomorrow 9 AM");
    case DueDateMove::nextMonday:
        break;
    }
    return QCoreApplication::translate("QuickTimes", "Next Monday");
}

QString remindMeTitle() {
    return QCoreApplication::translate("QuickTimes", "Remind me");
}

QString moveDueDateTitle() {
    return QCoreApplication::translate("QuickTimes", "Move due date…");
}

QDateTime fireDate(ReminderTime time, const QDateTime& now) {
    switch (time) {
    case ReminderTime::in30Minutes:
        return now.addSecs(1800);
    case ReminderTime::in1Hour:
        return now.addSecs(3600);
    case ReminderTime::in3Hours:
        return now.addSecs(10800);
    case ReminderTime::tomorrowMorning:
        break;
    }
    return SnoozePresets::tomorrowMorning(now);
}

QDateTime dueDate(DueDateMove move, const QDateTime& now) {
    switch (move) {
    case DueDateMove::plusOneHour:
        return now.addSecs(3600);
    case DueDateMove::thisEvening:
        return SnoozePresets::thisEvening(now);
    case DueDateMove::tomorrow9AM:
        return SnoozePresets::tomorrowMorning(now);
    case DueDateMove::nextMonday:
        break;
    }
    return SnoozePresets::nextMonday(now);
}

} // namespace QuickTimes
