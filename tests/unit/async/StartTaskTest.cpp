#include "core/async/StartTask.h"
#include "core/async/LatestWins.h"
#include "support/RunTask.h"
#include "support/TestMain.h"

#include <QTest>
#include <qcoro/qcorotimer.h>
#include <stdexcept>

using namespace std::chrono_literals;

namespace {
QCoro::Task<int> answerLater(int value) {
    co_await QCoro::sleepFor(10ms);
    co_return value;
}

QCoro::Task<> failLater() {
    co_await QCoro::sleepFor(10ms);
    throw std::runtime_error("broken on purpose");
}

QStringList reported;
void record(const QString& description) {
    reported.append(description);
}
} // namespace

// Starting a task nobody awaits, and dropping stale results.
class StartTaskTest : public QObject {
    Q_OBJECT

private slots:
    void init() { reported.clear(); }

    void theResultReachesALivingContext() {
        QObject context;
        std::optional<int> received;
        startTask(&context, answerLater(7), [&received](int value) { received = value; });
        QVERIFY(!received);
        QTRY_COMPARE(received, std::optional(7));
    }

    void aContextThatIsGoneGetsNothing() {
        auto context = std::make_unique<QObject>();
        QObject watcher;
        bool delivered = false;
        bool watcherSawTheEnd = false;
        startTask(context.get(), answerLater(1), [&delivered](int) { delivered = true; });
        startTask(&watcher, answerLater(2), [&watcherSawTheEnd](int) { watcherSawTheEnd = true; });
        context.reset();
        QTRY_VERIFY(watcherSawTheEnd);
        QVERIFY(!delivered);
    }

    void anEscapedExceptionIsReported() {
        const EscapedExceptionHandler previous = setEscapedExceptionHandler(&record);
        QObject context;
        startTask(&context, failLater());
        QTRY_COMPARE(reported, QStringList{QStringLiteral("broken on purpose")});
        setEscapedExceptionHandler(previous);
    }

    void anEscapedExceptionIsReportedAfterItsContextIsGone() {
        const EscapedExceptionHandler previous = setEscapedExceptionHandler(&record);
        auto context = std::make_unique<QObject>();
        startTask(context.get(), failLater());
        context.reset();
        QTRY_COMPARE(reported.size(), 1);
        setEscapedExceptionHandler(previous);
    }

    void runTaskGivesUpOnATaskThatNeverEnds() {
        QVERIFY_THROWS_EXCEPTION(std::runtime_error, runTask(QCoro::sleepFor(300ms), 50ms));
        // The task goes on after runTask gave up, and ends on its own.
        QTest::qWait(400);
    }

    void runTaskThrowsWhatTheTaskThrew() {
        QVERIFY_THROWS_EXCEPTION(std::runtime_error, runTask(failLater()));
        QCOMPARE(runTask(answerLater(3)), 3);
    }

    void onlyTheNewestTicketIsCurrent() {
        LatestWins guard;
        QCOMPARE(guard.current(), 0);
        const qint64 first = guard.raise();
        QVERIFY(guard.isCurrent(first));
        const qint64 second = guard.raise();
        QVERIFY(!guard.isCurrent(first));
        QVERIFY(guard.isCurrent(second));
        QCOMPARE(guard.current(), second);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(StartTaskTest)
#include "StartTaskTest.moc"
