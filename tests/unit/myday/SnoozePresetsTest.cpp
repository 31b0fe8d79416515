// The quick times in the local time zone of the test's machine on ordinary days; the time-zone
// test pins zones with daylight-saving changes.
#include "core/myday/SnoozePresets.h"
#include "core/myday/QuickTimes.h"
#include "support/MyDayTesting.h"
#include "support/TestMain.h"

#include <QTest>

using namespace MyDayTesting;

namespace {
QDateTime local(QDate day, QTime time) {
    return QDateTime(day, time, Qt::LocalTime);
}
} // namespace

class SnoozePresetsTest : public QObject {
    Q_OBJECT

    const QDate m_wednesday{2026, 6, 17};

private slots:
    void atSevenInTheEveningThisEveningIsSixOfTheSameDay() {
        QCOMPARE(SnoozePresets::thisEvening(local(m_wednesday, QTime(19, 0))), local(m_wednesday, QTime(18, 0)));
        QCOMPARE(SnoozePresets::thisEvening(local(m_wednesday, QTime(8, 30))), local(m_wednesday, QTime(18, 0)));
    }

    void tomorrowMorningIsNineOfTheNextDay() {
        QCOMPARE(SnoozePresets::tomorrowMorning(local(m_wednesday, QTime(23, 59, 59))),
                 local(m_wednesday.addDays(1), QTime(9, 0)));
    }

    void onASundayNextMondayIsTheNextDayAndOnAMondaySevenDaysLater() {
        const QDate sunday(2026, 6, 21);
        const QDate monday(2026, 6, 22);
        QCOMPARE(sunday.dayOfWeek(), 7);
        QCOMPARE(SnoozePresets::nextMonday(local(sunday, QTime(20, 0))), local(monday, QTime(9, 0)));
        QCOMPARE(SnoozePresets::nextMonday(local(monday, QTime(7, 0))), local(monday.addDays(7), QTime(9, 0)));
        QCOMPARE(SnoozePresets::nextMonday(local(m_wednesday, QTime(12, 0))), local(monday, QTime(9, 0)));
    }

    void resultsAreInstantsInUTC() {
        QCOMPARE(SnoozePresets::thisEvening(local(m_wednesday, QTime(1, 0))).timeSpec(), Qt::UTC);
    }

    void anInvalidDateGivesTheFallbacks() { QCOMPARE(SnoozePresets::atTimeOfDay(QDate(), QTime(9, 0)), QDateTime()); }

    void theMenusOfferTheirEntriesInOrder() {
        QStringList reminders;
        for (const QuickTimes::ReminderTime time : QuickTimes::reminderTimes) {
            reminders.append(QuickTimes::label(time));
        }
        QCOMPARE(reminders, (QStringList{"In 30 minutes", "In 1 hour", "In 3 hours", "Tomorrow morning"}));
        QStringList moves;
        for (const QuickTimes::DueDateMove move : QuickTimes::dueDateMoves) {
            moves.append(QuickTimes::label(move));
        }
        QCOMPARE(moves, (QStringList{"+1 hour", "This evening", "Tomorrow 9 AM", "Next Monday"}));
        QCOMPARE(QuickTimes::remindMeTitle(), QStringLiteral("Remind me"));
        QCOMPARE(QuickTimes::moveDueDateTitle(), QStringLiteral("Move due date…"));
    }

    void remindersCountFromNowAndThePlusOneHourMoveToo() {
        const QDateTime now = local(m_wednesday, QTime(10, 15, 30));
        QCOMPARE(QuickTimes::fireDate(QuickTimes::ReminderTime::in30Minutes, now), now.addSecs(1800));
        QCOMPARE(QuickTimes::fireDate(QuickTimes::ReminderTime::in1Hour, now), now.addSecs(3600));
        QCOMPARE(QuickTimes::fireDate(QuickTimes::ReminderTime::in3Hours, now), now.addSecs(10800));
        QCOMPARE(QuickTimes::fireDate(QuickTimes::ReminderTime::tomorrowMorning, now),
                 local(m_wednesday.addDays(1), QTime(9, 0)));
        QCOMPARE(QuickTimes::dueDate(QuickTimes::DueDateMove::plusOneHour, now), now.addSecs(3600));
        QCOMPARE(QuickTimes::dueDate(QuickTimes::DueDateMove::thisEvening, now), local(m_wednesday, QTime(18, 0)));
        QCOMPARE(QuickTimes::dueDate(QuickTimes::DueDateMove::tomorrow9AM, now),
                 local(m_wednesday.addDays(1), QTime(9, 0)));
        QCOMPARE(QuickTimes::dueDate(QuickTimes::DueDateMove::nextMonday, now), local(QDate(2026, 6, 22), QTime(9, 0)));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(SnoozePresetsTest)
#include "SnoozePresetsTest.moc"
