#include "PopoverFixture.h"
#include "QuickItems.h"
#include "SandboxDemo.h"
#include "SandboxProcess.h"

#include <QJsonArray>
#include <QQuickItem>
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

    // Types `text` key by key into the focused item, as a keyboard would.
    void type(const QString& text) {
        for (const QChar character : text) {
            QTest::sendKeyEvent(QTest::Click, &m_fixture->popover, Qt::Key_unknown, QString(character), Qt::NoModifier);
        }
    }

    void typeName(const QString& name) {
        QQuickItem* field = nullptr;
        QTRY_VERIFY((field = item(QStringLiteral("taskName"))) && field->hasActiveFocus());
        type(name);
    }

    void pressSubmitShortcut() { QTest::keyClick(&m_fixture->popover, Qt::Key_Return, Qt::ControlModifier); }

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
    void initTestCase() { QVERIFY2(PopoverFixture::startSandbox(m_sandbox), qPrintable(m_sandbox.errorString())); }

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
        click(QStringLiteral("bulkMode"));
        QTRY_VERIFY(m_fixture->composer->isBulkMode());
        QTRY_VERIFY(item(QStringLiteral("bulkEditor")) && item(QStringLiteral("bulkEditor"))->isVisible());
        QCOMPARE(textOf(QStringLiteral("submitButton")), QStringLiteral("Create Tasks"));
        item(QStringLiteral("bulkEditor"))->forceActiveFocus();
        type(QStringLiteral("Alpha"));
        QTest::keyClick(&m_fixture->popover, Qt::Key_Return);
        type(QStringLiteral("Beta"));
        QTest::keyClick(&m_fixture->popover, Qt::Key_Return);
        QTest::keyClick(&m_fixture->popover, Qt::Key_Return);
        type(QStringLiteral("Gamma"));
        QTRY_COMPARE(m_fixture->composer->bulkLines(), QStringLiteral("Alpha\nBeta\n\nGamma"));
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

QTEST_MAIN(SubmitPagesTest)
#include "SubmitPagesTest.moc"
