#include "desktop/auth/AccountsViewModel.h"
#include "desktop/shell/PopoverWindow.h"
#include "support/AppStateFixture.h"
#include "support/QuickItems.h"
#include "support/SandboxDemo.h"
#include "support/SandboxFault.h"
#include "support/TestMain.h"

#include <QAccessible>
#include <QQuickItem>
#include <QQuickView>
#include <QSignalSpy>
#include <QTest>

// The Account pane of the settings window on its own, by keyboard, against norvane-sandbox.
class AccountSettingsViewTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    QList<SandboxProcess::Token> m_tokens;
    std::unique_ptr<AppStateFixture> m_fixture;
    std::unique_ptr<AccountsViewModel> m_accounts;
    std::unique_ptr<QQuickView> m_view;

    AppState& app() { return m_fixture->app(); }
    OnboardingModel& form() { return *m_accounts->tokenForm(); }
    const SandboxProcess::Token& ada() const { return m_tokens.at(0); }
    const SandboxProcess::Token& ben() const { return m_tokens.at(1); }

    qsizetype userRequests() {
        qsizetype count = 0;
        for (const QJsonValue& request : m_sandbox.requests()) {
            count += request[QStringLiteral("path")].toString() == QStringLiteral("/api/v2/user") ? 1 : 0;
        }
        return count;
    }

    // The pane in a window of its own, over the central state as it stands.
    void showPane() {
        m_accounts = std::make_unique<AccountsViewModel>(app().auth(), app().settings(), app().serviceAddresses());
        m_view = std::make_unique<QQuickView>();
        PopoverWindow::configureEngine(*m_view->engine());
        m_view->setInitialProperties({{QStringLiteral("accounts"), QVariant::fromValue(m_accounts.get())}});
        m_view->setResizeMode(QQuickView::SizeRootObjectToView);
        m_view->resize(480, 640);
        m_view->setSource(QUrl(QStringLiteral("qrc:/qt/qml/NorvaneBar/auth/qml/AccountSettingsView.qml")));
        QVERIFY2(m_view->status() == QQuickView::Ready, qPrintable(m_view->errors().value(0).toString()));
        m_view->show();
        m_view->requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(m_view.get()));
    }

    void signIn(const SandboxProcess::Token& user) { QCOMPARE(runTask(app().signIn(user.token)), std::nullopt); }

    QQuickItem* item(const QString& objectName) { return QuickItems::visualChild(m_view->contentItem(), objectName); }
    // The items of one name, one per account row, in the rows' order.
    QList<QQuickItem*> items(const QString& objectName) {
        QList<QQuickItem*> found;
        collect(m_view->contentItem(), objectName, found);
        return found;
    }
    static void collect(QQuickItem* item, const QString& objectName, QList<QQuickItem*>& found) {
        for (QQuickItem* child : item->childItems()) {
            if (child->objectName() == objectName) {
                found.append(child);
            }
            collect(child, objectName, found);
        }
    }
    QString textOf(const QString& objectName) { return item(objectName)->property("text").toString(); }

    void key(Qt::Key key) { QTest::keyClick(m_view.get(), key); }
    void type(const QString& text) {
        for (const QChar character : text) {
            QTest::sendKeyEvent(QTest::Click, m_view.get(), Qt::Key_unknown, QString(character), Qt::NoModifier);
        }
    }

    QQuickItem* focused() { return m_view->activeFocusItem(); }
    static QString accessibleName(QQuickItem* item) {
        QAccessibleInterface* accessible = item ? QAccessible::queryAccessibleInterface(item) : nullptr;
        return accessible ? accessible->text(QAccessible::Name) : QString();
    }

    // Tab once round the pane: the accessible names of the controls that take the keyboard, in order.
    QStringList tabRound() {
        QStringList names;
        QList<QQuickItem*> seen;
        for (int presses = 0; presses < 30; ++presses) {
            key(Qt::Key_Tab);
            if (seen.contains(focused())) {
                break;
            }
            seen.append(focused());
            names.append(accessibleName(focused()));
        }
        return names;
    }

    // Tab until the item has the keyboard; false when it never comes.
    bool tabTo(QQuickItem* target) {
        for (int presses = 0; presses < 30 && focused() != target; ++presses) {
            key(Qt::Key_Tab);
        }
        return focused() == target;
    }

