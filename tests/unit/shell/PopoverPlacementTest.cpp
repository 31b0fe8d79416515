#include "core/shell/PopoverPlacement.h"
#include "support/TestMain.h"

#include <QTest>

using PopoverPlacement::topLeft;

class PopoverPlacementTest : public QObject {
    Q_OBJECT

    const QRect screen{0, 0, 1280, 800};
    const QSize popover{400, 500};

private slots:
    void hangsCentredBelowAnIconOnATopPanel() {
        const QRect icon(900, 0, 24, 24);
        QCOMPARE(topLeft(icon, QPoint(), popover, screen), QPoint(912 - 200, 24 + PopoverPlacement::gap));
    }

    void standsAboveAnIconOnABottomPanel() {
        const QRect icon(900, 776, 24, 24);
        QCOMPARE(topLeft(icon, QPoint(), popover, screen), QPoint(712, 776 - PopoverPlacement::gap - 500));
    }

    void staysOnScreenBesideTheRightEdge() {
        const QRect icon(1256, 0, 24, 24);
        QCOMPARE(topLeft(icon, QPoint(), popover, screen).x(), 1280 - 400);
    }

    void staysOnScreenBesideTheLeftEdge() {
        const QRect icon(0, 0, 24, 24);
        QCOMPARE(topLeft(icon, QPoint(), popover, screen).x(), 0);
    }

    void followsThePointerWithoutTrayGeometry() {
        QCOMPARE(topLeft(std::nullopt, QPoint(640, 10), popover, screen), QPoint(440, 11 + PopoverPlacement::gap));
        QCOMPARE(topLeft(QRect(), QPoint(640, 10), popover, screen), QPoint(440, 11 + PopoverPlacement::gap));
    }

    void respectsAnAvailableAreaThatIsNotAtTheOrigin() {
        const QRect secondScreen(1280, 30, 1920, 1050);
        const QPoint at = topLeft(std::nullopt, QPoint(1290, 40), popover, secondScreen);
        QCOMPARE(at, QPoint(1280, 41 + PopoverPlacement::gap));
    }

    void keepsTheTopLeftVisibleWhenLargerThanTheScreen() {
        QCOMPARE(topLeft(QRect(600, 0, 24, 24), QPoint(), QSize(2000, 1000), screen), QPoint(0, 0));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(PopoverPlacementTest)
#include "PopoverPlacementTest.moc"
