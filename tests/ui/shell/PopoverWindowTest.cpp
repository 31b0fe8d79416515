#include "support/PopoverFixture.h"
#include "support/QuickItems.h"
#include "support/TestMain.h"

#include <QAccessible>
#include <QCursor>
#include <QGuiApplication>
#include <QQuickItem>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>

using namespace std::chrono_literals;

class PopoverWindowTest : public QObject {
    Q_OBJECT

    std::unique_ptr<PopoverFixture> m_fixture;

private slots:
    void initTestCase() { PopoverWindow::configureQuick(); }
    void init() { m_fixture = std::make_unique<PopoverFixture>(); }
    void cleanup() { m_fixture.reset(); }

    void loadsItsPageOnce() {
        PopoverWindow& popover = m_fixture->popover;
        QVERIFY(!popover.rootObject());
        popover.prepare();
        QVERIFY(popover.rootObject());
        QQuickItem* page = popover.rootObject();
        popover.prepare();
        QCOMPARE(popover.rootObject(), page);
        QVERIFY(popover.width() > 0 && popover.height() > 0);
    }

    void buildsItsPageWhenFirstShownAndNotBefore() {
        PopoverWindow& popover = m_fixture->popover;
        QVERIFY(!popover.rootObject());
        popover.showPopover();
        QVERIFY(QTest::qWaitForWindowExposed(&popover));
        QVERIFY(popover.rootObject());
        QVERIFY(QuickItems::visualChild(popover.rootObject(), QStringLiteral("connectButton")));
    }

    void hiddenForItsDelayItLetsItsPageGoAndBuildsItAnewWhenShown() {
        PopoverWindow& popover = m_fixture->popover;
        // Long enough for the hidden window's loss of the focus to arrive before it shows again.
        popover.setReleaseDelay(500ms);
        popover.showPopover();
        QVERIFY(QTest::qWaitForWindowExposed(&popover));
        popover.hide();
        QTRY_VERIFY(!popover.rootObject());
        popover.showPopover();
        QVERIFY(QTest::qWaitForWindowExposed(&popover));
        QVERIFY(QuickItems::visualChild(popover.rootObject(), QStringLiteral("connectButton")));
        QVERIFY(popover.width() > 0 && popover.height() > 0);
    }

    void keepsItsPageWhileShownAndCountsItsDelayFromTheLastHiding() {
        PopoverWindow& popover = m_fixture->popover;
        popover.setReleaseDelay(1000ms);
        popover.showPopover();
        QVERIFY(QTest::qWaitForWindowExposed(&popover));
        QQuickItem* page = popover.rootObject();
        QTest::qWait(1200);
        QCOMPARE(popover.rootObject(), page);
        popover.hide();
        QTest::qWait(600);
        popover.showPopover();
        QVERIFY(QTest::qWaitForWindowExposed(&popover));
        popover.hide();
        // Past the delay of the first hiding, within the second's.
        QTest::qWait(600);
        QCOMPARE(popover.rootObject(), page);
        QTRY_VERIFY(!popover.rootObject());
    }

    void isAFramelessToolWindowOnTop() {
        PopoverWindow& popover = m_fixture->popover;
        QVERIFY(popover.flags().testFlag(Qt::FramelessWindowHint));
        QVERIFY(popover.flags().testFlag(Qt::Tool));
        QVERIFY(popover.flags().testFlag(Qt::WindowStaysOnTopHint));
    }

    void namesItsContentForAssistiveTechnology() {
        PopoverWindow& popover = m_fixture->popover;
        popover.prepare();
        popover.show();
        QVERIFY(QTest::qWaitForWindowExposed(&popover));
        const QStringList names = QuickItems::accessibleNames(popover.contentItem());
        QVERIFY2(names.contains(QStringLiteral("NorvaneBar")), qPrintable(names.join(u'|')));
        QVERIFY(names.contains(QStringLiteral("Connect to Norvane")));
        QVERIFY(names.contains(QStringLiteral("Norvane personal API token")));
        QVERIFY(names.contains(QStringLiteral("Connect")));
    }

