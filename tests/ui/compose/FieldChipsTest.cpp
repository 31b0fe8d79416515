#include "desktop/compose/FieldChipsViewModel.h"
#include "support/KeyboardDriver.h"
#include "support/PopoverFixture.h"
#include "support/QuickItems.h"
#include "support/SandboxDemo.h"
#include "support/SandboxProcess.h"
#include "support/TestMain.h"

#include <QAccessible>
#include <QPointer>
#include <QQuickItem>
#include <QTest>

// A person sets a task's fields with the composer's chips by keyboard alone, against the Inbox list
// of norvane-sandbox's demo, which has a custom field of every type.
class FieldChipsTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    std::unique_ptr<PopoverFixture> m_fixture;

    PopoverWindow& popover() { return m_fixture->popover; }
    TaskDraft& draft() { return m_fixture->app->draft(); }
    FieldChipsViewModel& chips() { return m_fixture->pages.fieldChips(); }

    QQuickItem* item(const QString& objectName) { return QuickItems::visualChild(popover().contentItem(), objectName); }

    QQuickItem* chip(const QString& chipID) { return item(QStringLiteral("chip-") + chipID); }

    KeyboardDriver keys() { return KeyboardDriver(popover()); }

    void key(Qt::Key key) { keys().press(key); }

    void type(const QString& text) { keys().type(text); }

    QQuickItem* focused() { return popover().activeFocusItem(); }

    bool tabTo(QQuickItem* target, bool backwards = false) { return keys().tabTo(target, backwards); }

    // Reaches a chip of the row from the submit button with Shift+Tab: the description, above the
    // row, takes Tab as text.
    bool tabToChip(QQuickItem* target) {
        QQuickItem* submit = item(QStringLiteral("submitButton"));
        if (!submit || !target) {
            return false;
        }
        submit->forceActiveFocus(Qt::TabFocusReason);
        return tabTo(target, true);
    }

    // Opens the chip's menu with Space and chooses the entry that `downs` presses of Down reach from
    // the top.
    void chooseFromMenu(const QString& chipID, int downs) {
        QQuickItem* target = chip(chipID);
        QVERIFY(tabToChip(target));
        key(Qt::Key_Space);
        chooseFromOpenMenu(target, downs);
    }

    void chooseFromOpenMenu(QQuickItem* target, int downs) {
        QPointer<QObject> menu;
        QTRY_VERIFY((menu = target->findChild<QObject*>(QStringLiteral("chipMenu"))));
        QVERIFY(keys().chooseInMenu(menu, downs - 1));
        // A closed menu is gone.
        QTRY_VERIFY(!menu);
    }

    QString customID(const QString& name) {
        for (const CustomField& field : m_fixture->app->currentContext()->fields()) {
            if (field.name == name) {
                return field.id;
            }
        }
        return {};
    }

    QString accessibleName(QQuickItem* target) {
        QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(target);
        return accessible ? accessible->text(QAccessible::Name) : QString();
    }

