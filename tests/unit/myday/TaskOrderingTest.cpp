// My Day's order and today's bounds: the rank of each due date, the order within a rank, and the
// count of tasks due by the end of today.
#include "core/myday/TaskOrdering.h"
#include "core/myday/DueDate.h"
#include "support/MyDayTesting.h"
#include "support/TestMain.h"

#include <QTest>

using namespace MyDayTesting;

class TaskOrderingTest : public QObject {
    Q_OBJECT

    const QDateTime m_now = localNoon();
    const DayBounds m_today = DayBounds::at(m_now);
    const QDateTime m_startOfToday = m_now.date().startOfDay();

private slots:
    void endOfTodayIsOneSecondBeforeMidnight() {
        const QDateTime end = DayBounds::endOfTodayAt(m_now).toLocalTime();
        QCOMPARE(end.date(), m_now.date());
        QCOMPARE(end.time(), QTime(23, 59, 59));
    }

    void aTaskDueAtTheLastSecondOfTodayHasRankOne() {
        QCOMPARE(TaskOrdering::dueRank(dueAt("a", m_startOfToday.addSecs(86399)), m_today), TaskOrdering::dueToday);
    }

    void aTaskDueAtMidnightStartingTodayHasRankOneAndOneSecondEarlierRankZero() {
        QCOMPARE(TaskOrdering::dueRank(dueAt("a", m_startOfToday), m_today), TaskOrdering::dueToday);
        QCOMPARE(TaskOrdering::dueRank(dueAt("b", m_startOfToday.addSecs(-1)), m_today), TaskOrdering::overdue);
    }

    void aTaskDueTomorrowHasRankTwo() {
        QCOMPARE(TaskOrdering::dueRank(dueAt("a", m_startOfToday.addDays(1)), m_today), TaskOrdering::later);
    }

    void unparsableDueDatesHaveRankThree_data() {
        QTest::addColumn<QString>("dueDate");
        QTest::newRow("letters") << QStringLiteral("abc");
        QTest::newRow("leading blank") << QStringLiteral(" 1700000000000");
        QTest::newRow("leading tab") << QStringLiteral("\t1700000000000");
        QTest::newRow("leading NUL") << QStringLiteral("%1").arg(QChar(0)) + QStringLiteral("1700000000000");
        QTest::newRow("trailing blank") << QStringLiteral("1700000000000 ");
        QTest::newRow("empty") << QString();
        QTest::newRow("infinity") << QStringLiteral("inf");
        QTest::newRow("not a number") << QStringLiteral("nan");
    }

    void unparsableDueDatesHaveRankThree() {
        QFETCH(QString, dueDate);
        QCOMPARE(TaskOrdering::dueRank(task("a", {}, dueDate), m_today), TaskOrdering::undated);
    }

    void fractionsAndExponentsParse() {
        QCOMPARE(DueDate::milliseconds(QStringLiteral("1.7e12")), std::optional(1.7e12));
        QCOMPARE(DueDate::milliseconds(QStringLiteral("1700000000000.5")), std::optional(1700000000000.5));
    }

    void theOrderIsOverdueTodayLaterUndatedThenByDate() {
        const QList<NVTaskSummary> tasks{task("undated"), dueAt("later", m_now.addDays(3)),
                                         dueAt("today late", m_now.addSecs(3600)), dueAt("overdue", m_now.addDays(-2)),
                                         dueAt("today early", m_now.addSecs(-3600))};
        QCOMPARE(ids(TaskOrdering::sortTasks(tasks, m_today)),
                 (QStringList{"overdue", "today early", "today late", "later", "undated"}));
    }

    void undatedTasksSortByNameWhateverTheirArrival() {
        const QList<NVTaskSummary> tasks{task("1", "Zebra crossing"), task("2", "apple pie")};
        QCOMPARE(ids(TaskOrdering::sortTasks(tasks, m_today)), (QStringList{"2", "1"}));
        QCOMPARE(ids(TaskOrdering::sortTasks({tasks[1], tasks[0]}, m_today)), (QStringList{"2", "1"}));
    }

    void tasksWithTheSameDateAndNameKeepTheServiceOrder() {
        const QString due = millis(m_now);
        const QList<NVTaskSummary> tasks{task("b", "Same", due), task("a", "same", due), task("c", "Same", due)};
        QCOMPARE(ids(TaskOrdering::sortTasks(tasks, m_today)), (QStringList{"b", "a", "c"}));
    }

    void unparsableDatesSortAmongTheUndated() {
        const QList<NVTaskSummary> tasks{task("x", "b", QStringLiteral("abc")), task("y", "a"),
                                         dueAt("z", m_now.addDays(400))};
        QCOMPARE(ids(TaskOrdering::sortTasks(tasks, m_today)), (QStringList{"z", "y", "x"}));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(TaskOrderingTest)
#include "TaskOrderingTest.moc"
