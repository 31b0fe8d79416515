// The Secret Service of the shared desktop session (an unlocked gnome-keyring), with items written by
// the store and by secret-tool as earlier versions of the program wrote them.
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

// What secret-tool, another client of the Secret Service, finds under the words.
QByteArray lookedUpBySecretTool(const QString& account) {
    QProcess lookup;
    lookup.start(QStringLiteral("secret-tool"),
                 {QStringLiteral("lookup"), QStringLiteral("server"), service, QStringLiteral("user"), account});
    lookup.waitForFinished(10'000);
    return lookup.readAllStandardOutput();
}

// Stores an item with secret-tool under the words, with the type and schema earlier versions of the
// program gave their items.
bool storedBySecretTool(const QString& account, const QString& type, const QByteArray& secret) {
    QProcess store;
    store.start(QStringLiteral("secret-tool"),
                {QStringLiteral("store"), QStringLiteral("--label=x"), QStringLiteral("server"), service,
                 QStringLiteral("user"), account, QStringLiteral("type"), type, QStringLiteral("xdg:schema"),
                 QStringLiteral("org.qt.keychain")});
    store.write(secret);
    store.closeWriteChannel();
    return store.waitForFinished(10'000) && store.exitStatus() == QProcess::NormalExit && store.exitCode() == 0;
}

// What `secret-tool search --all` says of the items under the words: their number, and the schema and
// attributes ("name = value") of them all. It prints the items to its output and their attributes to
// its error output.
struct SecretToolSearch {
    int items = 0;
    QStringList attributes;
};
SecretToolSearch searchedBySecretTool(const QString& account) {
    QProcess search;
    search.start(QStringLiteral("secret-tool"), {QStringLiteral("search"), QStringLiteral("--all"),
                                                 QStringLiteral("server"), service, QStringLiteral("user"), account});
    search.waitForFinished(10'000);
    SecretToolSearch found;
    for (const QString& line : QString::fromUtf8(search.readAllStandardOutput()).split(QLatin1Char('\n'))) {
        if (line.startsWith(QLatin1Char('['))) {
            ++found.items;
        } else if (line.startsWith(QStringLiteral("schema = "))) {
            found.attributes.append(line);
        }
    }
    for (const QString& line : QString::fromUtf8(search.readAllStandardError()).split(QLatin1Char('\n'))) {
        if (line.startsWith(QStringLiteral("attribute."))) {
            found.attributes.append(line.mid(qsizetype(sizeof("attribute.") - 1)));
        }
    }
    found.attributes.sort();
    return found;
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

    void anItemWrittenCarriesTheWordsTypeAndSchemaOfEarlierVersions() {
        const KeychainStore token = item(QStringLiteral("norvane-token-7006"));
        runTask(token.write(QStringLiteral("pk_7006")));
        const SecretToolSearch found = searchedBySecretTool(QStringLiteral("norvane-token-7006"));
        QCOMPARE(found.items, 1);
        QCOMPARE(found.attributes,
                 (QStringList{QStringLiteral("schema = org.qt.keychain"), QStringLiteral("server = com.norvanebar.app"),
                              QStringLiteral("type = plaintext"), QStringLiteral("user = norvane-token-7006")}));
    }

    void aPlaintextItemStoredBySecretToolReadsBack() {
        m_accounts.append(QStringLiteral("norvane-token-7007"));
        QVERIFY(storedBySecretTool(QStringLiteral("norvane-token-7007"), QStringLiteral("plaintext"),
                                   QStringLiteral("pk_7007_ÄbC").toUtf8()));
        QCOMPARE(runTask(m_secrets.read(service, QStringLiteral("norvane-token-7007"))),
                 QStringLiteral("pk_7007_ÄbC").toUtf8());
    }

    void aBase64ItemStoredBySecretToolIsDecoded() {
        const QByteArray bytes("\x00\xff\xfe binary\x00", 11);
        m_accounts.append(QStringLiteral("norvane-token-7008"));
        QVERIFY(storedBySecretTool(QStringLiteral("norvane-token-7008"), QStringLiteral("base64"), bytes.toBase64()));
        QCOMPARE(runTask(m_secrets.read(service, QStringLiteral("norvane-token-7008"))), bytes);
    }

    void aWriteOverTwoItemsUnderTheSameWordsLeavesOneValue() {
        const QString account = QStringLiteral("norvane-token-7009");
        m_accounts.append(account);
        QVERIFY(storedBySecretTool(account, QStringLiteral("plaintext"), "pk_plain"));
        QVERIFY(storedBySecretTool(account, QStringLiteral("base64"), QByteArray("pk_encoded").toBase64()));
        QCOMPARE(searchedBySecretTool(account).items, 2);
        QCOMPARE(runTask(m_secrets.write(service, account, "pk_new")), SecretServiceStore::successStatus);
        QCOMPARE(searchedBySecretTool(account).items, 1);
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(runTask(m_secrets.read(service, account)), QByteArray("pk_new"));
        }
        QCOMPARE(lookedUpBySecretTool(account), QByteArray("pk_new"));
    }

    void aRemoveDeletesEveryItemUnderTheWords() {
        const QString account = QStringLiteral("norvane-token-7010");
        m_accounts.append(account);
        QVERIFY(storedBySecretTool(account, QStringLiteral("plaintext"), "pk_plain"));
        QVERIFY(storedBySecretTool(account, QStringLiteral("base64"), QByteArray("pk_encoded").toBase64()));
        runTask(m_secrets.remove(service, account));
        QCOMPARE(searchedBySecretTool(account).items, 0);
        QCOMPARE(runTask(m_secrets.read(service, account)), std::nullopt);
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