private slots:
    void initTestCase() { QVERIFY2(PopoverFixture::startSandbox(m_sandbox), qPrintable(m_sandbox.errorString())); }

    void init() {
        m_fixture = PopoverFixture::signedInAgainst(m_sandbox, SandboxDemo::inboxListID);
        QVERIFY(m_fixture);
        m_fixture->showEveryStandardField();
        QVERIFY(QTest::qWaitForWindowActive(&popover()));
        QTRY_VERIFY_WITH_TIMEOUT(m_fixture->app->currentContext() && !m_fixture->app->currentContext()->isLoading() &&
                                     m_fixture->app->currentContext()->fields().size() == 10,
                                 15000);
        QTRY_VERIFY(chip(QStringLiteral("default-status")));
    }

    void cleanup() { m_fixture.reset(); }

    void theRowShowsTheFiveStandardFieldsAndMoreHoldsTheTenCustomFields() {
        QCOMPARE(chips().shownChips()->count(), 5);
        QCOMPARE(chips().moreChips()->count(), 10);
        QQuickItem* more = item(QStringLiteral("moreFieldsChip"));
        QVERIFY(more && more->isVisible());
        QCOMPARE(more->property("text").toString(), QStringLiteral("More +10"));
        QCOMPARE(accessibleName(more), QStringLiteral("More +10"));
        // Their chips are made when More opens.
        QVERIFY(!chip(QStringLiteral("custom-") + customID(QStringLiteral("Customer facing"))));
    }

    void theSameChipsStandBelowTheDescriptionAndBelowTheBulkEditor() {
        QQuickItem* row = item(QStringLiteral("fieldChipsRow"));
        QVERIFY(row && row->isVisible());
        const auto top = [](QQuickItem* target) { return target->mapToScene(QPointF(0, 0)).y(); };
        const auto bottom = [](QQuickItem* target) { return target->mapToScene(QPointF(0, target->height())).y(); };
        QQuickItem* description = item(QStringLiteral("taskDescription"));
        QVERIFY(description);
        QTRY_VERIFY(top(row) >= bottom(description->parentItem()));
        m_fixture->composer->setBulkMode(true);
        QQuickItem* bulkEditor = item(QStringLiteral("bulkEditor"));
        QTRY_VERIFY(bulkEditor && bulkEditor->isVisible() && !description->isVisible());
        QVERIFY(row->isVisible());
        QTRY_VERIFY(top(row) >= bottom(bulkEditor->parentItem()));
        QCOMPARE(chips().shownChips()->count(), 5);
    }

    void theStatusIsChosenFromItsMenuByKeyboard() {
        // "Default status", then the list's statuses: "to do", "in progress", …
        chooseFromMenu(QStringLiteral("default-status"), 3);
        QCOMPARE(draft().status(), QStringLiteral("in progress"));
        QQuickItem* label =
            QuickItems::visualChild(chip(QStringLiteral("default-status")), QStringLiteral("chipLabel"));
        QTRY_COMPARE(QuickItems::plainText(label), QStringLiteral("in progress"));
        QCOMPARE(label->property("color").value<QColor>(), QColor(QStringLiteral("#4194f6")));
        chooseFromMenu(QStringLiteral("default-status"), 1);
        QCOMPARE(draft().status(), std::nullopt);
    }

    void eachEntryOfAChipsMenuShowsItsLabelTintAndCheckMark() {
        chooseFromMenu(QStringLiteral("default-status"), 3);
        QQuickItem* target = chip(QStringLiteral("default-status"));
        QVERIFY(tabToChip(target));
        key(Qt::Key_Space);
        QPointer<QObject> menu;
        QTRY_VERIFY((menu = target->findChild<QObject*>(QStringLiteral("chipMenu"))));
        QVERIFY(KeyboardDriver::waitForMenu(menu));
        const QList<ChipMenuEntry> entries = chips().menuEntries(QStringLiteral("default-status"));
        QVERIFY(entries.size() > 3);
        QCOMPARE(entries.first().label, QStringLiteral("Default status"));
        QVERIFY(!entries.first().checkable);
        QCOMPARE(entries.at(2).label, QStringLiteral("in progress"));
        QVERIFY(entries.at(2).checked);
        QCOMPARE(entries.at(2).tint, QStringLiteral("#4194f6"));
        QCOMPARE(menu->property("count").toInt(), entries.size());
        for (int index = 0; index < entries.size(); ++index) {
            QQuickItem* shown = nullptr;
            QMetaObject::invokeMethod(menu, "itemAt", Q_RETURN_ARG(QQuickItem*, shown), Q_ARG(int, index));
            QVERIFY(shown);
            QCOMPARE(shown->property("label").toString(), entries.at(index).label);
            QCOMPARE(shown->property("dotColor").toString(), entries.at(index).tint);
            QCOMPARE(shown->property("checkable").toBool(), entries.at(index).checkable);
            QCOMPARE(shown->property("checked").toBool(), entries.at(index).checked);
        }
        key(Qt::Key_Escape);
        QTRY_VERIFY(!menu);
    }

    void aPaleStatusTintsTheSymbolAndLeavesTheTextInThePalettesColour() {
        chooseFromMenu(QStringLiteral("default-status"), 2);
        QCOMPARE(draft().status(), QStringLiteral("to do"));
        QQuickItem* status = chip(QStringLiteral("default-status"));
        QQuickItem* label = QuickItems::visualChild(status, QStringLiteral("chipLabel"));
        QTRY_COMPARE(QuickItems::plainText(label), QStringLiteral("to do"));
        QCOMPARE(status->property("symbolColor").value<QColor>(), QColor(QStringLiteral("#d3d3d3")));
        QCOMPARE(label->property("color").value<QColor>(),
                 status->property("palette").value<QPalette>().color(QPalette::ButtonText));
    }

    void anAssigneeIsToggledAndClearedByKeyboard() {
        chooseFromMenu(QStringLiteral("default-assignee"), 1);
        QCOMPARE(draft().assignees().size(), 1);
        const qint64 chosen = *draft().assignees().cbegin();
        const QList<Member> members = m_fixture->app->currentContext()->members();
        QCOMPARE(members.first().id, chosen);
        QTRY_COMPARE(QuickItems::plainText(QuickItems::visualChild(chip(QStringLiteral("default-assignee")),
                                                                   QStringLiteral("chipLabel"))),
                     members.first().displayName());
        // "Clear assignees" is the last entry.
        chooseFromMenu(QStringLiteral("default-assignee"), static_cast<int>(members.size()) + 1);
        QVERIFY(draft().assignees().isEmpty());
    }

    void anAssigneeChosenBeforeAListChangeIsGoneAfterIt() {
        chooseFromMenu(QStringLiteral("default-assignee"), 1);
        QCOMPARE(draft().assignees().size(), 1);
        QVERIFY(m_fixture->state.chooseNorthwindList(SandboxDemo::supportListID));
        QVERIFY(draft().assignees().isEmpty());
        QTRY_COMPARE(QuickItems::plainText(QuickItems::visualChild(chip(QStringLiteral("default-assignee")),
                                                                   QStringLiteral("chipLabel"))),
                     QStringLiteral("Assignee"));
    }

    void thePriorityIsChosenAndRemovedByKeyboard() {
        chooseFromMenu(QStringLiteral("default-priority"), 1);
        QCOMPARE(draft().priority(), 1);
        QTRY_COMPARE(QuickItems::plainText(QuickItems::visualChild(chip(QStringLiteral("default-priority")),
                                                                   QStringLiteral("chipLabel"))),
                     QStringLiteral("Urgent"));
        // Urgent, High, Normal, Low, then "No priority" while one is set.
        chooseFromMenu(QStringLiteral("default-priority"), 5);
        QCOMPARE(draft().priority(), std::nullopt);
    }

    void theDueDatePopoverSetsTodayAtFiveAndAReminderByKeyboard() {
        draft().setIncludeDueTime(false);
        QVERIFY(tabToChip(chip(QStringLiteral("default-dueDate"))));
        key(Qt::Key_Return);
        QQuickItem* today = nullptr;
        QTRY_VERIFY((today = item(QStringLiteral("todayAtFive"))) && today->hasActiveFocus());
        QCOMPARE(accessibleName(today), QStringLiteral("Today 5 PM"));
        key(Qt::Key_Space);
        QTRY_VERIFY(draft().dueDate().has_value());
        QCOMPARE(draft().dueDate()->toLocalTime().time(), QTime(17, 0));
        QVERIFY(draft().includeDueTime());
        QVERIFY(tabTo(item(QStringLiteral("remindMe"))));
        QCOMPARE(accessibleName(focused()), QStringLiteral("Remind me"));
        key(Qt::Key_Space);
        QTRY_VERIFY(draft().reminderEnabled());
        QTRY_VERIFY(item(QStringLiteral("notifyLead")) && item(QStringLiteral("notifyLead"))->isVisible());
        key(Qt::Key_Escape);
        QTRY_VERIFY(!item(QStringLiteral("dueDatePopover")));
        const QString label = QuickItems::plainText(
            QuickItems::visualChild(chip(QStringLiteral("default-dueDate")), QStringLiteral("chipLabel")));
        QVERIFY2(label.startsWith(QStringLiteral("Today")) && label.endsWith(QStringLiteral(" ⏰")), qPrintable(label));
    }

    void clearInTheDueDatePopoverRemovesTheDateAndTheReminder() {
        draft().setDueDate(QDateTime::currentDateTimeUtc().addDays(3));
        draft().setReminderEnabled(true);
        QVERIFY(tabToChip(chip(QStringLiteral("default-dueDate"))));
        key(Qt::Key_Space);
        QQuickItem* clear = nullptr;
        QTRY_VERIFY((clear = item(QStringLiteral("clearDueDate"))));
        QVERIFY(tabTo(clear));
        key(Qt::Key_Space);
        QTRY_COMPARE(draft().dueDate(), std::nullopt);
        QVERIFY(!draft().reminderEnabled());
    }

    void aNewTagIsAddedAsTypedByKeyboard() {
        QVERIFY(tabToChip(chip(QStringLiteral("default-tags"))));
        key(Qt::Key_Return);
        QQuickItem* field = nullptr;
        QTRY_VERIFY((field = item(QStringLiteral("newTag"))) && field->hasActiveFocus());
        QCOMPARE(accessibleName(field), QStringLiteral("New tag"));
        type(QStringLiteral("  Needs Review\t"));
        key(Qt::Key_Return);
        QTRY_COMPARE(draft().tags(), QSet<QString>{QStringLiteral("Needs Review")});
        QCOMPARE(field->property("text").toString(), QString());
        // The space's first tag, toggled from its list.
        QVERIFY(tabTo(item(QStringLiteral("tagEntry"))));
        key(Qt::Key_Space);
        QTRY_COMPARE(draft().tags(), (QSet<QString>{QStringLiteral("Needs Review"), QStringLiteral("bug")}));
        key(Qt::Key_Escape);
        QTRY_VERIFY(!item(QStringLiteral("tagsPopover")));
    }

    void customFieldsBehindMoreAreSetByKeyboard() {
        QVERIFY(tabToChip(item(QStringLiteral("moreFieldsChip"))));
        key(Qt::Key_Space);
        QTRY_VERIFY(chip(QStringLiteral("custom-") + customID(QStringLiteral("Customer facing"))));

        // A checkbox toggles with Space.
        const QString checkbox = QStringLiteral("custom-") + customID(QStringLiteral("Customer facing"));
        QVERIFY(tabTo(chip(checkbox)));
        QCOMPARE(accessibleName(focused()), QStringLiteral("Customer facing: Unchecked"));
        key(Qt::Key_Space);
        QTRY_COMPARE(draft().custom().value(customID(QStringLiteral("Customer facing"))), CustomValue::checkbox(true));

        // A number is typed into its popover and committed with Return.
        QVERIFY(tabTo(chip(QStringLiteral("custom-") + customID(QStringLiteral("Estimate (h)")))));
        key(Qt::Key_Return);
        QQuickItem* value = nullptr;
        QTRY_VERIFY((value = item(QStringLiteral("textValue"))) && value->hasActiveFocus());
        QCOMPARE(value->property("placeholderText").toString(), QStringLiteral("0"));
        type(QStringLiteral("7"));
        key(Qt::Key_Return);
        QTRY_COMPARE(draft().custom().value(customID(QStringLiteral("Estimate (h)"))),
                     CustomValue::number(QStringLiteral("7")));

        // A drop-down option from its menu: Critical is the fourth.
        QQuickItem* severity = chip(QStringLiteral("custom-") + customID(QStringLiteral("Severity")));
        QVERIFY(tabTo(severity));
        key(Qt::Key_Space);
        chooseFromOpenMenu(severity, 4);
        QTRY_VERIFY(draft().custom().contains(customID(QStringLiteral("Severity"))));
        const auto option =
            std::get<CustomValue::Option>(draft().custom().value(customID(QStringLiteral("Severity"))).value);
        QVERIFY(option.id.has_value());
        QTRY_COMPARE(accessibleName(chip(QStringLiteral("custom-") + customID(QStringLiteral("Severity")))),
                     QStringLiteral("Severity: Critical"));
    }

    void everyChipHasAnAccessibleNameAndShowsPlainText() {
        for (const FieldChipListModel* model : {chips().shownChips(), chips().moreChips()}) {
            for (const FieldChipListModel::Chip& shown : model->chips()) {
                if (QQuickItem* found = chip(shown.chipID)) {
                    QVERIFY2(!accessibleName(found).isEmpty(), qPrintable(shown.chipID));
                    QCOMPARE(QuickItems::plainText(QuickItems::visualChild(found, QStringLiteral("chipLabel"))),
                             shown.label);
                }
            }
        }
        for (const QString& id :
             {QStringLiteral("default-status"), QStringLiteral("default-assignee"), QStringLiteral("default-dueDate"),
              QStringLiteral("default-priority"), QStringLiteral("default-tags")}) {
            QVERIFY2(chip(id) && chip(id)->property("activeFocusOnTab").toBool(), qPrintable(id));
        }
    }
};

NORVANEBAR_TEST_MAIN(FieldChipsTest)
#include "FieldChipsTest.moc"
