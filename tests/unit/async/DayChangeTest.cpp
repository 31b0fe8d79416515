#include "core/async/DayChange.h"
#include "support/ManualWallClock.h"
#include "support/TestMain.h"

#include <QSignalSpy>
#include <QTest>
#include <QTimeZone>

namespace {
const QTimeZone berlin("Europe/Berlin");

QDateTime inBerlin(QDate day, QTime time) {
    return QDateTime(day, time, berlin);
}

// The day in Berlin on a wall clock the test moves, and what it told.
struct BerlinDay {
    explicit BerlinDay(const QDateTime& now)
        : time(now)
        , day(time.clock(), time.alarm(), berlin)
        , changed(&day, &DayChange::dayChanged) {}

    ManualWallClock time;
    DayChange day;
    QSignalSpy changed;
};
} // namespace

// The local day's change: one alarm for the next midnight on the zone's clocks, told at midnight and
// when the clock jumps into another day.
class DayChangeTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(berlin.isValid()); }

    void itArmsOneAlarmForTheNextLocalMidnight() {
        BerlinDay berlinDay(inBerlin(QDate(2026, 6, 17), QTime(15, 0)));
        QCOMPARE(berlinDay.day.today(), QDate(2026, 6, 17));
        QCOMPARE(berlinDay.time.armed(), QList<QDateTime>{inBerlin(QDate(2026, 6, 18), QTime(0, 0))});
    }

    void atMidnightItTellsTheNewDayAndArmsForTheNext() {
        BerlinDay berlinDay(inBerlin(QDate(2026, 6, 17), QTime(23, 59, 59)));
        berlinDay.time.advance(1);
        QCOMPARE(berlinDay.changed.size(), 1);
        QCOMPARE(berlinDay.day.today(), QDate(2026, 6, 18));
        QCOMPARE(berlinDay.time.armed(), QList<QDateTime>{inBerlin(QDate(2026, 6, 19), QTime(0, 0))});
    }

    void daysOf23And25HoursEndWhereTheClocksSay() {
        // Summer time begins: 02:00 becomes 03:00, and the day is 23 hours long.
        const BerlinDay spring(inBerlin(QDate(2026, 3, 29), QTime(12, 0)));
        QCOMPARE(spring.time.armed(), QList<QDateTime>{QDateTime(QDate(2026, 3, 29), QTime(22, 0), Qt::UTC)});
        // Summer time ends: 03:00 becomes 02:00 again, and the day is 25 hours long.
        const BerlinDay autumn(inBerlin(QDate(2026, 10, 25), QTime(12, 0)));
        QCOMPARE(autumn.time.armed(), QList<QDateTime>{QDateTime(QDate(2026, 10, 25), QTime(23, 0), Qt::UTC)});
    }

    void aMidnightTheClocksSkipIsTheFirstMomentOfTheDay() {
        // In São Paulo summer time began at midnight: 4 November 2018 started at 01:00.
        const QTimeZone saoPaulo("America/Sao_Paulo");
        QVERIFY(saoPaulo.isValid());
        ManualWallClock time(QDateTime(QDate(2018, 11, 3), QTime(12, 0), saoPaulo));
        DayChange day(time.clock(), time.alarm(), saoPaulo);
        QCOMPARE(day.nextMidnight(), QDateTime(QDate(2018, 11, 4), QTime(3, 0), Qt::UTC));
        QSignalSpy changed(&day, &DayChange::dayChanged);
        time.advanceTo(day.nextMidnight());
        QCOMPARE(changed.size(), 1);
        QCOMPARE(day.today(), QDate(2018, 11, 4));
    }

    void aJumpIntoAnotherDayTellsItAtOnce() {
        BerlinDay berlinDay(inBerlin(QDate(2026, 6, 17), QTime(15, 0)));
        // A resume on the morning after: the alarm is past, but doesn't ring by itself here.
        berlinDay.time.jumpTo(inBerlin(QDate(2026, 6, 18), QTime(8, 0)));
        QCOMPARE(berlinDay.changed.size(), 1);
        QCOMPARE(berlinDay.day.today(), QDate(2026, 6, 18));
        QCOMPARE(berlinDay.time.armed(), QList<QDateTime>{inBerlin(QDate(2026, 6, 19), QTime(0, 0))});
        // The clock set back a day.
        berlinDay.time.jumpTo(inBerlin(QDate(2026, 6, 17), QTime(8, 0)));
        QCOMPARE(berlinDay.changed.size(), 2);
        QCOMPARE(berlinDay.day.today(), QDate(2026, 6, 17));
        QCOMPARE(berlinDay.time.armed(), QList<QDateTime>{inBerlin(QDate(2026, 6, 18), QTime(0, 0))});
    }

    void aJumpWithinTheDayTellsNothing() {
        BerlinDay berlinDay(inBerlin(QDate(2026, 6, 17), QTime(15, 0)));
        berlinDay.time.jumpTo(inBerlin(QDate(2026, 6, 17), QTime(18, 30)));
        QCOMPARE(berlinDay.changed.size(), 0);
        QCOMPARE(berlinDay.time.armed(), QList<QDateTime>{inBerlin(QDate(2026, 6, 18), QTime(0, 0))});
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(DayChangeTest)
#include "DayChangeTest.moc"
