#include "core/compose/FlowRows.h"
#include "support/TestMain.h"

#include <QTest>

using FlowRows::Row;

class FlowRowsTest : public QObject {
    Q_OBJECT

private slots:
    void childrenShareARowWhileTheyFitWithTheSpacing() {
        // 40 + 8 + 40 = 88 fits 100; a third would need 136.
        const QList<QSizeF> sizes{{40, 20}, {40, 30}, {40, 20}};
        QCOMPARE(FlowRows::computeRows(sizes, 8, 100), (QList<Row>{{{0, 1}, 88, 30}, {{2}, 40, 20}}));
    }

    void aChildThatExactlyFillsTheRowStaysInIt() {
        const QList<QSizeF> sizes{{46, 10}, {46, 10}};
        QCOMPARE(FlowRows::computeRows(sizes, 8, 100), (QList<Row>{{{0, 1}, 100, 10}}));
    }

    void aSingleChildWiderThanTheContainerIsPlacedAloneInItsRowAtItsOwnWidth() {
        const QList<QSizeF> sizes{{30, 20}, {250, 24}, {30, 20}};
        const QList<Row> rows = FlowRows::computeRows(sizes, 8, 100);
        QCOMPARE(rows, (QList<Row>{{{0}, 30, 20}, {{1}, 250, 24}, {{2}, 30, 20}}));
        QCOMPARE(FlowRows::sizeThatFits(rows, 8), QSizeF(250, 20 + 24 + 20 + 2 * 8));
        QCOMPARE(FlowRows::placeSubviews(rows, sizes, 8).at(1), QPointF(0, 28));
    }

    void theSizeIsTheWidestRowByTheRowsAndTheSpacingBetweenThem() {
        const QList<Row> rows{{{0, 1}, 90, 30}, {{2}, 40, 20}};
        QCOMPARE(FlowRows::sizeThatFits(rows, 6), QSizeF(90, 56));
        QCOMPARE(FlowRows::sizeThatFits({}, 6), QSizeF(0, 0));
    }

    void childrenAreCentredVerticallyInTheirRow() {
        const QList<QSizeF> sizes{{40, 20}, {40, 30}, {40, 20}};
        const QList<Row> rows = FlowRows::computeRows(sizes, 8, 100);
        QCOMPARE(FlowRows::placeSubviews(rows, sizes, 8), (QList<QPointF>{{0, 5}, {48, 0}, {0, 38}}));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(FlowRowsTest)
#include "FlowRowsTest.moc"
