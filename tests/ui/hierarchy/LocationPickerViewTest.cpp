#include "support/KeyboardDriver.h"
#include "support/PopoverFixture.h"
#include "support/QuickItems.h"
#include "support/SandboxDemo.h"
#include "support/SandboxFault.h"
#include "support/SandboxProcess.h"
#include "support/TemporaryFolderTesting.h"
#include "support/TestMain.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QQuickItem>
#include <QTest>

// A person chooses the list for new tasks in the location picker with the keyboard alone, against
// norvane-sandbox's demo: the first demo user sees Northwind Studio and Fabrikam Labs.
class LocationPickerViewTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    std::unique_ptr<PopoverFixture> m_fixture;

    PopoverWindow& popover() { return m_fixture->popover; }
    LocationPickerViewModel& picker() { return *m_fixture->location; }
    QObject* pickerView() { return m_fixture->find(QStringLiteral("locationPicker")); }
    bool isOpen() { return pickerView() && pickerView()->property("opened").toBool(); }
    QQuickItem* inPicker(const QString& objectName) {
        return QuickItems::visualChild(pickerView()->property("contentItem").value<QQuickItem*>(), objectName);
    }
    QQuickItem* focused() { return popover().activeFocusItem(); }
    QString focusedName() { return focused() ? focused()->objectName() : QStringLiteral("<nothing>"); }
    QQuickItem* list() { return inPicker(QStringLiteral("locationList")); }
    int currentRow() { return list()->property("currentIndex").toInt(); }

    void key(Qt::Key key) { KeyboardDriver(popover()).press(key); }

    void type(const QString& text) { KeyboardDriver(popover()).type(text); }

    // The selector takes the keyboard and Return opens the picker over Northwind's lists, with the
    // keyboard in the search field.
    void openPicker() {
        auto* selector = qobject_cast<QQuickItem*>(m_fixture->find(QStringLiteral("locationSelector")));
        QVERIFY(selector);
        selector->forceActiveFocus(Qt::TabFocusReason);
        QTRY_VERIFY(selector->hasActiveFocus());
        key(Qt::Key_Return);
        QTRY_VERIFY(isOpen());
        QTRY_VERIFY(picker().rowModel().rowCount() > 0);
        QTRY_COMPARE(focusedName(), QStringLiteral("locationSearch"));
    }

    QString chosenListID() {
        const ListContext* context = m_fixture->app->currentContext();
        return context ? context->entry().id() : QString();
    }

    QJsonArray bookmarksOnDisk() {
        return QJsonDocument::fromJson(fileContents(m_fixture->app->settings().filePath()))
            .object()
            .value(QStringLiteral("bookmarks"))
            .toArray();
    }

