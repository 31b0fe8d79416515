// My Day's sections and quick times in two pinned time zones, on the days their clocks go forward
// and back: today's bounds stay 00:00:00 to 23:59:59 on days of 23 and 25 hours, and the quick
// times land on the wall-clock hour.
#include "core/myday/DayBounds.h"
#include "core/myday/QuickTimes.h"
#include "core/myday/SnoozePresets.h"
#include "core/myday/TaskOrdering.h"
#include "support/MyDayTesting.h"
#include "support/TestMain.h"

#include <QTest>
#include <ctime>

using namespace MyDayTesting;

namespace {
// A zone, the day its clocks go forward (a Sunday) and back, and the hour that is skipped on the
// first and repeated on the second.
struct Zone {
    QByteArray name;
    QDate forward;
    QDate back;
    QTime skipped;
    QTime repeated;
};

const QList<Zone> zones{
    {"Europe/Berlin", QDate(2026, 3, 29), QDate(2026, 10, 25), QTime(2, 30), QTime(2, 30)},
    {"America/New_York", QDate(2026, 3, 8), QDate(2026, 11, 1), QTime(2, 30), QTime(1, 30)},
};

void pin(const QByteArray& zone) {
    qputenv("TZ", zone);
    tzset();
}

QDateTime local(QDate day, QTime time) {
    return QDateTime(day, time, Qt::LocalTime);
}

void addZoneRows() {
    QTest::addColumn<int>("zone");
    for (qsizetype index = 0; index < zones.size(); ++index) {
        QTest::newRow(zones[index].name.constData()) << static_cast<int>(index);
    }
}
} // namespace

class MyDayTimeZoneTest : public QObject {
    Q_OBJECT

    const Zone& zone() {
        QFETCH(int, zone);
        pin(zones[zone].name);
        return zones[zone];
    }

private slots:
    void cleanupTestCase() { pin("UTC"); }

    void theZoneIsPinned_data() { addZoneRows(); }
    void theZoneIsPinned() {
        const Zone& pinned = zone();
        const QDateTime summer = local(QDate(2026, 7, 1), QTime(12, 0));
        const QDateTime winter = local(QDate(2026, 1, 15), QTime(12, 0));
        QVERIFY(summer.offsetFromUtc() - winter.offsetFromUtc() == 3600);
        QVERIFY(pinned.name == "Europe/Berlin" ? winter.offsetFromUtc() == 3600 : winter.offsetFromUtc() == -5 * 3600);
    }

    void todayEndsAtTheLastSecondOnTheDayOfTwentyThreeHours_data() { addZoneRows(); }
    void todayEndsAtTheLastSecondOnTheDayOfTwentyThreeHours() {
        const Zone& pinned = zone();
        const QDateTime noon = local(pinned.forward, QTime(12, 0));
        const QDateTime end = DayBounds::endOfTodayAt(noon.toUTC()).toLocalTime();
        QCOMPARE(end, local(pinned.forward, QTime(23, 59, 59)));
        QCOMPARE(local(pinned.forward, QTime(0, 0)).secsTo(end), 23 * 3600 - 1);
    }

    void todayEndsAtTheLastSecondOnTheDayOfTwentyFiveHours_data() { addZoneRows(); }
    void todayEndsAtTheLastSecondOnTheDayOfTwentyFiveHours() {
        const Zone& pinned = zone();
        const QDateTime end = DayBounds::endOfTodayAt(local(pinned.back, QTime(12, 0)).toUTC());
        QCOMPARE(end, local(pinned.back, QTime(23, 59, 59)));
        QCOMPARE(local(pinned.back, QTime(0, 0)).secsTo(end), 25 * 3600 - 1);
    }

