#include "desktop/auth/AccountsViewModel.h"
#include "platform/linux/SecretServiceStore.h"
#include "support/AppStateFixture.h"
#include "support/SandboxDemo.h"
#include "support/TestMain.h"

#include <QFile>
#include <QJsonDocument>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

// Two accounts added through the Account pane's model, each token in the session's real Secret
// Service, each account with its own list, against norvane-sandbox: Ada with the sandbox's first
// token, Mia with the hostile-names token.
class AccountsKeyringTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    SecretServiceStore m_secrets;
    std::unique_ptr<AppStateFixture> m_fixture;
    std::unique_ptr<AccountsViewModel> m_accounts;

    static QString tokenItem(qint64 userID) { return QStringLiteral("norvane-token-") + QString::number(userID); }

    // The secret of the item as `secret-tool search` finds it, another client of the Secret
    // Service; empty when there is no such item.
    static QString searchedSecret(const QString& account) {
        QProcess tool;
        tool.start(QStringLiteral("secret-tool"),
                   {QStringLiteral("search"), QStringLiteral("--all"), QStringLiteral("server"),
                    KeychainStore::appService, QStringLiteral("user"), account});
        tool.waitForFinished(10'000);
        const QStringList lines = QString::fromUtf8(tool.readAllStandardOutput()).split(u'\n');
        for (const QString& line : lines) {
            if (line.startsWith(QStringLiteral("secret = "))) {
                return line.mid(9);
            }
        }
        return {};
    }

    // The accountLocations entry of the settings file for the user, as its list id; empty for none.
    QString storedListID(qint64 userID) const {
        QFile file(m_fixture->settingsPath());
        if (!file.open(QIODevice::ReadOnly)) {
            return QStringLiteral("<no settings file>");
        }
        const QJsonObject locations =
            QJsonDocument::fromJson(file.readAll()).object().value(QStringLiteral("accountLocations")).toObject();
        return locations.value(QString::number(userID))[QStringLiteral("listID")].toString();
    }

    void connect(const QString& token) {
        OnboardingModel& form = *m_accounts->tokenForm();
        QSignalSpy finished(&form, &OnboardingModel::finished);
        form.setToken(token);
        form.connect();
        QVERIFY(finished.wait(15'000));
        QCOMPARE(form.errorMessage(), QString());
        QCOMPARE(form.token(), QString());
    }

    void choose(const QString& workspaceID, const QString& listID) {
        AppState& app = m_fixture->app();
        runTask(app.hierarchy().loadEntries(workspaceID, false));
        const std::optional<ListEntry> entry = app.hierarchy().entry(listID);
        QVERIFY2(entry, qPrintable(listID));
        app.selectLocation(*entry);
    }

    void switchTo(qint64 userID) {
        m_accounts->switchTo(userID);
        QTRY_COMPARE_WITH_TIMEOUT(m_accounts->switchingAccountID(), std::nullopt, 15'000);
        QVERIFY(m_fixture->app().authState().user());
        QCOMPARE(m_fixture->app().authState().user()->id, userID);
    }

    void waitForList(const QString& listID) {
        QTRY_VERIFY_WITH_TIMEOUT(m_fixture->app().currentContext(), 10'000);
        QCOMPARE(m_fixture->app().currentContext()->entry().list.id, listID);
    }

    void removeItems() {
        for (const qint64 userID : {SandboxDemo::firstUserID, SandboxDemo::hostileNamesUserID}) {
            runTask(m_secrets.remove(KeychainStore::appService, tokenItem(userID)));
        }
    }

private slots:
    void initTestCase() {
        QVERIFY2(m_sandbox.start(), qPrintable(m_sandbox.errorString()));
        QCOMPARE(m_sandbox.tokens().constFirst().userID, SandboxDemo::firstUserID);
        removeItems();
        m_fixture = std::make_unique<AppStateFixture>(&m_sandbox, &m_secrets);
        AppState& app = m_fixture->start();
        m_accounts = std::make_unique<AccountsViewModel>(app.auth(), app.settings(), app.serviceAddresses());
    }

    void cleanupTestCase() {
        m_accounts.reset();
        m_fixture.reset();
        removeItems();
    }

    // The steps below build on each other, in this order.

    void twoAccountsAddedThroughTheFormLandInTheKeyring() {
        connect(m_sandbox.token());
        choose(SandboxDemo::northwindID, SandboxDemo::inboxListID);
        connect(SandboxDemo::hostileNamesToken);
        choose(SandboxDemo::hostileNamesID, SandboxDemo::markupListID);
        QCOMPARE(m_accounts->count(), 2);
        QCOMPARE(m_fixture->app().authState().user()->id, SandboxDemo::hostileNamesUserID);
        QCOMPARE(searchedSecret(tokenItem(SandboxDemo::firstUserID)), m_sandbox.token());
        QCOMPARE(searchedSecret(tokenItem(SandboxDemo::hostileNamesUserID)), SandboxDemo::hostileNamesToken);
    }

    void switchingBringsBackEachAccountsList() {
        switchTo(SandboxDemo::firstUserID);
        waitForList(SandboxDemo::inboxListID);
        switchTo(SandboxDemo::hostileNamesUserID);
        waitForList(SandboxDemo::markupListID);
        switchTo(SandboxDemo::firstUserID);
        waitForList(SandboxDemo::inboxListID);
        QCOMPARE(storedListID(SandboxDemo::hostileNamesUserID), SandboxDemo::markupListID);
    }

    void removingAnAccountDeletesItsKeyringItemAndItsMemory() {
        m_accounts->remove(SandboxDemo::hostileNamesUserID);
        QTRY_COMPARE_WITH_TIMEOUT(m_accounts->count(), 1, 10'000);
        QTRY_COMPARE_WITH_TIMEOUT(searchedSecret(tokenItem(SandboxDemo::hostileNamesUserID)), QString(), 10'000);
        QCOMPARE(storedListID(SandboxDemo::hostileNamesUserID), QString());
        // Ada goes on undisturbed, her token in place.
        QCOMPARE(m_fixture->app().authState().user()->id, SandboxDemo::firstUserID);
        QCOMPARE(searchedSecret(tokenItem(SandboxDemo::firstUserID)), m_sandbox.token());
        waitForList(SandboxDemo::inboxListID);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(AccountsKeyringTest)
#include "AccountsKeyringTest.moc"
