#include "core/async/SerialQueue.h"
#include "support/TestMain.h"

#include <QCoreApplication>
#include <QMutex>
#include <QTest>
#include <atomic>

// Jobs one after another on one thread, in the order posted from any thread, and nothing after
// the queue stops.
class SerialQueueTest : public QObject {
    Q_OBJECT

private slots:
    void jobsRunInOrderOnTheQueuesOwnThread() {
        const std::unique_ptr<SerialQueue> queue = SerialQueue::onOwnThread(QStringLiteral("test.queue"));
        QMutex lock;
        QList<int> ran;
        QSet<QThread*> threads;
        for (int i = 0; i < 100; ++i) {
            queue->post([&, i] {
                const QMutexLocker locker(&lock);
                ran.append(i);
                threads.insert(QThread::currentThread());
            });
        }
        const auto ranCount = [&] {
            const QMutexLocker locker(&lock);
            return ran.size();
        };
        QTRY_COMPARE(ranCount(), 100);
        queue->stop();
        QVERIFY(std::is_sorted(ran.begin(), ran.end()));
        QCOMPARE(threads.size(), 1);
        QVERIFY(*threads.begin() != QThread::currentThread());
        QCOMPARE((*threads.begin())->objectName(), QStringLiteral("test.queue"));
    }

    void jobsPostedFromManyThreadsAllRun() {
        const std::unique_ptr<SerialQueue> queue = SerialQueue::onOwnThread(QStringLiteral("test.queue"));
        std::atomic<int> count = 0;
        QList<QThread*> posters;
        for (int t = 0; t < 4; ++t) {
            posters.append(QThread::create([&] {
                for (int i = 0; i < 250; ++i) {
                    queue->post([&] { ++count; });
                }
            }));
            posters.last()->start();
        }
        for (QThread* poster : posters) {
            poster->wait();
            delete poster;
        }
        QTRY_COMPARE(count.load(), 1000);
    }

    void aQueueOnTheCurrentThreadRunsWhenItsLoopDoes() {
        const std::unique_ptr<SerialQueue> queue = SerialQueue::onCurrentThread();
        QList<int> ran;
        queue->post([&] { ran.append(1); });
        queue->post([&] { ran.append(2); });
        QVERIFY(ran.isEmpty());
        QCoreApplication::processEvents();
        QCOMPARE(ran, (QList<int>{1, 2}));
    }

    void aStoppedQueueRunsNothingMore() {
        const std::unique_ptr<SerialQueue> queue = SerialQueue::onCurrentThread();
        bool ran = false;
        queue->post([&] { ran = true; });
        queue->stop();
        queue->post([&] { ran = true; });
        QCoreApplication::processEvents();
        QVERIFY(!ran);

        const std::unique_ptr<SerialQueue> threaded = SerialQueue::onOwnThread(QStringLiteral("test.queue"));
        threaded->stop();
        threaded->post([&] { ran = true; });
        QTest::qWait(20);
        QVERIFY(!ran);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(SerialQueueTest)
#include "SerialQueueTest.moc"
