#include "support/KeyboardDriver.h"
#include "support/PopoverFixture.h"
#include "support/QuickItems.h"
#include "support/SandboxDemo.h"
#include "support/SandboxProcess.h"
#include "support/TemporaryFolderTesting.h"
#include "support/TestMain.h"

#include <QClipboard>
#include <QMimeData>
#include <QTest>

// Assistive technology can tell every control of the composer apart: each one a person can focus
// or act on has a name and a role, in both modes, with files attached, on the Inbox list whose
// custom fields are of every type.
class ComposerAccessibilityTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    std::unique_ptr<PopoverFixture> m_fixture;
    QTemporaryDir m_files;

    PopoverWindow& popover() { return m_fixture->popover; }
    // The page and whatever menu or popover is open over it, in the window's overlay.
    QStringList unnamed() { return QuickItems::unnamedControls(popover().contentItem()); }
    QQuickItem* item(const QString& objectName) { return QuickItems::visualChild(popover().contentItem(), objectName); }
    KeyboardDriver keys() { return KeyboardDriver(popover()); }

    // The chips of the row, or with More open also those behind it, by their objectNames.
    QStringList chipNames(QQuickItem* under = nullptr) {
        QStringList names;
        under = under ? under : popover().contentItem();
        for (QQuickItem* child : under->childItems()) {
            if (child->isVisible() && child->objectName().startsWith(QStringLiteral("chip-"))) {
                names.append(child->objectName());
            }
            names << chipNames(child);
        }
        names.removeDuplicates();
        return names;
    }

    // Whether the keyboard is in a menu or popover, which sit in the window's overlay.
    bool popupHasTheKeyboard() {
        for (QQuickItem* focus = popover().activeFocusItem(); focus; focus = focus->parentItem()) {
            if (focus->inherits("QQuickOverlay")) {
                return true;
            }
        }
        return false;
    }

    // Closes the open menus and popovers with Esc, one at a time; never the popover itself.
    void closePopups() {
        for (int open = 0; open < 4 && popupHasTheKeyboard(); ++open) {
            keys().press(Qt::Key_Escape);
        }
    }

    // Opens what the chip opens with Space, as a person would, lists the unnamed controls then, and
    // closes what is open.
    QStringList unnamedWithChipOpen(const QString& name) {
        QQuickItem* chip = item(name);
        if (!chip) {
            return {QStringLiteral("no chip %1").arg(name)};
        }
        chip->forceActiveFocus(Qt::TabFocusReason);
        keys().press(Qt::Key_Space);
        // A checkbox chip toggles; every other one opens a menu or popover that takes the keyboard.
        const bool toggles = QAccessible::queryAccessibleInterface(chip)->role() == QAccessible::CheckBox;
        if (!toggles && !QTest::qWaitFor([this] { return popupHasTheKeyboard(); })) {
            return {QStringLiteral("%1 opened nothing").arg(name)};
        }
        const QStringList found = unnamed();
        closePopups();
        return found;
    }

    // A menu or popover of the page, open or not; null when it was never made.
    QObject* popup(const QString& objectName) { return m_fixture->find(objectName); }
    bool isOpen(const QString& objectName) {
        QObject* found = popup(objectName);
        return found && found->property("visible").toBool();
    }
    QQuickItem* contentOf(const QString& objectName) {
        QObject* found = popup(objectName);
        return found ? found->property("contentItem").value<QQuickItem*>() : nullptr;
    }

    bool openMore() {
        QQuickItem* more = item(QStringLiteral("moreFieldsChip"));
        if (!more) {
            return false;
        }
        more->forceActiveFocus(Qt::TabFocusReason);
        keys().press(Qt::Key_Return);
        return QTest::qWaitFor([this] { return isOpen(QStringLiteral("moreFieldsPopover")); });
    }

private slots:
    void initTestCase() { QVERIFY(PopoverFixture::startSandbox(m_sandbox)); }

    void init() {
        m_fixture = PopoverFixture::signedInAgainst(m_sandbox, SandboxDemo::inboxListID);
        QVERIFY(m_fixture);
        m_fixture->showEveryStandardField();
        QTRY_VERIFY(m_fixture->find(QStringLiteral("taskName")));
    }

    void cleanup() { m_fixture.reset(); }

    void everyControlOfTheSingleTaskComposerHasANameAndARole() {
        auto* files = new QMimeData;
        files->setUrls({QUrl::fromLocalFile(sparseFile(m_files.filePath(QStringLiteral("notes.pdf")), 1'000))});
        QGuiApplication::clipboard()->setMimeData(files);
        QTest::keyClick(&popover(), Qt::Key_V, Qt::ControlModifier);
        QTRY_COMPARE(m_fixture->attachments->rowCount(), 1);
        QTRY_VERIFY(!QuickItems::accessibleNames(popover().contentItem()).isEmpty());
        QVERIFY2(unnamed().isEmpty(), qPrintable(unnamed().join(u'\n')));
    }

    void everyControlOfTheBulkComposerHasANameAndARole() {
        m_fixture->composer->setBulkMode(true);
        QTRY_VERIFY(m_fixture->find(QStringLiteral("bulkEditor")));
        QVERIFY2(unnamed().isEmpty(), qPrintable(unnamed().join(u'\n')));
    }

    void everyChipsMenuAndPopoverNamesItsControls() {
        QTRY_VERIFY(item(QStringLiteral("moreFieldsChip")));
        const QStringList shown = chipNames();
        QCOMPARE(shown.size(), 5);
        for (const QString& name : shown) {
            const QStringList found = unnamedWithChipOpen(name);
            QVERIFY2(found.isEmpty(), qPrintable(name + u'\n' + found.join(u'\n')));
            QVERIFY(!popupHasTheKeyboard());
        }
    }

    void everyFieldBehindMoreAndItsEditorNamesItsControls() {
        QTRY_VERIFY(openMore());
        // Its chips are made as it opens.
        QStringList behindMore;
        QTRY_COMPARE((behindMore = chipNames(contentOf(QStringLiteral("moreFieldsPopover")))).size(), 10);
        QVERIFY2(unnamed().isEmpty(), qPrintable(unnamed().join(u'\n')));
        closePopups();
        for (const QString& name : behindMore) {
            QVERIFY(openMore());
            const QStringList found = unnamedWithChipOpen(name);
            QVERIFY2(found.isEmpty(), qPrintable(name + u'\n' + found.join(u'\n')));
        }
    }

    void theLocationPickerNamesItsControls() {
        QQuickItem* selector = item(QStringLiteral("locationSelector"));
        QVERIFY(selector);
        selector->forceActiveFocus(Qt::TabFocusReason);
        keys().press(Qt::Key_Return);
        QTRY_VERIFY(isOpen(QStringLiteral("locationPicker")));
        QTRY_VERIFY(
            QuickItems::accessibleNames(contentOf(QStringLiteral("locationPicker"))).contains(QStringLiteral("Inbox")));
        QVERIFY2(unnamed().isEmpty(), qPrintable(unnamed().join(u'\n')));
    }
};

NORVANEBAR_TEST_MAIN(ComposerAccessibilityTest)
#include "ComposerAccessibilityTest.moc"
