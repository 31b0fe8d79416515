#include "core/async/LoadGuard.h"
#include "support/RunTask.h"
#include "support/TestMain.h"

#include <QTest>
#include <memory>
#include <qcoro/qcorotimer.h>
#include <stdexcept>

using namespace std::chrono_literals;

namespace {
QCoro::Task<int> answerLater(int value) {
    co_await QCoro::sleepFor(5ms);
    co_return value;
}

QCoro::Task<> finishLater() {
    co_await QCoro::sleepFor(5ms);
}

QCoro::Task<int> failLater() {
    co_await QCoro::sleepFor(5ms);
    throw std::runtime_error("broken on purpose");
}

// Awaits through the guard and tells what reached the caller.
QCoro::Task<std::optional<int>> landed(LoadGuard guard, QCoro::Task<int> task) {
    QCoro::Task<std::optional<int>> guarded = awaitGuarded(std::move(guard), std::move(task));
    co_return co_await std::move(guarded);
}

// An owner whose loads start one after the other, the newest winning.
class Loader : public QObject {
public:
    LatestWins latest;
    QCoro::Task<std::optional<int>> load(int value) {
        QCoro::Task<std::optional<int>> guarded = awaitGuarded(LoadGuard(this, latest), answerLater(value));
        co_return co_await std::move(guarded);
    }
};
} // namespace

// Awaiting for an owner that may be gone, or whose load may be overtaken, when the answer lands.
class LoadGuardTest : public QObject {
    Q_OBJECT

private slots:
    void aLivingOwnerGetsTheValue() {
        QObject owner;
        QCOMPARE(runTask(landed(LoadGuard(&owner), answerLater(7))), std::optional(7));
    }

    void anOwnerGoneMeanwhileGetsNothing() {
        auto owner = std::make_unique<QObject>();
        QCoro::Task<std::optional<int>> landing = landed(LoadGuard(owner.get()), answerLater(7));
        owner.reset();
        QCOMPARE(runTask(std::move(landing)), std::nullopt);
    }

    void onlyTheNewestLoadLands() {
        Loader loader;
        QCoro::Task<std::optional<int>> first = loader.load(1);
        QCoro::Task<std::optional<int>> second = loader.load(2);
        QCOMPARE(runTask(std::move(first)), std::nullopt);
        QCOMPARE(runTask(std::move(second)), std::optional(2));
    }

    void aConditionThatStopsHoldingDropsTheValue() {
        QObject owner;
        QString activeAccount = QStringLiteral("ada");
        const LoadGuard guard =
            LoadGuard(&owner).also([&activeAccount, askedFor = activeAccount] { return activeAccount == askedFor; });
        QCoro::Task<std::optional<int>> landing = landed(guard, answerLater(7));
        activeAccount = QStringLiteral("ben");
        QCOMPARE(runTask(std::move(landing)), std::nullopt);
        QVERIFY(!guard.holds());
    }

    void aFailureReachesTheCallerWhileTheGuardHolds() {
        QObject owner;
        QVERIFY_THROWS_EXCEPTION(std::runtime_error, runTask(landed(LoadGuard(&owner), failLater())));
    }

    void aFailureOfALoadNoLongerWantedIsDropped() {
        auto owner = std::make_unique<QObject>();
        QCoro::Task<std::optional<int>> landing = landed(LoadGuard(owner.get()), failLater());
        owner.reset();
        QCOMPARE(runTask(std::move(landing)), std::nullopt);
    }

    void aTaskWithoutAValueTellsWhetherTheGuardStillHolds() {
        auto owner = std::make_unique<QObject>();
        QVERIFY(runTask(awaitGuarded(LoadGuard(owner.get()), finishLater())));
        QCoro::Task<bool> dropped = awaitGuarded(LoadGuard(owner.get()), finishLater());
        owner.reset();
        QVERIFY(!runTask(std::move(dropped)));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(LoadGuardTest)
#include "LoadGuardTest.moc"
