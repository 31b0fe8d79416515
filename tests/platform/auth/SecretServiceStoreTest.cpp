// The Secret Service of the shared desktop session (an unlocked gnome-keyring) through qtkeychain.
#include "platform/linux/SecretServiceStore.h"
#include "core/auth/KeychainStore.h"
#include "core/auth/PersonalTokenProvider.h"
#include "core/auth/StorageCredentialStore.h"
#include "support/TestMain.h"

#include "support/RunTask.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QTest>

namespace {
const QString service = QStringLiteral("com.norvanebar.app");

// What secret-tool, a client of the Secret Service other than qtkeychain, finds under the words.
QByteArray lookedUpBySecretTool(const QString& account) {
    QProcess lookup;
    lookup.start(QStringLiteral("secret-tool"),
                 {QStringLiteral("lookup"), QStringLiteral("server"), service, QStringLiteral("user"), account});
    lookup.waitForFinished(10'000);
    return lookup.readAllStandardOutput();
}
} // namespace

class SecretServiceStoreTest : public QObject {
    Q_OBJECT

    SecretServiceStore m_secrets;
    QStringList m_accounts; // every account a test wrote, removed after it

    KeychainStore item(const QString& account) {
        m_accounts.append(account);
        return {service, account, &m_secrets};
    }

private slots:
    void cleanup() {
        for (const QString& account : std::as_const(m_accounts)) {
            runTask(m_secrets.remove(service, account));
        }
        m_accounts.clear();
    }

    void aWrittenItemReadsBackAndIsGoneAfterRemove() {
        const KeychainStore token = item(QStringLiteral("norvane-token-7001"));
        QElapsedTimer elapsed;
        elapsed.start();
        runTask(token.write(QStringLiteral("pk_7001_secret")));
        QCOMPARE(runTask(token.read()), QStringLiteral("pk_7001_secret"));
        runTask(token.remove());
        QCOMPARE(runTask(token.read()), std::nullopt);
        QVERIFY2(elapsed.elapsed() < 3000, "four operations take milliseconds each");
    }

    void anEmptyStringRoundTripsAsEmptyNotAbsent() {
        const KeychainStore token = item(QStringLiteral("norvane-token-7002"));
        runTask(token.write(QString()));
        const std::optional<QString> read = runTask(token.read());
        QVERIFY(read.has_value());
        QCOMPARE(*read, QString());
    }

    void aWriteReplacesTheOldValue() {
        const KeychainStore token = item(QStringLiteral("norvane-token-7003"));
        runTask(token.write(QStringLiteral("pk_old")));
        runTask(token.write(QStringLiteral("pk_new")));
        QCOMPARE(runTask(token.read()), QStringLiteral("pk_new"));
    }

    void anItemIsReadableWithSecretToolUnderTheServiceAndAccountWords() {
        const KeychainStore token = item(QStringLiteral("norvane-token-42"));
        runTask(token.write(QStringLiteral("pk_42_ÄbC")));
        QCOMPARE(lookedUpBySecretTool(QStringLiteral("norvane-token-42")), QStringLiteral("pk_42_ÄbC").toUtf8());
    }

    void missingItemsReadAsAbsentAndRemovingThemIsNoFailure() {
        const KeychainStore missing = item(QStringLiteral("norvane-token-7004"));
        QCOMPARE(runTask(missing.read()), std::nullopt);
        runTask(missing.remove());
        QCOMPARE(runTask(m_secrets.read(service, QStringLiteral("norvane-token-7004"))), std::nullopt);
    }

    void bytesThatAreNotTextRoundTrip() {
        const QByteArray bytes("\x00\xff\xfe binary\x00", 11);
        m_accounts.append(QStringLiteral("binary-item"));
        QCOMPARE(runTask(m_secrets.write(service, QStringLiteral("binary-item"), bytes)), 0);
        QCOMPARE(runTask(m_secrets.read(service, QStringLiteral("binary-item"))), bytes);
    }

    void theLegacyTokenMovesToItsAccountItemOnCommit() {
        PersonalTokenProvider provider(&m_secrets);
        m_accounts.append({provider.legacyKeychain().account, provider.keychain(7005).account});
        runTask(provider.legacyKeychain().write(QStringLiteral("pk_legacy")));
        runTask(provider.activate(7005));
        QCOMPARE(provider.cached(), QStringLiteral("pk_legacy"));
        runTask(provider.commitActiveToken(7005));
        QCOMPARE(runTask(provider.keychain(7005).read()), QStringLiteral("pk_legacy"));
        QCOMPARE(runTask(provider.legacyKeychain().read()), std::nullopt);
        QCOMPARE(lookedUpBySecretTool(QStringLiteral("norvane-token-7005")), QByteArray("pk_legacy"));
    }

    void theGoogleTokenExpiryRoundTrips() {
        StorageCredentialStore credentials(&m_secrets);
        m_accounts.append({credentials.googleAccessTokenStore.account, credentials.googleRefreshTokenStore.account,
                           credentials.googleAccessTokenExpiryStore.account});
        const QDateTime expiry = QDateTime::fromMSecsSinceEpoch(1'800'000'000'500, Qt::UTC);
        runTask(credentials.setGoogleTokens(QStringLiteral("ya29.x"), QStringLiteral("1//r"), expiry));
        QCOMPARE(runTask(credentials.readGoogleAccessTokenExpiry()), expiry);
        QCOMPARE(lookedUpBySecretTool(QStringLiteral("google-drive-access-token-expiry")), QByteArray("1800000000.5"));
        runTask(credentials.clearGoogleTokens());
        QCOMPARE(runTask(credentials.googleRefreshTokenStore.read()), std::nullopt);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(SecretServiceStoreTest)
#include "SecretServiceStoreTest.moc"
