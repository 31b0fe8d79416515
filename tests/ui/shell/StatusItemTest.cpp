#include "desktop/shell/StatusItem.h"
#include "core/support/Translations.h"
#include "support/PopoverFixture.h"
#include "support/TestMain.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QSignalSpy>
#include <QStyleHints>
#include <QTest>

// Runs in the shared session, whose tray host is a StatusNotifierWatcher, and in one with an XEmbed
// tray, where the app draws the icon and its menu itself.
class StatusItemTest : public QObject {
    Q_OBJECT

    static QMenu* menu(StatusItem& item) {
        auto* icon = item.findChild<QSystemTrayIcon*>();
        return icon ? icon->contextMenu() : nullptr;
    }

    // The entries of the menu by their texts, a separator as "-".
    static QStringList entries(const QMenu* menu) {
        QStringList texts;
        for (const QAction* action : menu->actions()) {
            texts.append(action->isSeparator() ? QStringLiteral("-") : action->text());
        }
        return texts;
    }

    static QAction* entry(const QMenu* menu, const QString& text) {
        for (QAction* action : menu->actions()) {
            if (action->text() == text) {
                return action;
            }
        }
        return nullptr;
    }

    static QAction* quitAction(StatusItem& item) {
        return menu(item) ? entry(menu(item), QStringLiteral("Quit NorvaneBar")) : nullptr;
    }

    static Bookmark bookmark(const QString& name, const QString& address) {
        return Bookmark{.name = name, .urlString = address};
    }

    static QByteArray tray() { return qgetenv("NORVANEBAR_TRAY"); }

    // The icon as a panel of the usual height draws it.
    static QImage drawn(StatusItem& item) {
        return item.findChild<QSystemTrayIcon*>()->icon().pixmap(QSize(22, 22)).toImage();
    }

    // The icon's window in an XEmbed tray, once docked and drawn: a click before lands elsewhere.
    static QWidget* xembedIcon() {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (widget->objectName() == QLatin1String("QSystemTrayIconSys") && widget->isVisible() &&
                widget->windowHandle() && widget->windowHandle()->isExposed()) {
                return widget;
            }
        }
        return nullptr;
    }

    // A click from outside, through the X server, as the person makes it. Two clicks closer together
    // than the double-click interval would make a double click: a click comes once the interval has
    // passed since the one before.
    static void click(QWidget* window, int button) {
        static QElapsedTimer sinceLastClick;
        const int interval = QGuiApplication::styleHints()->mouseDoubleClickInterval();
        QVERIFY(!sinceLastClick.isValid() ||
                QTest::qWaitFor([interval] { return sinceLastClick.elapsed() > interval; }));
        const QStringList arguments{
            QStringLiteral("mousemove"), QStringLiteral("--window"), QString::number(window->winId()),
            QStringLiteral("5"),         QStringLiteral("5"),        QStringLiteral("click"),
            QString::number(button)};
        QCOMPARE(QProcess::execute(QStringLiteral("xdotool"), arguments), 0);
        sinceLastClick.start();
    }