    void theSectionsFollowTheWallClockAcrossTheChange_data() { addZoneRows(); }
    void theSectionsFollowTheWallClockAcrossTheChange() {
        const Zone& pinned = zone();
        for (const QDate day : {pinned.forward, pinned.back}) {
            const DayBounds today = DayBounds::at(local(day, QTime(15, 0)).toUTC());
            const auto rank = [&today](const QDateTime& due) { return TaskOrdering::dueRank(dueAt("t", due), today); };
            QCOMPARE(rank(local(day.addDays(-1), QTime(23, 59, 59))), TaskOrdering::overdue);
            QCOMPARE(rank(local(day, QTime(0, 0))), TaskOrdering::dueToday);
            QCOMPARE(rank(local(day, QTime(4, 0))), TaskOrdering::dueToday);
            QCOMPARE(rank(local(day, QTime(23, 59, 59))), TaskOrdering::dueToday);
            QCOMPARE(rank(local(day.addDays(1), QTime(0, 0))), TaskOrdering::later);
        }
    }

    void tomorrowMorningIsNineOnTheWallClockAcrossTheChange_data() { addZoneRows(); }
    void tomorrowMorningIsNineOnTheWallClockAcrossTheChange() {
        const Zone& pinned = zone();
        const QDateTime beforeForward = local(pinned.forward.addDays(-1), QTime(20, 0));
        const QDateTime forwardMorning = SnoozePresets::tomorrowMorning(beforeForward);
        QCOMPARE(forwardMorning, local(pinned.forward, QTime(9, 0)));
        QCOMPARE(beforeForward.secsTo(forwardMorning), 12 * 3600);
        const QDateTime beforeBack = local(pinned.back.addDays(-1), QTime(20, 0));
        const QDateTime backMorning = QuickTimes::fireDate(QuickTimes::ReminderTime::tomorrowMorning, beforeBack);
        QCOMPARE(backMorning, local(pinned.back, QTime(9, 0)));
        QCOMPARE(beforeBack.secsTo(backMorning), 14 * 3600);
    }

    void thisEveningAndNextMondayLandOnTheWallClock_data() { addZoneRows(); }
    void thisEveningAndNextMondayLandOnTheWallClock() {
        const Zone& pinned = zone();
        // Both changes fall on a Sunday.
        QCOMPARE(pinned.forward.dayOfWeek(), 7);
        const QDateTime earlySunday = local(pinned.forward, QTime(1, 0));
        QCOMPARE(QuickTimes::dueDate(QuickTimes::DueDateMove::thisEvening, earlySunday),
                 local(pinned.forward, QTime(18, 0)));
        QCOMPARE(earlySunday.secsTo(SnoozePresets::thisEvening(earlySunday)), 16 * 3600);
        const QDateTime saturday = local(pinned.back.addDays(-1), QTime(18, 30));
        QCOMPARE(QuickTimes::dueDate(QuickTimes::DueDateMove::nextMonday, saturday),
                 local(pinned.back.addDays(1), QTime(9, 0)));
        QCOMPARE(SnoozePresets::nextMonday(earlySunday), local(pinned.forward.addDays(1), QTime(9, 0)));
    }

    void aSkippedTimeGivesTheFirstMomentAfterTheJump_data() { addZoneRows(); }
    void aSkippedTimeGivesTheFirstMomentAfterTheJump() {
        const Zone& pinned = zone();
        const QDateTime result = SnoozePresets::atTimeOfDay(pinned.forward, pinned.skipped);
        QCOMPARE(result.toLocalTime().time(), QTime(3, 0));
        QCOMPARE(result.toLocalTime().date(), pinned.forward);
        QCOMPARE(result.addSecs(-1).toLocalTime().time(), QTime(1, 59, 59));
    }

    void aRepeatedTimeGivesItsFirstOccurrence_data() { addZoneRows(); }
    void aRepeatedTimeGivesItsFirstOccurrence() {
        const Zone& pinned = zone();
        const QDateTime result = SnoozePresets::atTimeOfDay(pinned.back, pinned.repeated);
        QCOMPARE(result.toLocalTime().time(), pinned.repeated);
        // The second occurrence is an hour later and shows the same wall-clock time.
        QCOMPARE(result.addSecs(3600).toLocalTime().time(), pinned.repeated);
        QCOMPARE(result.addSecs(-3600).toLocalTime().time(), pinned.repeated.addSecs(-3600));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(MyDayTimeZoneTest)
#include "MyDayTimeZoneTest.moc"
