#include "core/recording/FramePool.h"
#include "support/TestMain.h"

#include <QTest>
#include <QThread>

// Pictures to compose frames into: used again once let go, from whichever thread lets go.
class FramePoolTest : public QObject {
    Q_OBJECT

private slots:
    void aPictureLetGoIsGivenAgain() {
        const std::unique_ptr<FramePool> pool = FramePool::create({32, 16});
        const uchar* first = nullptr;
        {
            std::optional<QImage> picture = pool->take();
            QVERIFY(picture);
            QCOMPARE(picture->size(), QSize(32, 16));
            QCOMPARE(picture->format(), QImage::Format_RGB32);
            first = picture->constBits();
        }
        std::optional<QImage> again = pool->take();
        QCOMPARE(again->constBits(), first);
    }

    void drawingIntoAPictureUsesThePoolsMemory() {
        const std::unique_ptr<FramePool> pool = FramePool::create({8, 8});
        std::optional<QImage> picture = pool->take();
        const uchar* memory = picture->constBits();
        picture->fill(Qt::green);
        QCOMPARE(picture->constBits(), memory);
    }

    void picturesHeldElsewhereAreNotGivenTwice() {
        const std::unique_ptr<FramePool> pool = FramePool::create({8, 8});
        QList<QImage> held;
        QSet<const uchar*> memory;
        for (int i = 0; i < 8; ++i) {
            std::optional<QImage> picture = pool->take();
            QVERIFY2(picture, qPrintable(QString::number(i)));
            memory.insert(picture->constBits());
            held.append(*picture);
        }
        QCOMPARE(memory.size(), 8);
        QVERIFY(!pool->take());

        // Let go on another thread, as a writer does.
        QThread* letGo = QThread::create([held = std::exchange(held, {})]() mutable { held.clear(); });
        letGo->start();
        letGo->wait();
        delete letGo;
        QVERIFY(pool->take());
    }

    void noPictureIsMadeBeforeOneIsTaken() {
        const std::unique_ptr<FramePool> pool = FramePool::create({3840, 2160});
        QCOMPARE(pool->pictureCount(), 0);
        std::optional<QImage> picture = pool->take();
        QCOMPARE(pool->pictureCount(), 1);
        picture.reset();
        QVERIFY(pool->take());
        QCOMPARE(pool->pictureCount(), 1);
    }

    void anEmptySizeHasNoPool() { QVERIFY(!FramePool::create({0, 10})); }
};

NORVANEBAR_TEST_GUILESS_MAIN(FramePoolTest)
#include "FramePoolTest.moc"
