#include "core/compose/AttachmentStaging.h"
#include "core/support/Translations.h"
#include "support/KeyboardDriver.h"
#include "support/PopoverFixture.h"
#include "support/QuickItems.h"
#include "support/SandboxDemo.h"
#include "support/SandboxProcess.h"
#include "support/TestMain.h"

#include <QAccessible>
#include <QJsonArray>
#include <QQuickItem>
#include <QTemporaryDir>
#include <QTest>

// A person creates tasks in the popover by keyboard and mouse, against norvane-sandbox: the name
// typed, Ctrl+Return, the pages that follow, and what reached the service.
class SubmitPagesTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    std::unique_ptr<PopoverFixture> m_fixture;

    SubmitViewModel& submit() { return *m_fixture->submit; }
    RecordingLinkActions& links() { return m_fixture->state.linkActions(); }
    RecordingNotificationCenter& notifications() { return m_fixture->state.notificationCenter(); }

    QQuickItem* item(const QString& objectName) {
        return QuickItems::visualChild(m_fixture->popover.rootObject(), objectName);
    }

    QString textOf(const QString& objectName) {
        QQuickItem* found = item(objectName);
        return found ? found->property("text").toString() : QString();
    }

    void click(const QString& objectName) {
        QQuickItem* button = nullptr;
        QTRY_VERIFY2((button = item(objectName)) && button->isVisible() && button->isEnabled(), qPrintable(objectName));
        QTest::mouseClick(&m_fixture->popover, Qt::LeftButton, {},
                          button->mapToScene(QPointF(button->width() / 2, button->height() / 2)).toPoint());
    }

    // Types `text` key by key into the focused item, as a keyboard would; a newline is Return.
    void type(const QString& text) { KeyboardDriver(m_fixture->popover).type(text); }

    void typeName(const QString& name) {
        QQuickItem* field = nullptr;
        QTRY_VERIFY((field = item(QStringLiteral("taskName"))) && field->hasActiveFocus());
        type(name);
    }

    void pressSubmitShortcut() { QTest::keyClick(&m_fixture->popover, Qt::Key_Return, Qt::ControlModifier); }

    // Turns to bulk mode and types the lines into its editor.
    void typeInBulk(const QStringList& lines) {
        click(QStringLiteral("bulkMode"));
        QQuickItem* editor = nullptr;
        QTRY_VERIFY((editor = item(QStringLiteral("bulkEditor"))) && editor->isVisible());
        editor->forceActiveFocus();
        QTRY_VERIFY(editor->hasActiveFocus());
        type(lines.join(u'\n'));
        QTRY_COMPARE(m_fixture->composer->bulkLines(), lines.join(u'\n'));
    }

    static QRectF sceneRect(const QQuickItem* shown) {
        return shown->mapRectToScene(QRectF(0, 0, shown->width(), shown->height()));
    }

    static QString describe(const QRectF& rect) {
        return QStringLiteral("%1,%2 %3x%4").arg(rect.x()).arg(rect.y()).arg(rect.width()).arg(rect.height());
    }

    // The row of the bulk page's created task at `index`, or null.
    QQuickItem* createdTaskRow(int index) {
        QQuickItem* row = nullptr;
        QMetaObject::invokeMethod(item(QStringLiteral("createdTasks")), "itemAtIndex", Q_RETURN_ARG(QQuickItem*, row),
                                  Q_ARG(int, index));
        return row;
    }

    // What keeps a row of the bulk page from being seen whole: a row must have a height, lie inside
    // the window and inside its list, and overlap neither another row nor another control.
    QStringList hiddenRows(int count) {
        QQuickItem* list = item(QStringLiteral("createdTasks"));
        if (!list) {
            return {QStringLiteral("no list of created tasks")};
        }
        const QRectF window(0, 0, m_fixture->popover.width(), m_fixture->popover.height());
        const QRectF listBox = sceneRect(list);
        QList<std::pair<QString, QRectF>> others;
        for (const QString& name :
             {QStringLiteral("resultTitle"), QStringLiteral("bulkFailureTitle"), QStringLiteral("retryFailed"),
              QStringLiteral("copyAllLinks"), QStringLiteral("bulkDone")}) {
            if (QQuickItem* other = item(name); other && other->isVisible()) {
                others.append({name, sceneRect(other)});
            }
        }
        QStringList problems;
        for (int index = 0; index < count; ++index) {
            QQuickItem* row = createdTaskRow(index);
            if (!row || !row->isVisible() || row->height() <= 0) {
                problems << QStringLiteral("row %1 is not shown").arg(index);
                continue;
            }
            const QRectF box = sceneRect(row);
            if (!window.contains(box)) {
                problems << QStringLiteral("row %1 at %2 leaves the window %3")
                                .arg(index)
                                .arg(describe(box), describe(window));
            }
            if (!listBox.contains(box)) {
                problems << QStringLiteral("row %1 at %2 is cut by its list at %3")
                                .arg(index)
                                .arg(describe(box), describe(listBox));
            }
            for (const auto& [name, other] : std::as_const(others)) {
                if (box.intersects(other)) {
                    problems << QStringLiteral("row %1 at %2 lies under %3 at %4")
                                    .arg(index)
                                    .arg(describe(box), name, describe(other));
                }
            }
            others.append({QStringLiteral("row %1").arg(index), box});
        }
        return problems;
    }

    // The task creations the sandbox answered, as {name, status}.
    QList<std::pair<QString, int>> creations() {
        QList<std::pair<QString, int>> found;
        for (const QJsonValue& request : m_sandbox.requests()) {
            if (request[QStringLiteral("method")] == QStringLiteral("POST") &&
                request[QStringLiteral("path")].toString().endsWith(QStringLiteral("/task"))) {
                found.append({request[QStringLiteral("json")][QStringLiteral("name")].toString(),
                              request[QStringLiteral("status")].toInt()});
            }
        }
        return found;
    }

