#include "support/ContrastTesting.h"
#include "support/KeyboardDriver.h"
#include "support/PopoverFixture.h"
#include "support/QuickItems.h"
#include "support/SandboxDemo.h"
#include "support/SandboxProcess.h"
#include "support/TestMain.h"

#include <QAccessible>
#include <QQuickItem>
#include <QSignalSpy>
#include <QTest>

// The account menu in the popover's header, by keyboard, against norvane-sandbox: Ben signed in
// first, then Ada, so Ada is active and Ben stored before her.
class AccountMenuTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    std::unique_ptr<PopoverFixture> m_fixture;
    QList<SandboxProcess::Token> m_tokens;

    PopoverWindow& popover() { return m_fixture->popover; }
    QQuickItem* item(const QString& objectName) { return QuickItems::visualChild(popover().contentItem(), objectName); }
    QQuickItem* switcher() { return item(QStringLiteral("accountSwitcher")); }
    QObject* menu() { return switcher() ? switcher()->findChild<QObject*>(QStringLiteral("accountMenu")) : nullptr; }
    void key(Qt::Key key) { QTest::keyClick(&popover(), key); }

    // The entries of the open menu, separator included, in their order.
    QList<QQuickItem*> menuEntries() {
        QList<QQuickItem*> entries;
        const int count = menu()->property("count").toInt();
        for (int index = 0; index < count; ++index) {
            QQuickItem* entry = nullptr;
            QMetaObject::invokeMethod(menu(), "itemAt", Q_RETURN_ARG(QQuickItem*, entry), Q_ARG(int, index));
            entries.append(entry);
        }
        return entries;
    }

    static QAccessibleInterface* accessible(QQuickItem* item) { return QAccessible::queryAccessibleInterface(item); }

    // Shift+Tab from the task name, where the keyboard starts, until the avatar button has it; false
    // when it never comes. (Backwards: the description field keeps a Tab for itself.)
    bool tabToTheAccountButton() {
        for (int presses = 0; presses < 40; ++presses) {
            if (switcher() && switcher()->hasActiveFocus()) {
                return true;
            }
            QTest::keyClick(&popover(), Qt::Key_Backtab, Qt::ShiftModifier);
        }
        return false;
    }

    void openTheMenuByKeyboard() {
        QVERIFY(QTest::qWaitForWindowActive(&popover()));
        QVERIFY(tabToTheAccountButton());
        key(Qt::Key_Space);
        QVERIFY(KeyboardDriver::waitForMenu(menu()));
    }

    QString signedInLabel() { return QuickItems::plainText(item(QStringLiteral("signedInUser"))); }