private slots:
    void initTestCase() { QVERIFY2(PopoverFixture::startSandbox(m_sandbox), qPrintable(m_sandbox.errorString())); }

    void init() {
        m_fixture = PopoverFixture::shownAgainst(m_sandbox);
        QVERIFY(m_fixture);
        QCOMPARE(runTask(m_fixture->app->signIn(m_sandbox.token())), std::nullopt);
        QTRY_VERIFY(m_fixture->find(QStringLiteral("locationSelector")));
    }

    void cleanup() { m_fixture.reset(); }

    void openingPutsTheKeyboardInTheSearchField() {
        openPicker();
        QCOMPARE(picker().model().workspaceID(), SandboxDemo::northwindID);
        QCOMPARE(inPicker(QStringLiteral("locationSearch"))->property("placeholderText").toString(),
                 QStringLiteral("Search lists"));
    }

    void typingFiltersAtOnceAndReturnChoosesTheFirstMatch() {
        openPicker();
        type(QStringLiteral("Sprint"));
        QCOMPARE(picker().rowModel().rowCount(), 2);
        QCOMPARE(list()->property("count").toInt(), 2);
        QCOMPARE(currentRow(), 0);
        // "Sprint 12 · API" sorts before "Sprint 12 · Web".
        const ListEntry first = picker().rowModel().entries().first();
        QCOMPARE(first.list.name, QStringLiteral("Sprint 12 · API"));
        key(Qt::Key_Return);
        QTRY_VERIFY(!isOpen());
        QCOMPARE(chosenListID(), first.id());
        QCOMPARE(m_fixture->app->settings().settings().lastLocation->listID, first.id());
        QTRY_COMPARE(QuickItems::plainText(m_fixture->find(QStringLiteral("locationTitle"))), first.list.name);
        QVERIFY(popover().isVisible());
        QTRY_COMPARE(focusedName(), QStringLiteral("locationSelector"));
    }

    void downAndUpMoveTheCurrentListFromTheSearchField() {
        openPicker();
        type(QStringLiteral("sprint"));
        key(Qt::Key_Down);
        QCOMPARE(currentRow(), 1);
        key(Qt::Key_Down);
        QCOMPARE(currentRow(), 1);
        key(Qt::Key_Up);
        QCOMPARE(currentRow(), 0);
        key(Qt::Key_Down);
        QCOMPARE(focusedName(), QStringLiteral("locationSearch"));
        const QString second = picker().rowModel().entries().at(1).list.name;
        QCOMPARE(second, QStringLiteral("Sprint 12 · Web"));
        key(Qt::Key_Return);
        QTRY_VERIFY(!isOpen());
        QCOMPARE(m_fixture->app->currentContext()->entry().list.name, second);
    }

    void theChosenListCarriesTheCheckMarkAndIsCurrentWhenThePickerOpensAgain() {
        QVERIFY(m_fixture->state.chooseNorthwindList(SandboxDemo::supportListID));
        openPicker();
        const int row = picker().rowOf(SandboxDemo::supportListID);
        QVERIFY(row >= 0);
        QTRY_COMPARE(currentRow(), row);
        QQuickItem* item = nullptr;
        QVERIFY(QMetaObject::invokeMethod(list(), "itemAtIndex", Q_RETURN_ARG(QQuickItem*, item), Q_ARG(int, row)));
        QVERIFY(item);
        QCOMPARE(QuickItems::visualChild(item, QStringLiteral("selectedMark"))->opacity(), 1.0);
        QVERIFY(QMetaObject::invokeMethod(list(), "itemAtIndex", Q_RETURN_ARG(QQuickItem*, item), Q_ARG(int, 0)));
        QCOMPARE(QuickItems::visualChild(item, QStringLiteral("selectedMark"))->opacity(), 0.0);
    }

    void tabReachesTheWorkspacePickerRefreshTheListsAndTheStarOfTheCurrentList() {
        openPicker();
        key(Qt::Key_Tab);
        QCOMPARE(focusedName(), QStringLiteral("workspacePicker"));
        key(Qt::Key_Tab);
        QCOMPARE(focusedName(), QStringLiteral("refreshLists"));
        // The list passes the keyboard to its current row.
        key(Qt::Key_Tab);
        QCOMPARE(focusedName(), QStringLiteral("locationRow"));
        QCOMPARE(focused()->property("index").toInt(), 0);
        key(Qt::Key_Down);
        QCOMPARE(currentRow(), 1);
        QCOMPARE(focused()->property("index").toInt(), 1);
        key(Qt::Key_Tab);
        QCOMPARE(focusedName(), QStringLiteral("bookmarkStar"));
        QCOMPARE(focused()->property("text").toString(), QStringLiteral("Add to bookmarks"));
        // The keyboard stays in the picker: after the star comes the search field again, and back.
        key(Qt::Key_Tab);
        QCOMPARE(focusedName(), QStringLiteral("locationSearch"));
        QTest::keyClick(&popover(), Qt::Key_Backtab, Qt::ShiftModifier);
        QCOMPARE(focusedName(), QStringLiteral("bookmarkStar"));
    }

    void theStarKeepsAListAmongTheBookmarksInTheSettingsFileAndTakesItOut() {
        openPicker();
        type(QStringLiteral("inbox"));
        const ListEntry inbox = picker().rowModel().entries().first();
        QCOMPARE(inbox.id(), SandboxDemo::inboxListID);
        for (const Qt::Key tab : {Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Tab}) {
            key(tab);
        }
        QCOMPARE(focusedName(), QStringLiteral("bookmarkStar"));
        key(Qt::Key_Space);
        const QString address = m_sandbox.webUrl(u"").toString(QUrl::StripTrailingSlash) + u'/' +
                                SandboxDemo::northwindID + QStringLiteral("/v/l/li/") + inbox.id();
        QJsonArray bookmarks = bookmarksOnDisk();
        QCOMPARE(bookmarks.size(), 1);
        QCOMPARE(bookmarks.first()[QStringLiteral("urlString")].toString(), address);
        QCOMPARE(bookmarks.first()[QStringLiteral("name")].toString(), QStringLiteral("Inbox"));
        QTRY_COMPARE(focused()->property("text").toString(), QStringLiteral("Remove from bookmarks"));
        QCOMPARE(picker().bookmarkedListIDs(), QList<QString>{inbox.id()});
        key(Qt::Key_Space);
        QCOMPARE(bookmarksOnDisk().size(), 0);
        QVERIFY(isOpen());
        QCOMPARE(chosenListID(), QString());
    }

    void escapeClosesThePickerAndLeavesTheListAndThePopover() {
        QVERIFY(m_fixture->state.chooseNorthwindList(SandboxDemo::inboxListID));
        openPicker();
        type(QStringLiteral("sprint"));
        key(Qt::Key_Down);
        key(Qt::Key_Escape);
        QTRY_VERIFY(!isOpen());
        QVERIFY(popover().isVisible());
        QCOMPARE(chosenListID(), SandboxDemo::inboxListID);
        QTRY_COMPARE(focusedName(), QStringLiteral("locationSelector"));
        // The next opening starts with an empty search.
        key(Qt::Key_Return);
        QTRY_VERIFY(isOpen());
        QCOMPARE(inPicker(QStringLiteral("locationSearch"))->property("text").toString(), QString());
    }

    void theWorkspacePickerShowsAnotherWorkspacesListsAndMakesItPreferred() {
        openPicker();
        key(Qt::Key_Tab);
        QCOMPARE(focusedName(), QStringLiteral("workspacePicker"));
        key(Qt::Key_Down);
        QTRY_COMPARE(picker().model().workspaceID(), SandboxDemo::fabrikamID);
        QCOMPARE(m_fixture->app->settings().settings().preferredWorkspaceID, SandboxDemo::fabrikamID);
        QTRY_VERIFY(picker().rowOf(SandboxDemo::labNotesListID) >= 0);
        QCOMPARE(picker().rowOf(SandboxDemo::inboxListID), -1);
    }

    void aSearchWithoutMatchSaysSoWithTheQuery() {
        openPicker();
        type(QStringLiteral("  Nothing Like This\t"));
        QTRY_VERIFY(!list()->isVisible());
        QCOMPARE(QuickItems::plainText(inPicker(QStringLiteral("pickerState"))),
                 QStringLiteral("No lists match “nothing like this”"));
        key(Qt::Key_Return);
        QVERIFY(isOpen());
        QCOMPARE(chosenListID(), QString());
    }

    void aFailedLoadShowsTheMessageAndTryAgainLoadsTheLists() {
        QVERIFY(m_sandbox.addFault(
            SandboxFault::answer(QStringLiteral("/api/v2/team/%1/space").arg(SandboxDemo::fabrikamID), 500)));
        openPicker();
        picker().chooseWorkspace(1);
        QTRY_COMPARE(picker().content(), LocationPickerViewModel::Failed);
        QVERIFY(!QuickItems::plainText(inPicker(QStringLiteral("pickerState"))).isEmpty());
        QQuickItem* tryAgain = inPicker(QStringLiteral("tryAgainLists"));
        QVERIFY(tryAgain && tryAgain->isVisible());
        QCOMPARE(tryAgain->property("text").toString(), QStringLiteral("Try again"));
        tryAgain->forceActiveFocus(Qt::TabFocusReason);
        key(Qt::Key_Space);
        QTRY_COMPARE(picker().content(), LocationPickerViewModel::Rows);
        QVERIFY(picker().rowOf(SandboxDemo::labNotesListID) >= 0);
    }
};

NORVANEBAR_TEST_MAIN(LocationPickerViewTest)
#include "LocationPickerViewTest.moc"