private slots:
    void initTestCase() {
        PopoverWindow::configureQuick();
        // The English catalogue, as the program loads it, gives the singular of one.
        QVERIFY(Translations::install(*QCoreApplication::instance()));
    }

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
        QCOMPARE(entries(icon->contextMenu()),
                 (QStringList{QStringLiteral("New Task"), QStringLiteral("Record Screen…"), QStringLiteral("Settings…"),
                              QStringLiteral("-"), QStringLiteral("Quit NorvaneBar")}));
        QCOMPARE(entry(icon->contextMenu(), QStringLiteral("Settings…"))->shortcut(),
                 QKeySequence(Qt::CTRL | Qt::Key_Comma));
        QCOMPARE(quitAction(item)->shortcut(), QKeySequence(QKeySequence::Quit));
    }

    void theMenuListsTheQuickLinksByNameBetweenNewTaskAndSettings() {
        StatusItem item;
        item.create();
        item.setBookmarks({bookmark(QStringLiteral("Sprint board"), QStringLiteral("https://example.com/board")),
                           bookmark(QStringLiteral("R&D <b>wiki</b>"), QStringLiteral("https://example.com/wiki"))});
        QCOMPARE(entries(menu(item)), (QStringList{QStringLiteral("New Task"), QStringLiteral("Record Screen…"),
                                                   QStringLiteral("Quick Links"), QStringLiteral("Settings…"),
                                                   QStringLiteral("-"), QStringLiteral("Quit NorvaneBar")}));
        const QMenu* links = entry(menu(item), QStringLiteral("Quick Links"))->menu();
        QVERIFY(links);
        // "&" is a character of the name, never a mnemonic.
        QCOMPARE(entries(links), (QStringList{QStringLiteral("Sprint board"), QStringLiteral("R&&D <b>wiki</b>")}));

        // The links change with the settings, in stored order.
        item.setBookmarks({bookmark(QStringLiteral("Docs"), QStringLiteral("https://example.com/docs"))});
        QCOMPARE(entries(entry(menu(item), QStringLiteral("Quick Links"))->menu()),
                 QStringList{QStringLiteral("Docs")});
        QCOMPARE(entries(menu(item)).size(), 6);
    }

    void withNoBookmarksTheQuickLinksEntryIsAbsent() {
        StatusItem item;
        item.create();
        item.setBookmarks({bookmark(QStringLiteral("Docs"), QStringLiteral("https://example.com/docs"))});
        QVERIFY(entry(menu(item), QStringLiteral("Quick Links")));
        item.setBookmarks({});
        QVERIFY(!entry(menu(item), QStringLiteral("Quick Links")));
        QCOMPARE(entries(menu(item)),
                 (QStringList{QStringLiteral("New Task"), QStringLiteral("Record Screen…"), QStringLiteral("Settings…"),
                              QStringLiteral("-"), QStringLiteral("Quit NorvaneBar")}));
    }

    void choosingAQuickLinkAsksToOpenItsAddress() {
        StatusItem item;
        item.create();
        item.setBookmarks({bookmark(QStringLiteral("Board"), QStringLiteral("https://example.com/board?view=1"))});
        QSignalSpy opening(&item, &StatusItem::openURLRequested);
        entry(menu(item), QStringLiteral("Quick Links"))->menu()->actions().value(0)->trigger();
        QCOMPARE(opening.count(), 1);
        QCOMPARE(opening.takeFirst().at(0).toUrl(), QUrl(QStringLiteral("https://example.com/board?view=1")));
    }

    void aBookmarkWithAnInvalidAddressIsListedAndDoesNothingWhenChosen() {
        StatusItem item;
        item.create();
        item.setBookmarks({bookmark(QStringLiteral("Broken"), QStringLiteral("https://exa mple.com/%zz")),
                           bookmark(QStringLiteral("No scheme"), QStringLiteral("board"))});
        QSignalSpy opening(&item, &StatusItem::openURLRequested);
        const QMenu* links = entry(menu(item), QStringLiteral("Quick Links"))->menu();
        QCOMPARE(entries(links), (QStringList{QStringLiteral("Broken"), QStringLiteral("No scheme")}));
        for (QAction* link : links->actions()) {
            link->trigger();
        }
        QCOMPARE(opening.count(), 0);
    }

    void recordScreenAsksForARecordingAndNothingElse() {
        StatusItem item;
        item.create();
        QSignalSpy record(&item, &StatusItem::recordScreenRequested);
        QSignalSpy newTask(&item, &StatusItem::newTaskRequested);
        entry(menu(item), QStringLiteral("Record Screen…"))->trigger();
        QCOMPARE(record.count(), 1);
        QCOMPARE(newTask.count(), 0);
    }

    void newTaskAndSettingsAskForTheirWindows() {
        StatusItem item;
        item.create();
        QSignalSpy newTask(&item, &StatusItem::newTaskRequested);
        QSignalSpy settings(&item, &StatusItem::settingsRequested);
        entry(menu(item), QStringLiteral("New Task"))->trigger();
        QCOMPARE(newTask.count(), 1);
        QCOMPARE(settings.count(), 0);
        entry(menu(item), QStringLiteral("Settings…"))->trigger();
        QCOMPARE(settings.count(), 1);
        QCOMPARE(newTask.count(), 1);
    }

    void quitAsksTheAppToQuit() {
        StatusItem item;
        item.create();
        QSignalSpy quit(&item, &StatusItem::quitRequested);
        quitAction(item)->trigger();
        QCOMPARE(quit.count(), 1);
    }

    void aLeftClickReportsTheIconWithoutGeometryAsAbsent() {
        if (tray() != "sni") {
            QSKIP("an XEmbed tray tells where the icon is");
        }
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

    void theMenuSaysItIsAboutToShow() {
        StatusItem item;
        item.create();
        QSignalSpy opening(&item, &StatusItem::menuAboutToShow);
        emit item.findChild<QSystemTrayIcon*>()->contextMenu()->aboutToShow();
        QCOMPARE(opening.count(), 1);
    }

    void theIconsPlaceIsKnownWhereTheTrayTellsIt() {
        StatusItem item;
        QVERIFY(!item.iconGeometry());
        item.create();
        if (tray() != "xembed") {
            // A StatusNotifierItem host keeps the place of the icon to itself.
            QVERIFY(!item.iconGeometry());
            return;
        }
        QWidget* icon = nullptr;
        QTRY_VERIFY((icon = xembedIcon()));
        QTRY_VERIFY(item.iconGeometry());
        QCOMPARE(item.iconGeometry()->size(), icon->size());
    }

    void theMenuOpensAtAPointForTheKeyboardUnderItsName() {
        StatusItem item;
        item.create();
        QMenu* contextMenu = menu(item);
        QVERIFY(contextMenu);
        QSignalSpy opening(&item, &StatusItem::menuAboutToShow);
        item.showMenu(QPoint(240, 160));
        QTRY_VERIFY(contextMenu->isVisible());
        QCOMPARE(opening.count(), 1);
        QCOMPARE(contextMenu->pos(), QPoint(240, 160));
        QCOMPARE(contextMenu->accessibleName(), QStringLiteral("NorvaneBar"));
        contextMenu->hide();
    }

    void aRightClickWhileThePopoverIsOpenOpensTheMenu() {
        if (tray() != "xembed") {
            QSKIP("needs an XEmbed tray, whose menu the app draws itself");
        }
        PopoverFixture fixture;
        StatusItem item;
        // As AppDelegate wires them.
        connect(&item, &StatusItem::clicked, &fixture.popover, &PopoverWindow::toggle);
        connect(&item, &StatusItem::menuAboutToShow, &fixture.popover, &QWindow::hide);
        item.create();
        QWidget* icon = nullptr;
        QTRY_VERIFY((icon = xembedIcon()));
        QMenu* menu = item.findChild<QSystemTrayIcon*>()->contextMenu();

        click(icon, 1);
        QVERIFY(QTest::qWaitForWindowActive(&fixture.popover));
        click(icon, 3);
        QTRY_VERIFY(menu->isVisible());
        QVERIFY(!fixture.popover.isVisible());
        // Qt waits 400 ms for a window that lost the keyboard focus to get it back before it
        // deactivates the app and closes its popups; the menu outlasts that.
        QTest::qWait(1000);
        QVERIFY(menu->isVisible());

        // Escape closes the menu, and a left click opens the popover again.
        QTest::keyClick(menu, Qt::Key_Escape);
        QTRY_VERIFY(!menu->isVisible());
        click(icon, 1);
        QVERIFY(QTest::qWaitForWindowActive(&fixture.popover));
    }

    void aBadgeDrawsItsNumberIntoTheIconAndSetsTheToolTip() {
        StatusItem item;
        item.create();
        auto* icon = item.findChild<QSystemTrayIcon*>();
        const QImage plain = drawn(item);
        QCOMPARE(plain.size(), QSize(22, 22));

        item.setBadge(StatusItemBadge::make(3, 0, false));
        QCOMPARE(icon->toolTip(), QStringLiteral("3 background tasks in progress"));
        const QImage three = drawn(item);
        QVERIFY(three != plain);
        // The badge sits in the lower right, in the desktop's highlight colour; the chevron's tip
        // at the top stays as it was.
        const QColor highlight = QGuiApplication::palette().color(QPalette::Highlight);
        QCOMPARE(three.pixelColor(20, 16).rgb(), highlight.rgb());
        QCOMPARE(three.pixelColor(11, 5), plain.pixelColor(11, 5));

        item.setBadge(StatusItemBadge::make(1, 0, false));
        QCOMPARE(icon->toolTip(), QStringLiteral("1 background task in progress"));
        QVERIFY(drawn(item) != three);

        item.setBadge(StatusItemBadge::make(0, 0, false));
        QCOMPARE(icon->toolTip(), QStringLiteral("NorvaneBar — new Norvane task"));
        QCOMPARE(drawn(item), plain);
    }

    void aBadgeSetBeforeTheIconExistsIsShownWithIt() {
        StatusItem item;
        item.setBadge(StatusItemBadge::make(2, 0, false));
        item.create();
        QCOMPARE(item.findChild<QSystemTrayIcon*>()->toolTip(), QStringLiteral("2 background tasks in progress"));
    }

    void theIconShowsItsModelsBadgeAndEachChangeOfIt() {
        AppStateFixture fixture;
        AppState& app = fixture.start();
        app.submitQueue().markBackgrounded(ForegroundSubmitSession{QUuid::createUuid(), QStringLiteral("One"), {}});
        StatusItem item;
        item.create();
        auto* icon = item.findChild<QSystemTrayIcon*>();
        item.follow(app.badge());
        QCOMPARE(icon->toolTip(), QStringLiteral("1 background task in progress"));
        const QImage one = drawn(item);
        app.submitQueue().markBackgrounded(ForegroundSubmitSession{QUuid::createUuid(), QStringLiteral("Two"), {}});
        QCOMPARE(icon->toolTip(), QStringLiteral("2 background tasks in progress"));
        QVERIFY(drawn(item) != one);
    }

    void creatingTwiceKeepsOneIcon() {
        StatusItem item;
        item.create();
        item.create();
        QCOMPARE(item.findChildren<QSystemTrayIcon*>().size(), 1);
    }
};

NORVANEBAR_TEST_MAIN(StatusItemTest)
#include "StatusItemTest.moc"
