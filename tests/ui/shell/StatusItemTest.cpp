#include "shell/StatusItem.h"

#include <QApplication>
#include <QSignalSpy>
#include <QTest>

// Runs in the shared session, whose tray host is a StatusNotifierWatcher.
class StatusItemTest : public QObject {
    Q_OBJECT

    static QAction* quitAction(StatusItem& item) {
        auto* icon = item.findChild<QSystemTrayIcon*>();
        return icon && icon->contextMenu() ? icon->contextMenu()->actions().value(0) : nullptr;
    }

private slots:
    void createsNothingUntilTheHostIsKnown() {
        StatusItem item;
        QVERIFY(!item.findChild<QSystemTrayIcon*>());
    }

    void showsTheIconWithItsToolTipAndMenu() {
        StatusItem item;
        item.create();
        auto* icon = item.findChild<QSystemTrayIcon*>();
        QVERIFY(icon);
        QVERIFY(icon->isVisible());
        QCOMPARE(icon->toolTip(), QStringLiteral("NorvaneBar — new Norvane task"));
        QVERIFY(!icon->icon().isNull());
        QCOMPARE(icon->contextMenu()->actions().size(), 1);
        QCOMPARE(quitAction(item)->text(), QStringLiteral("Quit NorvaneBar"));
        QCOMPARE(quitAction(item)->shortcut(), QKeySequence(QKeySequence::Quit));
    }

    void quitAsksTheAppToQuit() {
        StatusItem item;
        item.create();
        QSignalSpy quit(&item, &StatusItem::quitRequested);
        quitAction(item)->trigger();
        QCOMPARE(quit.count(), 1);
    }

    void aLeftClickReportsTheIconWithoutGeometryAsAbsent() {
        StatusItem item;
        item.create();
        QSignalSpy clicked(&item, &StatusItem::clicked);
        auto* icon = item.findChild<QSystemTrayIcon*>();
        emit icon->activated(QSystemTrayIcon::Trigger);
        QCOMPARE(clicked.count(), 1);
        // A StatusNotifierItem host never tells where the icon is.
        QCOMPARE(clicked.takeFirst().at(0).value<std::optional<QRect>>(), std::nullopt);
        emit icon->activated(QSystemTrayIcon::Context);
        emit icon->activated(QSystemTrayIcon::DoubleClick);
        QCOMPARE(clicked.count(), 0);
    }

    void creatingTwiceKeepsOneIcon() {
        StatusItem item;
        item.create();
        item.create();
        QCOMPARE(item.findChildren<QSystemTrayIcon*>().size(), 1);
    }
};

QTEST_MAIN(StatusItemTest)
#include "StatusItemTest.moc"