private slots:
    void initTestCase() {
        QVERIFY2(PopoverFixture::startSandbox(m_sandbox), qPrintable(m_sandbox.errorString()));
        // The English catalogue, as the program loads it, gives the singular of one.
        QVERIFY(Translations::install(*QCoreApplication::instance()));
    }

    void init() {
        m_fixture = PopoverFixture::signedInAgainst(m_sandbox, SandboxDemo::supportListID);
        QVERIFY(m_fixture);
        QVERIFY(QTest::qWaitForWindowActive(&m_fixture->popover));
        QVERIFY(m_sandbox.clearRequests());
    }

    void cleanup() { m_fixture.reset(); }

    void aTypedTaskIsCreatedWithCtrlReturnAndTheDonePageShowsIt() {
        typeName(QStringLiteral("Write the release notes"));
        QTRY_VERIFY(m_fixture->composer->canSubmit());
        pressSubmitShortcut();
        QTRY_COMPARE(submit().page(), SubmitViewModel::Done);
        QTRY_COMPARE(textOf(QStringLiteral("resultTitle")), QStringLiteral("Task created"));
        QCOMPARE(textOf(QStringLiteral("doneTaskName")), QStringLiteral("Write the release notes"));
        QCOMPARE(creations(), (QList<std::pair<QString, int>>{{QStringLiteral("Write the release notes"), 200}}));
        QVERIFY(!item(QStringLiteral("retryUploads"))->isVisible());
    }

    void theDonePageCopiesTheLinkAndTheBranchNameAndOpensTheTask() {
        typeName(QStringLiteral("Fix login bug"));
        pressSubmitShortcut();
        QTRY_COMPARE(submit().page(), SubmitViewModel::Done);
        click(QStringLiteral("copyLink"));
        QCOMPARE(links().copied().size(), 1);
        QVERIFY(links().copied().first().startsWith(m_sandbox.webUrl(u"/t/").toString()));
        QTRY_COMPARE(textOf(QStringLiteral("copyLink")), QStringLiteral("Copied"));
        click(QStringLiteral("copyBranch"));
        QCOMPARE(links().copied().size(), 2);
        QVERIFY2(QRegularExpression(QStringLiteral("^NW-[0-9]+_Fix-login-bug_Ada-Okafor$"))
                     .match(links().copied().last())
                     .hasMatch(),
                 qPrintable(links().copied().last()));
        const QString url = links().copied().first();
        click(QStringLiteral("openInNorvane"));
        QCOMPARE(links().opened(), QList<QUrl>{QUrl(url)});
        QTRY_COMPARE(submit().page(), SubmitViewModel::Composer);
        QCOMPARE(m_fixture->app->draft().name(), QString());
    }

    // The count above the attachment strip and the title of the done page, when every upload is
    // refused, read in the singular for one and in the plural for none, two and many.
    void theAttachmentCountsReadInTheSingularForOne_data() {
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("caption");
        QTest::addColumn<QString>("title");
        QTest::newRow("one") << 1 << QStringLiteral("1 attachment") << QStringLiteral("1 attachment failed to upload");
        QTest::newRow("two") << 2 << QStringLiteral("2 attachments")
                             << QStringLiteral("2 attachments failed to upload");
        QTest::newRow("many") << 12 << QStringLiteral("12 attachments")
                              << QStringLiteral("12 attachments failed to upload");
    }

    void theAttachmentCountsReadInTheSingularForOne() {
        QFETCH(int, count);
        QFETCH(QString, caption);
        QFETCH(QString, title);
        QCOMPARE(textOf(QStringLiteral("attachmentCount")), QStringLiteral("0 attachments"));
        QTemporaryDir folder;
        QList<StagedAttachment> files;
        for (int index = 0; index < count; ++index) {
            const QString path = folder.filePath(QStringLiteral("notes%1.txt").arg(index));
            QFile file(path);
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write("notes") == 5);
            file.close();
            const std::optional<StagedAttachment> staged = AttachmentStaging::stage(QUrl::fromLocalFile(path));
            QVERIFY(staged);
            files.append(*staged);
        }
        m_fixture->app->draft().appendAttachments(files);
        QTRY_COMPARE(textOf(QStringLiteral("attachmentCount")), caption);

        SandboxFault refused = SandboxFault::answer(QStringLiteral("/api/v2/task/*/attachment"), 400, count);
        refused.method = QStringLiteral("POST");
        QVERIFY(m_sandbox.addFault(refused));
        typeName(QStringLiteral("With notes"));
        QTRY_VERIFY(m_fixture->composer->canSubmit());
        pressSubmitShortcut();
        QTRY_COMPARE(submit().page(), SubmitViewModel::Done);
        QTRY_COMPARE(textOf(QStringLiteral("resultTitle")), title);
        QVERIFY(m_sandbox.clearFaults());
    }

    void theSubmitButtonAndShortcutDoNothingForABlankName() {
        typeName(QStringLiteral("   "));
        QVERIFY(!m_fixture->composer->canSubmit());
        QVERIFY(!item(QStringLiteral("submitButton"))->isEnabled());
        pressSubmitShortcut();
        QTest::qWait(200);
        QCOMPARE(submit().page(), SubmitViewModel::Composer);
        QCOMPARE(creations().size(), 0);
    }

    void aRefusedCreationShowsTheFailedPageAndRetryCreatesTheTaskOnce() {
        QVERIFY(m_sandbox.addFault(SandboxFault::taskCreationAnswer(500)));
        typeName(QStringLiteral("Order new badges"));
        pressSubmitShortcut();
        QTRY_COMPARE(submit().page(), SubmitViewModel::Failed);
        QCOMPARE(textOf(QStringLiteral("resultTitle")), QStringLiteral("Couldn't create task"));
        QVERIFY(!textOf(QStringLiteral("failureMessage")).isEmpty());
        click(QStringLiteral("retry"));
        QTRY_COMPARE(submit().page(), SubmitViewModel::Done);
        QCOMPARE(creations(), (QList<std::pair<QString, int>>{{QStringLiteral("Order new badges"), 500},
                                                              {QStringLiteral("Order new badges"), 200}}));
    }

    void backToEditingEmptiesTheComposer() {
        QVERIFY(m_sandbox.addFault(SandboxFault::taskCreationAnswer(400)));
        typeName(QStringLiteral("Never mind"));
        pressSubmitShortcut();
        QTRY_COMPARE(submit().page(), SubmitViewModel::Failed);
        click(QStringLiteral("backToEditing"));
        QTRY_COMPARE(submit().page(), SubmitViewModel::Composer);
        QTRY_COMPARE(textOf(QStringLiteral("taskName")), QString());
    }

    void threeLinesInBulkMakeThreeTasksAndTheBulkPageListsThem() {
        typeInBulk({QStringLiteral("Alpha"), QStringLiteral("Beta"), QString(), QStringLiteral("Gamma")});
        QVERIFY(m_fixture->composer->isBulkMode());
        QCOMPARE(textOf(QStringLiteral("submitButton")), QStringLiteral("Create Tasks"));
        pressSubmitShortcut();
        QTRY_COMPARE(submit().page(), SubmitViewModel::BulkDone);
        QCOMPARE(textOf(QStringLiteral("resultTitle")), QStringLiteral("3 tasks created"));
        QCOMPARE(submit().createdTaskNames(),
                 (QStringList{QStringLiteral("Alpha"), QStringLiteral("Beta"), QStringLiteral("Gamma")}));
        click(QStringLiteral("copyAllLinks"));
        QCOMPARE(links().copied().size(), 1);
        QCOMPARE(links().copied().first().split(u'\n').size(), 3);
        click(QStringLiteral("bulkDone"));
        QTRY_COMPARE(submit().page(), SubmitViewModel::Composer);
        QVERIFY(!m_fixture->composer->isBulkMode());
    }

    void everyTaskOfABulkOfFourHasARowInSightClearOfTheOtherControls() {
        const QStringList lines{QStringLiteral("Draft the agenda"), QStringLiteral("Book the room"),
                                QStringLiteral("Send the invites"), QStringLiteral("Order the catering")};
        typeInBulk(lines);
        pressSubmitShortcut();
        QTRY_COMPARE(submit().page(), SubmitViewModel::BulkDone);
        QCOMPARE(submit().createdTaskNames(), lines);
        QTRY_VERIFY2(hiddenRows(4).isEmpty(), qPrintable(hiddenRows(4).join(QStringLiteral("; "))));
        for (int index = 0; index < 4; ++index) {
            QCOMPARE(QAccessible::queryAccessibleInterface(createdTaskRow(index))->text(QAccessible::Description),
                     QStringLiteral("Copy link for ") + lines.at(index));
        }
    }

    void theCopyLinkTipLeavesTheTaskNameInSight() {
        typeName(QStringLiteral("Fix login bug"));
        pressSubmitShortcut();
        QTRY_COMPARE(submit().page(), SubmitViewModel::Done);
        QQuickItem* button = nullptr;
        QTRY_VERIFY((button = item(QStringLiteral("copyLink"))) && button->isVisible() && button->width() > 0);
        QTest::mouseMove(&m_fixture->popover, sceneRect(button).center().toPoint());
        QQuickItem* tip = nullptr;
        QTRY_VERIFY(
            (tip = QuickItems::visualChild(m_fixture->popover.contentItem(), QStringLiteral("plainToolTipText"))) &&
            tip->isVisible());
        QCOMPARE(QuickItems::plainText(tip), QStringLiteral("Copy task link"));
        // The tip's box, its frame included.
        const QRectF box = sceneRect(tip->parentItem());
        const QRectF name = sceneRect(item(QStringLiteral("doneTaskName")));
        QVERIFY2(!box.intersects(name), qPrintable(describe(box) + QStringLiteral(" over ") + describe(name)));
        QVERIFY(QRectF(0, 0, m_fixture->popover.width(), m_fixture->popover.height()).contains(box));
    }

    void createNewTaskLeavesTheJobToANotification() {
        QVERIFY(m_sandbox.addFault(SandboxFault::taskCreationDelay(600)));
        typeName(QStringLiteral("Call the printer company"));
        pressSubmitShortcut();
        QTRY_COMPARE(submit().page(), SubmitViewModel::Progress);
        QCOMPARE(textOf(QStringLiteral("progressText")), QStringLiteral("Creating Call the printer company…"));
        click(QStringLiteral("createNewTask"));
        QTRY_COMPARE(submit().page(), SubmitViewModel::Composer);
        QTRY_COMPARE(textOf(QStringLiteral("taskName")), QString());
        QTRY_COMPARE(notifications().posted().size(), 1);
        QCOMPARE(notifications().posted().first().title, QStringLiteral("Call the printer company"));
        QCOMPARE(notifications().posted().first().body, QStringLiteral("Task created"));
        QVERIFY(!submit().hasBanner());
    }

    void anOutcomeNoNotificationCanShowAppearsAsTheBanner() {
        notifications().setPermission(false);
        QVERIFY(m_sandbox.addFault(SandboxFault::taskCreationDelay(600)));
        typeName(QStringLiteral("Book the room"));
        pressSubmitShortcut();
        QTRY_COMPARE(submit().page(), SubmitViewModel::Progress);
        click(QStringLiteral("createNewTask"));
        QTRY_VERIFY(submit().hasBanner());
        QTRY_VERIFY(item(QStringLiteral("backgroundResultBanner"))->isVisible());
        QCOMPARE(textOf(QStringLiteral("bannerTitle")), QStringLiteral("Book the room"));
        QCOMPARE(textOf(QStringLiteral("bannerSubtitle")), QStringLiteral("Background task completed"));
        QVERIFY(!item(QStringLiteral("bannerRetry"))->isVisible());
        click(QStringLiteral("bannerDismiss"));
        QTRY_VERIFY(!submit().hasBanner());
        QVERIFY(!item(QStringLiteral("backgroundResultBanner"))->isVisible());
    }

    void aMarkupNameIsShownAsPlainTextOnTheDonePage() {
        const QString name = QStringLiteral("<b>Bold</b> & \"quoted\" <img src=\"%1\"> ✓")
                                 .arg(m_sandbox.webUrl(SandboxDemo::hostilePicturePath(u"task")).toString());
        typeName(name);
        pressSubmitShortcut();
        QTRY_COMPARE(submit().page(), SubmitViewModel::Done);
        QQuickItem* label = item(QStringLiteral("doneTaskName"));
        QCOMPARE(label->property("text").toString(), name);
        QCOMPARE(label->property("textFormat").toInt(), int(Qt::PlainText));
        QCOMPARE(m_fixture->picturesFetchedAfterPainting(m_sandbox), QStringList());
    }
};

NORVANEBAR_TEST_MAIN(SubmitPagesTest)
#include "SubmitPagesTest.moc"