private slots:
    void initTestCase() {
        QVERIFY2(PopoverFixture::startSandbox(m_sandbox), qPrintable(m_sandbox.errorString()));
        m_tokens = m_sandbox.tokens();
        QCOMPARE(m_tokens.at(0).userID, SandboxDemo::firstUserID);
        QCOMPARE(m_tokens.at(1).userID, SandboxDemo::secondUserID);
    }

    void init() {
        m_fixture = PopoverFixture::shownAgainst(m_sandbox);
        QVERIFY(m_fixture);
        QCOMPARE(runTask(m_fixture->app->signIn(m_tokens.at(1).token)), std::nullopt);
        QCOMPARE(runTask(m_fixture->app->signIn(m_tokens.at(0).token)), std::nullopt);
        QTRY_VERIFY(switcher());
    }

    void cleanup() { m_fixture.reset(); }

    void theAvatarButtonSaysWhoIsSignedInAndWhatItDoes() {
        QAccessibleInterface* button = accessible(switcher());
        QVERIFY(button);
        QCOMPARE(button->text(QAccessible::Name), QStringLiteral("Switch Norvane account"));
        const QString name = m_fixture->app->authState().user()->displayName();
        QCOMPARE(button->text(QAccessible::Description),
                 QStringLiteral("Signed in as %1 — click to switch account").arg(name));
    }

    void theMenuListsTheAccountsInStoredOrderWithTheCheckOnTheActiveOne() {
        openTheMenuByKeyboard();
        const QList<QQuickItem*> entries = menuEntries();
        QCOMPARE(entries.size(), 4);
        QCOMPARE(entries.at(0)->property("label").toString(),
                 QStringLiteral("%1 (ben@northwind.example)").arg(QStringLiteral("Ben Carter")));
        QCOMPARE(entries.at(1)->property("label").toString(),
                 QStringLiteral("%1 (ada@northwind.example)").arg(QStringLiteral("Ada Okafor")));
        QVERIFY(!accessible(entries.at(0))->state().checked);
        QVERIFY(accessible(entries.at(1))->state().checked);
        QVERIFY(!entries.at(0)->property("symbolShown").toBool());
        QVERIFY(entries.at(1)->property("symbolShown").toBool());
        QCOMPARE(entries.at(1)->property("symbol").toString(), QStringLiteral("checkmark"));
        QVERIFY(QString::fromLatin1(entries.at(2)->metaObject()->className()).startsWith(u"MenuSeparator"));
        QCOMPARE(entries.at(3)->property("label").toString(), QStringLiteral("Add Account…"));
    }

    void choosingAnotherAccountByKeyboardSwitchesToIt() {
        openTheMenuByKeyboard();
        // The first entry: Ben.
        QVERIFY(KeyboardDriver(popover()).chooseInMenu(menu(), 0));
        QTRY_VERIFY(m_fixture->app->authState().user() &&
                    m_fixture->app->authState().user()->id == SandboxDemo::secondUserID);
        QCOMPARE(m_fixture->app->settings().settings().activeAccountID, std::optional(SandboxDemo::secondUserID));
        QTRY_COMPARE(signedInLabel(), QStringLiteral("Signed in as %1").arg(QStringLiteral("Ben Carter")));
        // The menu now checks Ben.
        openTheMenuByKeyboard();
        QVERIFY(accessible(menuEntries().at(0))->state().checked);
        QVERIFY(!accessible(menuEntries().at(1))->state().checked);
    }

    void addAccountClosesThePopoverAndOpensTheSettingsOnTheAccountTab() {
        QSignalSpy asked(m_fixture->accounts, &AccountsViewModel::openSettingsRequested);
        QList<std::optional<SettingsTab>> opened;
        QObject asking;
        QObject::connect(m_fixture->app, &AppState::settingsRequested, &asking,
                         [&opened](std::optional<SettingsTab> tab) { opened.append(tab); });
        bool hiddenFirst = false;
        QObject::connect(m_fixture->accounts, &AccountsViewModel::openSettingsRequested, this,
                         [this, &hiddenFirst] { hiddenFirst = !popover().isVisible(); });
        openTheMenuByKeyboard();
        // Past both accounts and the separator, which takes no stop.
        QVERIFY(KeyboardDriver(popover()).chooseInMenu(menu(), 3));
        QTRY_COMPARE(asked.count(), 1);
        QCOMPARE(opened, QList<std::optional<SettingsTab>>{SettingsTab::account});
        QVERIFY(hiddenFirst);
        QVERIFY(!popover().isVisible());
        QCOMPARE(m_fixture->app->authState().user()->id, SandboxDemo::firstUserID);
    }

    void theSettingsButtonOpensTheSettingsOnTheTabTheyLastShowed() {
        QList<std::optional<SettingsTab>> opened;
        QObject asking;
        QObject::connect(m_fixture->app, &AppState::settingsRequested, &asking,
                         [&opened](std::optional<SettingsTab> tab) { opened.append(tab); });
        QQuickItem* button = QuickItems::visualChild(popover().contentItem(), QStringLiteral("settingsButton"));
        QVERIFY(button);
        QCOMPARE(QAccessible::queryAccessibleInterface(button)->text(QAccessible::Name),
                 QStringLiteral("NorvaneBar settings"));
        button->forceActiveFocus(Qt::TabFocusReason);
        key(Qt::Key_Space);
        QTRY_COMPARE(opened, QList<std::optional<SettingsTab>>{std::nullopt});
    }

    void anAccountWithoutEmailShowsOnlyItsNameAndOneNamedByItsEmailShowsItOnce() {
        m_fixture->app->settings().modify([](AppSettings& settings) {
            settings.accounts.append({1, QStringLiteral("No Mail")});
            settings.accounts.append({2, QStringLiteral("same@example.org"), QStringLiteral("same@example.org"),
                                      std::nullopt, std::nullopt});
        });
        openTheMenuByKeyboard();
        const QList<QQuickItem*> entries = menuEntries();
        QCOMPARE(entries.size(), 6);
        QCOMPARE(entries.at(2)->property("label").toString(), QStringLiteral("No Mail"));
        QCOMPARE(entries.at(3)->property("label").toString(), QStringLiteral("same@example.org"));
    }

    void theAvatarShowsTheInitialsInTheAccountsColourWithTheMoreReadableText() {
        auto* avatar = qobject_cast<QQuickItem*>(switcher()->property("contentItem").value<QObject*>());
        QVERIFY(avatar);
        QQuickItem* initials = QuickItems::visualChild(avatar, QStringLiteral("avatarInitials"));
        QCOMPARE(QuickItems::plainText(initials), QStringLiteral("AO"));
        const QColor fill = avatar->property("color").value<QColor>();
        QCOMPARE(fill, QColor(QStringLiteral("#7b68ee")));
        const QColor text = initials->property("color").value<QColor>();
        const QColor other = text == QColor(Qt::black) ? QColor(Qt::white) : QColor(Qt::black);
        QVERIFY(text == QColor(Qt::black) || text == QColor(Qt::white));
        QVERIFY(ContrastTesting::contrast(text, fill) >= ContrastTesting::contrast(other, fill));
        QVERIFY(ContrastTesting::contrast(text, fill) >= 4.5);
        QVERIFY(initials->property("font").value<QFont>().bold());
    }

    void removingTheLastAccountBringsBackOnboarding() {
        runTask(m_fixture->app->removeAccount(SandboxDemo::secondUserID));
        QVERIFY(switcher());
        runTask(m_fixture->app->removeAccount(SandboxDemo::firstUserID));
        QVERIFY(m_fixture->app->authState().is<AuthState::SignedOut>());
        QTRY_VERIFY(m_fixture->find(QStringLiteral("tokenField")));
    }
};

NORVANEBAR_TEST_MAIN(AccountMenuTest)
#include "AccountMenuTest.moc"
