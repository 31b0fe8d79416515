#include "support/KeyboardDriver.h"
#include "support/PopoverFixture.h"
#include "support/SandboxDemo.h"
#include "support/SandboxProcess.h"
#include "support/SubmitTesting.h"
#include "support/TestMain.h"

#include <QJsonArray>
#include <QQuickItem>
#include <QTest>

// A person at the keyboard creates a task whose answer norvane-sandbox loses after creating it: the
// failed page says the task may exist, Retry finds it in the list, and the page offers it ("Open in
// Norvane") or another one ("Create Anyway").
class LostAnswerPagesTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    std::unique_ptr<PopoverFixture> m_fixture;
    std::unique_ptr<KeyboardDriver> m_keys;

    SubmitViewModel& submit() { return *m_fixture->submit; }
    RecordingLinkActions& links() { return m_fixture->state.linkActions(); }

    QQuickItem* item(const QString& objectName) { return m_fixture->item(objectName); }
    QString textOf(const QString& objectName) { return m_fixture->textOf(objectName); }

    bool isShown(const QString& objectName) {
        QQuickItem* found = item(objectName);
        return found && found->isVisible();
    }

    // Tabs to the button and presses Space on it, once it is shown and enabled.
    void pressButton(const QString& objectName) {
        QQuickItem* button = nullptr;
        QTRY_VERIFY2((button = item(objectName)) && button->isVisible() && button->isEnabled(), qPrintable(objectName));
        QVERIFY2(m_keys->tabTo(button), qPrintable(objectName));
        m_keys->press(Qt::Key_Space);
    }

    // Types the name and creates the task with Ctrl+Return, its answer lost; waits for the failed
    // page.
    void createWithItsAnswerLost(const QString& name) {
        SandboxFault lost = SandboxFault::dropAnswer(QStringLiteral("/api/v2/list/*/task"), 1);
        lost.method = QStringLiteral("POST");
        QVERIFY(m_sandbox.addFault(lost));
        QQuickItem* field = nullptr;
        QTRY_VERIFY((field = item(QStringLiteral("taskName"))) && field->hasActiveFocus());
        m_keys->type(name);
        m_keys->press(Qt::Key_Return, Qt::ControlModifier);
        QTRY_COMPARE(submit().page(), SubmitViewModel::Failed);
    }

    // The names of the task creations the sandbox received.
    QStringList creations() {
        QStringList names;
        for (const QJsonValue& request :
             SubmitTesting::postsEndingWith(m_sandbox.requests(), QStringLiteral("/task"))) {
            names.append(request[QStringLiteral("json")][QStringLiteral("name")].toString());
        }
        return names;
    }

private slots:
    void initTestCase() { QVERIFY2(PopoverFixture::startSandbox(m_sandbox), qPrintable(m_sandbox.errorString())); }

    void init() {
        m_fixture = PopoverFixture::activeAgainst(m_sandbox, SandboxDemo::supportListID);
        QVERIFY(m_fixture);
        m_keys = std::make_unique<KeyboardDriver>(m_fixture->popover);
    }

    void cleanup() {
        m_keys.reset();
        m_fixture.reset();
    }

    void theFailedPageSaysThatTheTaskMayHaveBeenCreated() {
        createWithItsAnswerLost(QStringLiteral("Order the chairs"));
        QTRY_COMPARE(textOf(QStringLiteral("resultTitle")), QStringLiteral("Couldn't create task"));
        QVERIFY2(textOf(QStringLiteral("failureMessage")).contains(QStringLiteral("The task may have been created")),
                 qPrintable(textOf(QStringLiteral("failureMessage"))));
        QVERIFY(isShown(QStringLiteral("retry")));
        QVERIFY(!isShown(QStringLiteral("createAnyway")));
        QVERIFY(!isShown(QStringLiteral("openInNorvane")));
    }

    void retryFindsTheTaskAndOpenInNorvaneOpensIt() {
        const QString name = QStringLiteral("Book the venue");
        createWithItsAnswerLost(name);
        pressButton(QStringLiteral("retry"));
        QTRY_VERIFY(submit().foundExisting());
        QTRY_COMPARE(textOf(QStringLiteral("resultTitle")), QStringLiteral("Task may already exist"));
        QCOMPARE(textOf(QStringLiteral("failureMessage")),
                 QStringLiteral("An open task named “%1” is already in this list. It was probably created before its "
                                "answer was lost.")
                     .arg(name));
        QVERIFY(!isShown(QStringLiteral("retry")));
        QVERIFY(isShown(QStringLiteral("createAnyway")));
        QCOMPARE(creations(), QStringList{name});

        pressButton(QStringLiteral("openInNorvane"));
        QTRY_COMPARE(submit().page(), SubmitViewModel::Composer);
        QCOMPARE(links().opened().size(), 1);
        SyncHttpClient http;
        const QString id = SandboxDemo::openTaskNames(http, m_sandbox, SandboxDemo::supportListID).key(name);
        QCOMPARE(links().opened().first(), m_sandbox.webUrl(QStringLiteral("/t/") + id));
        QCOMPARE(creations(), QStringList{name});
    }

    void createAnywayCreatesOneMore() {
        const QString name = QStringLiteral("Print the badges");
        createWithItsAnswerLost(name);
        pressButton(QStringLiteral("retry"));
        QTRY_VERIFY(submit().foundExisting());
        pressButton(QStringLiteral("createAnyway"));
        QTRY_COMPARE(submit().page(), SubmitViewModel::Done);
        QCOMPARE(creations(), (QStringList{name, name}));
        QVERIFY(links().opened().isEmpty());
    }
};

NORVANEBAR_TEST_MAIN(LostAnswerPagesTest)
#include "LostAnswerPagesTest.moc"
