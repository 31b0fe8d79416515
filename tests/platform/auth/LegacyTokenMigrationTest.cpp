#include "platform/linux/SecretServiceStore.h"
#include "support/AppStateFixture.h"
#include "support/TestMain.h"

#include <QProcess>
#include <QTest>

// A token from the time of a single account moves to its account's item at the first successful
// validation, in the session's real Secret Service.
class LegacyTokenMigrationTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    SecretServiceStore m_secrets;

    // What `secret-tool` finds for the item, as another program would.
    static QString lookUp(const QString& account) {
        QProcess tool;
        tool.start(QStringLiteral("secret-tool"), {QStringLiteral("lookup"), QStringLiteral("server"),
                                                   KeychainStore::appService, QStringLiteral("user"), account});
        tool.waitForFinished(5000);
        return QString::fromUtf8(tool.readAllStandardOutput());
    }

private slots:
    void initTestCase() { QVERIFY2(m_sandbox.start(), qPrintable(m_sandbox.errorString())); }

    void theLegacyTokenMovesToItsAccount() {
        const SandboxProcess::Token user = m_sandbox.tokens().constFirst();
        const QString legacyAccount = QStringLiteral("norvane-personal-token");
        const QString accountItem = QStringLiteral("norvane-token-") + QString::number(user.userID);
        QCOMPARE(runTask(m_secrets.write(KeychainStore::appService, legacyAccount, user.token.toUtf8())), 0);
        runTask(m_secrets.remove(KeychainStore::appService, accountItem));

        AppStateFixture fixture(&m_sandbox, &m_secrets);
        const AppState& app = fixture.startSignedIn();
        QVERIFY(app.authState().is<AuthState::SignedIn>());
        QCOMPARE(lookUp(accountItem), user.token);
        QCOMPARE(lookUp(legacyAccount), QString());

        // The next launch finds the token under the account.
        const AppState& next = fixture.startSignedIn();
        QCOMPARE(next.authState().user()->id, user.userID);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(LegacyTokenMigrationTest)
#include "LegacyTokenMigrationTest.moc"