private slots:
    void initTestCase() {
        PopoverWindow::configureQuick();
        QVERIFY2(m_sandbox.start(), qPrintable(m_sandbox.errorString()));
        m_tokens = m_sandbox.tokens();
        QCOMPARE(ada().userID, SandboxDemo::firstUserID);
        QCOMPARE(ben().userID, SandboxDemo::secondUserID);
    }

    void init() {
        QVERIFY(m_sandbox.reset());
        m_fixture = std::make_unique<AppStateFixture>(&m_sandbox);
        m_fixture->start();
    }

    void cleanup() {
        m_view.reset();
        m_accounts.reset();
        m_fixture.reset();
    }

    void withoutAccountsThePaneOffersToConnect() {
        showPane();
        QCOMPARE(textOf(QStringLiteral("addAccountTitle")), QStringLiteral("Norvane Account"));
        QCOMPARE(textOf(QStringLiteral("connectButton")), QStringLiteral("Connect"));
        QVERIFY(items(QStringLiteral("switchButton")).isEmpty());
    }

    void withAccountsThePaneOffersToAddAnother() {
        signIn(ada());
        showPane();
        QCOMPARE(textOf(QStringLiteral("addAccountTitle")), QStringLiteral("Add Another Account"));
        QCOMPARE(textOf(QStringLiteral("connectButton")), QStringLiteral("Add Account"));
    }

    void theNoteSaysWhereTheTokensAreKept() {
        showPane();
        QVERIFY(QuickItems::accessibleNames(m_view->contentItem())
                    .contains(QStringLiteral("Personal API tokens are stored in the system keyring, one per account. "
                                             "Switch anytime from here or from the account menu in the popover.")));
    }

    void theTokenLinkGoesToTheServicesAppsPage() {
        showPane();
        QCOMPARE(textOf(QStringLiteral("tokenPageLink")), QStringLiteral("Get your token…"));
        QCOMPARE(form().tokenPageURL(), m_sandbox.webUrl(u"/settings/apps"));
    }

    void eachRowShowsTheAccountAndOnlyTheActiveOneIsMarked() {
        signIn(ben());
        signIn(ada());
        showPane();
        const QList<QQuickItem*> capsules = items(QStringLiteral("activeCapsule"));
        const QList<QQuickItem*> switches = items(QStringLiteral("switchButton"));
        QCOMPARE(capsules.size(), 2);
        // Ben first, as stored; Ada is active.
        QVERIFY(!capsules.at(0)->isVisible());
        QVERIFY(capsules.at(1)->isVisible());
        QCOMPARE(capsules.at(1)->property("text").toString(), QStringLiteral("Active"));
        QVERIFY(switches.at(0)->isVisible());
        QVERIFY(!switches.at(1)->isVisible());
        const QStringList names = QuickItems::accessibleNames(m_view->contentItem());
        for (const QString& shown : {QStringLiteral("Ben Carter"), QStringLiteral("ben@northwind.example"),
                                     QStringLiteral("Ada Okafor"), QStringLiteral("ada@northwind.example")}) {
            QVERIFY2(names.contains(shown), qPrintable(shown));
        }
    }

    void everyControlIsReachableByTabAndNamed() {
        signIn(ben());
        signIn(ada());
        showPane();
        // The add button waits for a token.
        const QStringList empty = tabRound();
        QCOMPARE(empty, (QStringList{QStringLiteral("Switch"), QStringLiteral("Remove account"),
                                     QStringLiteral("Remove account"), QStringLiteral("Personal API token"),
                                     QStringLiteral("Get your token…")}));
        form().setToken(QStringLiteral("pk_typed"));
        QVERIFY(tabRound().contains(QStringLiteral("Add Account")));
        QCOMPARE(accessibleName(items(QStringLiteral("removeButton")).at(0)), QStringLiteral("Remove account"));
    }

    void anAccountIsAddedByTypingItsTokenAndPressingReturn() {
        signIn(ada());
        showPane();
        QVERIFY(tabTo(item(QStringLiteral("tokenField"))));
        QSignalSpy finished(&form(), &OnboardingModel::finished);
        type(ben().token);
        QCOMPARE(form().token(), ben().token);
        key(Qt::Key_Return);
        QVERIFY(finished.wait(10'000));
        QCOMPARE(form().errorMessage(), QString());
        // The token went to the keyring; the field is empty again.
        QCOMPARE(form().token(), QString());
        QCOMPARE(m_accounts->count(), 2);
        QCOMPARE(app().settings().settings().activeAccountID, std::optional(ben().userID));
        QTRY_COMPARE(items(QStringLiteral("activeCapsule")).size(), 2);
        QTRY_VERIFY(items(QStringLiteral("activeCapsule")).at(1)->isVisible());
    }

    void pressingAddAccountTwiceQuicklyStartsOneSignIn() {
        signIn(ada());
        showPane();
        const qsizetype before = userRequests();
        QSignalSpy finished(&form(), &OnboardingModel::finished);
        form().setToken(ben().token);
        QQuickItem* button = item(QStringLiteral("connectButton"));
        QVERIFY(tabTo(button));
        key(Qt::Key_Space);
        QVERIFY(form().isBusy());
        key(Qt::Key_Space);
        form().connect();
        QVERIFY(finished.wait(10'000));
        QVERIFY(!finished.wait(300));
        QCOMPARE(finished.count(), 1);
        // The probe of the pasted token, then the validation.
        QCOMPARE(userRequests(), before + 2);
    }

    void aTokenWithATrailingNewlineIsAdded() {
        signIn(ada());
        showPane();
        QSignalSpy finished(&form(), &OnboardingModel::finished);
        form().setToken(ben().token + QStringLiteral("\n"));
        form().connect();
        QVERIFY(finished.wait(10'000));
        QCOMPARE(form().errorMessage(), QString());
        QCOMPARE(m_accounts->count(), 2);
    }

    void aRefusedTokenShowsWhyAndAddsNothing() {
        signIn(ada());
        showPane();
        QSignalSpy finished(&form(), &OnboardingModel::finished);
        form().setToken(QStringLiteral("pk_not_a_demo_token"));
        form().connect();
        QVERIFY(finished.wait(10'000));
        QVERIFY(!form().errorMessage().isEmpty());
        QTRY_COMPARE(QuickItems::plainText(item(QStringLiteral("errorMessage"))), form().errorMessage());
        QCOMPARE(m_accounts->count(), 1);
        QCOMPARE(app().authState().user()->id, ada().userID);
    }

    void switchingShowsItsProgressOnTheRowUntilItEnds() {
        signIn(ben());
        signIn(ada());
        showPane();
        QVERIFY(m_sandbox.addFault(SandboxFault::delay(QStringLiteral("/api/v2/user"), 300)));
        QVERIFY(tabTo(items(QStringLiteral("switchButton")).at(0)));
        key(Qt::Key_Space);
        QCOMPARE(m_accounts->switchingAccountID(), std::optional(ben().userID));
        QVERIFY(m_accounts->data(m_accounts->index(0), AccountsViewModel::IsSwitchingRole).toBool());
        QVERIFY(!items(QStringLiteral("switchButton")).at(0)->isEnabled());
        QTRY_COMPARE_WITH_TIMEOUT(m_accounts->switchingAccountID(), std::nullopt, 10'000);
        QCOMPARE(app().authState().user()->id, ben().userID);
        QTRY_VERIFY(items(QStringLiteral("activeCapsule")).at(0)->isVisible());
        QVERIFY(!items(QStringLiteral("activeCapsule")).at(1)->isVisible());
    }

    void removingAnAccountForgetsItAndItsToken() {
        signIn(ben());
        signIn(ada());
        showPane();
        QVERIFY(tabTo(items(QStringLiteral("removeButton")).at(0)));
        key(Qt::Key_Space);
        QTRY_COMPARE(m_accounts->count(), 1);
        QCOMPARE(m_fixture->memorySecrets().item(KeychainStore::appService,
                                                 QStringLiteral("norvane-token-%1").arg(ben().userID)),
                 std::nullopt);
        QCOMPARE(items(QStringLiteral("removeButton")).size(), 1);
        QCOMPARE(app().authState().user()->id, ada().userID);
    }

    void rowsComeAndGoOneByOne() {
        signIn(ada());
        showPane();
        QSignalSpy inserted(m_accounts.get(), &QAbstractItemModel::rowsInserted);
        QSignalSpy removed(m_accounts.get(), &QAbstractItemModel::rowsRemoved);
        QSignalSpy reset(m_accounts.get(), &QAbstractItemModel::modelReset);
        signIn(ben());
        QCOMPARE(inserted.count(), 1);
        QCOMPARE(inserted.at(0).at(1).toInt(), 1);
        runTask(app().removeAccount(ada().userID));
        QCOMPARE(removed.count(), 1);
        QCOMPARE(removed.at(0).at(1).toInt(), 0);
        QCOMPARE(reset.count(), 0);
        QCOMPARE(m_accounts->data(m_accounts->index(0), AccountsViewModel::AccountIDRole).toLongLong(), ben().userID);
    }

    void hostileNamesShowAsPlainTextOnAQuietAvatar() {
        QCOMPARE(runTask(app().signIn(SandboxDemo::hostileNamesToken)), std::nullopt);
        showPane();
        const QString name = SandboxDemo::hostileUserName(m_sandbox.webUrl(u""));
        QVERIFY(QuickItems::accessibleNames(m_view->contentItem()).contains(name));
        QQuickItem* initials = item(QStringLiteral("avatarInitials"));
        QCOMPARE(QuickItems::plainText(initials), QStringLiteral("MØ"));
        // The service gave no colour: the avatar takes a quiet one of the palette.
        const QPalette palette = m_view->contentItem()->property("palette").value<QPalette>();
        QCOMPARE(initials->parentItem()->property("color").value<QColor>(), palette.color(QPalette::Mid));
        QVERIFY(!m_view->grabWindow().isNull());
        QTest::qWait(300);
        QCOMPARE(SandboxDemo::hostilePictureRequests(m_sandbox.requests()), QStringList());
    }
};

NORVANEBAR_TEST_MAIN(AccountSettingsViewTest)
#include "AccountSettingsViewTest.moc"
