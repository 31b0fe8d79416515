#include "core/shell/StatusItemIcon.h"
#include "support/TestMain.h"

#include <QTest>

class StatusItemIconTest : public QObject {
    Q_OBJECT

    // The design's frame has its origin at the lower left; images count rows from the top.
    static QPoint onImage(qreal x, qreal y, qreal scale) {
        return {static_cast<int>(x * scale), static_cast<int>((StatusItemIcon::pointSize - y) * scale)};
    }

private slots:
    void isEighteenPointsSquareAtEachScale_data() {
        QTest::addColumn<qreal>("scale");
        QTest::newRow("1x") << 1.0;
        QTest::newRow("2x") << 2.0;
    }
    void isEighteenPointsSquareAtEachScale() {
        QFETCH(qreal, scale);
        const QImage icon = StatusItemIcon::make(Qt::black, scale);
        QCOMPARE(icon.size(), QSize(qRound(18 * scale), qRound(18 * scale)));
        QCOMPARE(icon.text(QStringLiteral("Description")), QStringLiteral("NorvaneBar"));
    }

    void inksTheChevronAndTheBaseLine() {
        const qreal scale = 4.0;
        const QImage icon = StatusItemIcon::make(Qt::black, scale);
        for (const QPointF point : {QPointF(4, 8.5), QPointF(9, 13.5), QPointF(14, 8.5), QPointF(6.5, 11),
                                    QPointF(4, 4), QPointF(9, 4), QPointF(14, 4)}) {
            const QColor pixel = icon.pixelColor(onImage(point.x(), point.y(), scale));
            QVERIFY2(pixel.alpha() > 200, qPrintable(QStringLiteral("no ink at %1,%2").arg(point.x()).arg(point.y())));
            QCOMPARE(pixel.red(), 0);
        }
    }

    void leavesTheRestTransparent() {
        const qreal scale = 4.0;
        const QImage icon = StatusItemIcon::make(Qt::black, scale);
        // Inside the chevron, between chevron and line, and the corners.
        for (const QPointF point : {QPointF(9, 10), QPointF(9, 6.3), QPointF(1, 1), QPointF(17, 17), QPointF(1, 17)}) {
            QCOMPARE(icon.pixelColor(onImage(point.x(), point.y(), scale)).alpha(), 0);
        }
    }

    void chevronPointsUp() {
        const qreal scale = 4.0;
        const QImage icon = StatusItemIcon::make(Qt::black, scale);
        // A point of the left arm is inked; its mirror image across the middle row is not.
        QVERIFY(icon.pixelColor(onImage(6.5, 11, scale)).alpha() > 200);
        QCOMPARE(icon.pixelColor(onImage(6.5, 18 - 11, scale)).alpha(), 0);
    }

    void takesItsInkFromTheCaller() {
        const QImage icon = StatusItemIcon::make(Qt::white, 2.0);
        const QColor pixel = icon.pixelColor(onImage(9, 4, 2.0));
        QVERIFY(pixel.alpha() > 200);
        QCOMPARE(pixel.red(), 255);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(StatusItemIconTest)
#include "StatusItemIconTest.moc"