    void reportsItsFirstFrameAndItsHiding() {
        PopoverWindow& popover = m_fixture->popover;
        QSignalSpy presented(&popover, &PopoverWindow::presentedChanged);
        popover.toggle(std::nullopt);
        QVERIFY(presented.wait(3000));
        QCOMPARE(presented.takeFirst().at(0).toBool(), true);
        popover.toggle(std::nullopt);
        QCOMPARE(presented.count(), 1);
        QCOMPARE(presented.takeFirst().at(0).toBool(), false);
        QVERIFY(!popover.isVisible());
    }

    void hangsBelowATrayIcon() {
        PopoverWindow& popover = m_fixture->popover;
        const QRect icon(1200, 0, 24, 24);
        popover.toggle(icon);
        QVERIFY(QTest::qWaitForWindowExposed(&popover));
        QCOMPARE(popover.position().y(), 24 + 4);
        QVERIFY(popover.geometry().right() <= QGuiApplication::primaryScreen()->availableGeometry().right());
    }

    void opensBesideThePointerWithoutTrayGeometry() {
        PopoverWindow& popover = m_fixture->popover;
        QCursor::setPos(300, 100);
        popover.toggle(std::nullopt);
        QVERIFY(QTest::qWaitForWindowExposed(&popover));
        QCOMPARE(popover.position().y(), 101 + 4);
        QVERIFY(qAbs(popover.geometry().center().x() - 300) <= 1);
    }

    void escapeCloses() {
        PopoverWindow& popover = m_fixture->popover;
        popover.toggle(std::nullopt);
        QVERIFY(QTest::qWaitForWindowActive(&popover));
        QTest::keyClick(&popover, Qt::Key_Escape);
        QTRY_VERIFY(!popover.isVisible());
    }

    void theMenuKeyAndShiftF10AskForTheTrayMenuAtItsCorner() {
        PopoverWindow& popover = m_fixture->popover;
        popover.toggle(QRect(600, 0, 24, 24));
        QVERIFY(QTest::qWaitForWindowActive(&popover));
        QSignalSpy asked(&popover, &PopoverWindow::menuRequested);
        QTest::keyClick(&popover, Qt::Key_Menu);
        QTest::keyClick(&popover, Qt::Key_F10, Qt::ShiftModifier);
        QTest::keyClick(&popover, Qt::Key_F10);
        QTest::keyClick(&popover, Qt::Key_F10, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(asked.count(), 2);
        QCOMPARE(asked.at(0).at(0).toPoint(), popover.position());
        QCOMPARE(asked.at(1).at(0).toPoint(), popover.position());
    }

    void showPopoverWithATrayIconHangsFromItWhereverItLastHung() {
        PopoverWindow& popover = m_fixture->popover;
        QCursor::setPos(300, 400);
        popover.toggle(std::nullopt);
        QVERIFY(QTest::qWaitForWindowExposed(&popover));
        QCOMPARE(popover.position().y(), 401 + 4);
        popover.hide();
        popover.showPopover(QRect(1200, 0, 24, 24));
        QVERIFY(QTest::qWaitForWindowExposed(&popover));
        QCOMPARE(popover.position().y(), 24 + 4);
    }

    void showPopoverReopensWhereItLastHung() {
        PopoverWindow& popover = m_fixture->popover;
        const QRect icon(1000, 0, 24, 24);
        popover.toggle(icon);
        QVERIFY(QTest::qWaitForWindowExposed(&popover));
        const QPoint first = popover.position();
        popover.hide();
        popover.showPopover();
        QVERIFY(QTest::qWaitForWindowExposed(&popover));
        QCOMPARE(popover.position(), first);
    }

    void anotherWindowTakingFocusClosesItAndAClickRightAfterDoesNotReopen() {
        PopoverWindow& popover = m_fixture->popover;
        popover.toggle(std::nullopt);
        QVERIFY(QTest::qWaitForWindowActive(&popover));
        QWindow other;
        other.setGeometry(0, 600, 100, 100);
        other.show();
        other.requestActivate();
        QTRY_VERIFY(!popover.isVisible());
        // The click on the tray icon that took the focus arrives as a toggle just after.
        popover.toggle(std::nullopt);
        QVERIFY(!popover.isVisible());
    }
};

NORVANEBAR_TEST_MAIN(PopoverWindowTest)
#include "PopoverWindowTest.moc"
