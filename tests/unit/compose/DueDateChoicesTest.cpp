#include "core/compose/DueDateChoices.h"
#include "support/TestMain.h"

#include <QTest>

namespace {
const QTimeZone berlin("Europe/Berlin");

Clock clockAt(const QDateTime& now) {
    return [now] { return now; };
}

QDateTime utc(int year, int month, int day, int hour, int minute = 0) {
    return {QDate(year, month, day), QTime(hour, minute), Qt::UTC};
}
} // namespace

class DueDateChoicesTest : public QObject {
    Q_OBJECT

private slots:
    void todayAtFiveIsFivePmOfTodayInTheUsersZone() {
        // 10:00 UTC is 11:00 in Berlin in winter; 17:00 there is 16:00 UTC.
        QCOMPARE(DueDateChoices::todayAtFive(clockAt(utc(2026, 11, 25, 10)), berlin), utc(2026, 11, 25, 16));
    }

    void todayIsTheUsersDayNotTheDayInUtc() {
        // 23:30 UTC on the 25th is already the 26th in Berlin.
        QCOMPARE(DueDateChoices::todayAtFive(clockAt(utc(2026, 11, 25, 23, 30)), berlin), utc(2026, 11, 26, 16));
    }

    void tomorrowAtNineIsACalendarDayLaterAcrossTheChangeToSummerTime() {
        // The night of 28 to 29 March 2026 is an hour short: 09:00 CEST is 07:00 UTC.
        QCOMPARE(DueDateChoices::tomorrowAtNine(clockAt(utc(2026, 3, 28, 19)), berlin), utc(2026, 3, 29, 7));
    }

    void anHourTheClocksSkipGivesTheFirstTimeAfterTheGap() {
        // On 29 March 2026 Berlin's clocks go from 02:00 straight to 03:00 CEST (01:00 UTC).
        QCOMPARE(DueDateChoices::at(2, 1, clockAt(utc(2026, 3, 28, 11)), berlin), utc(2026, 3, 29, 1));
    }

    void anHourTheClocksRepeatGivesItsFirstOccurrence() {
        // On 25 October 2026 02:00 comes twice: first in summer time (00:00 UTC), then an hour later.
        QCOMPARE(DueDateChoices::at(2, 1, clockAt(utc(2026, 10, 24, 10)), berlin), utc(2026, 10, 25, 0));
    }

    void minutesAndSecondsAreZero() {
        const QDateTime now(QDate(2026, 6, 1), QTime(8, 47, 13, 250), Qt::UTC);
        QCOMPARE(DueDateChoices::at(13, 2, clockAt(now), QTimeZone::utc()), utc(2026, 6, 3, 13));
    }

    void aDayThatCantBeMadeGivesNoDate() { QVERIFY(!DueDateChoices::at(9, 1, clockAt(QDateTime()), berlin).isValid()); }
};

NORVANEBAR_TEST_GUILESS_MAIN(DueDateChoicesTest)
#include "DueDateChoicesTest.moc"
