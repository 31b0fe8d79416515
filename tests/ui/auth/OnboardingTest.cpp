#include "support/PopoverFixture.h"
#include "support/QuickItems.h"
#include "support/SandboxDemo.h"
#include "support/SandboxProcess.h"
#include "support/TestMain.h"

#include <QAccessible>
#include <QQuickItem>
#include <QSignalSpy>
#include <QTest>

// The onboarding page and the pages that follow sign-in, against norvane-sandbox.
class OnboardingTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    std::unique_ptr<PopoverFixture> m_fixture;

    qsizetype userRequests() {
        qsizetype count = 0;
        for (const QJsonValue& request : m_sandbox.requests()) {
            count += request[QStringLiteral("path")].toString() == QStringLiteral("/api/v2/user") ? 1 : 0;
        }
        return count;
    }

    // Signs in through the model and waits for the answer.
    void connectWith(const QString& token) {
        QSignalSpy finished(m_fixture->onboarding, &OnboardingModel::finished);
        m_fixture->onboarding->setToken(token);
        m_fixture->onboarding->connect();
        // A refused format answers at once, before any wait.
        QTRY_VERIFY_WITH_TIMEOUT(finished.count() == 1, 10'000);
    }

    QString textOf(const QString& objectName) {
        QObject* item = m_fixture->find(objectName);
        return item ? item->property("text").toString() : QString();
    }

private slots:
    void initTestCase() { QVERIFY2(PopoverFixture::startSandbox(m_sandbox), qPrintable(m_sandbox.errorString())); }

    void init() {
        m_fixture = PopoverFixture::shownAgainst(m_sandbox);
        QVERIFY(m_fixture);
    }

    void cleanup() { m_fixture.reset(); }

    void theFirstPageIsOnboardingWithTheTokenPageLink() {
        QVERIFY(m_fixture->find(QStringLiteral("tokenField")));
        QCOMPARE(m_fixture->onboarding->tokenPageURL(), m_sandbox.webUrl(u"/settings/apps"));
    }

    void theTokenFieldHasTheKeyboard() {
        QVERIFY(QTest::qWaitForWindowActive(&m_fixture->popover));
        auto* field = qobject_cast<QQuickItem*>(m_fixture->find(QStringLiteral("tokenField")));
        QVERIFY(field);
        QTRY_VERIFY(field->hasActiveFocus());
        for (const char key : {'p', 'k', '_', 'x'}) {
            QTest::keyClick(&m_fixture->popover, key);
        }
        QCOMPARE(m_fixture->onboarding->token(), QStringLiteral("pk_x"));
    }

    void theTokenFieldIsNamedAndShowsAssistiveTechnologyOnlyTheMask() {
        QVERIFY(QTest::qWaitForWindowActive(&m_fixture->popover));
        auto* field = qobject_cast<QQuickItem*>(m_fixture->find(QStringLiteral("tokenField")));
        QVERIFY(field);
        QTRY_VERIFY(field->hasActiveFocus());
        const QString token = QStringLiteral("pk_x7q2");
        for (const QChar key : token) {
            QTest::keyClick(&m_fixture->popover, key.toLatin1());
        }
        QCOMPARE(m_fixture->onboarding->token(), token);

        QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(field);
        QVERIFY(accessible);
        QCOMPARE(accessible->role(), QAccessible::EditableText);
        QVERIFY(accessible->state().passwordEdit);
        QVERIFY(accessible->state().focused);
        QCOMPARE(accessible->text(QAccessible::Name), QStringLiteral("Norvane personal API token"));
        QVERIFY(accessible->parent());
        QAccessibleTextInterface* text = accessible->textInterface();
        QVERIFY(text);
        QCOMPARE(text->characterCount(), token.size());
        const QString shown = text->text(0, text->characterCount());
        QCOMPARE(shown, QString(token.size(), field->property("passwordCharacter").toString().front()));
        QVERIFY(!token.contains(shown.front()));
        QCOMPARE(accessible->text(QAccessible::Value), shown);
    }

    void pressingConnectTwiceQuicklyStartsOneSignIn() {
        QSignalSpy finished(m_fixture->onboarding, &OnboardingModel::finished);
        m_fixture->onboarding->setToken(m_sandbox.token());
        m_fixture->onboarding->connect();
        QVERIFY(m_fixture->onboarding->isBusy());
        m_fixture->onboarding->connect();
        QVERIFY(finished.wait(10'000));
        QVERIFY(!finished.wait(300));
        QCOMPARE(finished.count(), 1);
        // One sign-in asks twice: the probe of the pasted token, then the validation.
        QCOMPARE(userRequests(), 2);
    }

    void aTokenWithATrailingNewlineSignsIn() {
        connectWith(m_sandbox.token() + QStringLiteral("\n"));
        QCOMPARE(m_fixture->onboarding->errorMessage(), QString());
        QVERIFY(m_fixture->app->authState().is<AuthState::SignedIn>());
        QCOMPARE(m_fixture->onboarding->token(), QString());
    }

    void nothingTypedStartsNothing() {
        m_fixture->onboarding->setToken(QStringLiteral(" \n "));
        m_fixture->onboarding->connect();
        QVERIFY(!m_fixture->onboarding->isBusy());
        QCOMPARE(userRequests(), 0);
    }

    void aRejectedTokenShowsTheServicesMessageUnderTheField() {
        connectWith(QStringLiteral("pk_not_a_demo_token"));
        const QString message = m_fixture->onboarding->errorMessage();
        QVERIFY(!message.isEmpty());
        QTRY_COMPARE(textOf(QStringLiteral("errorMessage")), message);
        QVERIFY(m_fixture->find(QStringLiteral("errorMessage"))->property("visible").toBool());
        QCOMPARE(m_fixture->onboarding->token(), QStringLiteral("pk_not_a_demo_token"));
    }

    void theServicesMessageShowsAsPlainText() {
        const QString message = QStringLiteral("<b>Token</b> & \"key\" <img src=\"%1\"> refused")
                                    .arg(m_sandbox.webUrl(SandboxDemo::hostilePicturePath(u"error")).toString());
        SandboxFault refused = SandboxFault::answer(QStringLiteral("/api/v2/user"), 401);
        refused.err = message;
        QVERIFY(m_sandbox.addFault(refused));
        connectWith(QStringLiteral("pk_not_a_demo_token"));
        QCOMPARE(m_fixture->onboarding->errorMessage(), message);
        QTRY_COMPARE(QuickItems::plainText(m_fixture->find(QStringLiteral("errorMessage"))), message);
        QCOMPARE(m_fixture->picturesFetchedAfterPainting(m_sandbox), QStringList());
    }

    void aBadlyShapedTokenIsRefusedWithoutAsking() {
        connectWith(QStringLiteral("abc"));
        QVERIFY(m_fixture->onboarding->errorMessage().startsWith(
            QStringLiteral("That doesn't look like a Norvane personal API token.")));
        QCOMPARE(userRequests(), 0);
    }

    void signingInShowsTheSignedInPageWithTheUsersName() {
        connectWith(m_sandbox.token());
        const QString name = m_fixture->app->authState().user()->displayName();
        QTRY_COMPARE(textOf(QStringLiteral("signedInUser")), QStringLiteral("Signed in as %1").arg(name));
        QCOMPARE(m_fixture->auth->phase(), AuthViewModel::SignedIn);
    }

    void aNameWithMarkupShowsAsPlainText() {
        connectWith(SandboxDemo::hostileNamesToken);
        const QString name = SandboxDemo::hostileUserName(m_sandbox.webUrl(u""));
        QCOMPARE(m_fixture->auth->userDisplayName(), name);
        QTRY_COMPARE(QuickItems::plainText(m_fixture->find(QStringLiteral("signedInUser"))),
                     QStringLiteral("Signed in as %1").arg(name));
        QCOMPARE(m_fixture->picturesFetchedAfterPainting(m_sandbox), QStringList());
    }

    void theChosenListIsShownAndRemembered() {
        connectWith(m_sandbox.token());
        LocationPickerViewModel& location = *m_fixture->location;
        QCOMPARE(location.locationTitle(), QStringLiteral("Choose workspace and list…"));
        QCOMPARE(location.selectedListID(), QString());
        location.appear();
        QTRY_VERIFY(location.rowModel().rowCount() > 1);
        const ListEntry second = location.rowModel().entries().at(1);
        location.choose(1);
        QCOMPARE(location.selectedListID(), second.id());
        QCOMPARE(m_fixture->app->currentContext()->entry(), second);
        QTRY_COMPARE(textOf(QStringLiteral("locationTitle")), second.list.name);
        QCOMPARE(m_fixture->app->settings().settings().lastLocation->listName, second.list.name);
    }

    void validationShowsConnecting() {
        // Both the probe of the token and the validation that follows are slow.
        SandboxFault slow = SandboxFault::delay(QStringLiteral("/api/v2/user"), 400);
        slow.times = 2;
        QVERIFY(m_sandbox.addFault(slow));
        m_fixture->onboarding->setToken(m_sandbox.token());
        m_fixture->onboarding->connect();
        QTRY_COMPARE(m_fixture->auth->phase(), AuthViewModel::Validating);
        QTRY_VERIFY(m_fixture->popover.rootObject()->findChild<QQuickItem*>(QStringLiteral("connecting")));
        QTRY_COMPARE(m_fixture->auth->phase(), AuthViewModel::SignedIn);
    }
};

NORVANEBAR_TEST_MAIN(OnboardingTest)
#include "OnboardingTest.moc"
