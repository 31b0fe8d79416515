#include "core/auth/StorageCredentialStore.h"
#include "core/auth/StorageCredentialError.h"
#include "support/TestMain.h"

#include "support/MemorySecretStore.h"
#include "support/RunTask.h"

#include <QTest>
#include <memory>

namespace {
const QString service = QStringLiteral("com.norvanebar.app");
const QString accessKey = QStringLiteral("cloudflare-r2-access-key");
const QString secretKey = QStringLiteral("cloudflare-r2-secret-key");
const QString googleAccess = QStringLiteral("google-drive-access-token");
const QString googleRefresh = QStringLiteral("google-drive-refresh-token");
const QString googleExpiry = QStringLiteral("google-drive-access-token-expiry");

const QDateTime expiry = QDateTime::fromMSecsSinceEpoch(1'700'000'000'250, Qt::UTC);
} // namespace

class StorageCredentialStoreTest : public QObject {
    Q_OBJECT

    std::unique_ptr<MemorySecretStore> m_secrets;
    std::unique_ptr<StorageCredentialStore> m_store;

    std::optional<QByteArray> item(const QString& account) const { return m_secrets->item(service, account); }

private slots:
    void init() {
        m_secrets = std::make_unique<MemorySecretStore>();
        m_store = std::make_unique<StorageCredentialStore>(m_secrets.get());
    }

    void theItemsAreNamedByTheServiceAndAccountWords() {
        QCOMPARE(m_store->accessKeyStore, (KeychainStore{service, accessKey, m_secrets.get()}));
        QCOMPARE(m_store->secretKeyStore, (KeychainStore{service, secretKey, m_secrets.get()}));
        QCOMPARE(m_store->googleAccessTokenStore, (KeychainStore{service, googleAccess, m_secrets.get()}));
        QCOMPARE(m_store->googleRefreshTokenStore, (KeychainStore{service, googleRefresh, m_secrets.get()}));
        QCOMPARE(m_store->googleAccessTokenExpiryStore, (KeychainStore{service, googleExpiry, m_secrets.get()}));
    }

    void setR2CredentialsStoresBothTrimmed() {
        runTask(m_store->setR2Credentials(QStringLiteral(" AKIA1\n"), QStringLiteral("\tsecret/2 ")));
        QCOMPARE(item(accessKey), QByteArray("AKIA1"));
        QCOMPARE(item(secretKey), QByteArray("secret/2"));
    }

    void setR2CredentialsWithABlankSecretChangesNothingAndReportsNothing() {
        m_secrets->setItem(service, accessKey, "AKIA-old");
        m_secrets->setItem(service, secretKey, "secret-old");
        runTask(m_store->setR2Credentials(QStringLiteral("AKIA-new"), QStringLiteral(" \n ")));
        runTask(m_store->setR2Credentials(QString(), QStringLiteral("secret-new")));
        QCOMPARE(item(accessKey), QByteArray("AKIA-old"));
        QCOMPARE(item(secretKey), QByteArray("secret-old"));
        QVERIFY(m_secrets->log().isEmpty());
    }

    void aFailedSecondR2WriteLeavesTheFirstDone() {
        m_secrets->failWrites(secretKey, 5);
        try {
            runTask(m_store->setR2Credentials(QStringLiteral("AKIA1"), QStringLiteral("secret")));
            QFAIL("the write did not fail");
        } catch (const StorageCredentialError& error) {
            QCOMPARE(error.errorDescription(),
                     QStringLiteral("Couldn't save your API token to the system keyring (error 5)."));
        }
        QCOMPARE(item(accessKey), QByteArray("AKIA1"));
        QCOMPARE(item(secretKey), std::nullopt);
    }

    void setGoogleTokensStoresAllThree() {
        runTask(m_store->setGoogleTokens(QStringLiteral("ya29.a"), QStringLiteral("1//r"), expiry));
        QCOMPARE(item(googleAccess), QByteArray("ya29.a"));
        QCOMPARE(item(googleRefresh), QByteArray("1//r"));
        QCOMPARE(item(googleExpiry), QByteArray("1700000000.25"));
    }

    void setGoogleTokensWithNoRefreshTokenKeepsTheOldOneAndUpdatesTheExpiry() {
        m_secrets->setItem(service, googleRefresh, "1//old");
        m_secrets->setItem(service, googleExpiry, "1600000000");
        runTask(m_store->setGoogleTokens(QStringLiteral("ya29.b"), std::nullopt, expiry));
        QCOMPARE(item(googleRefresh), QByteArray("1//old"));
        QCOMPARE(item(googleExpiry), QByteArray("1700000000.25"));
        runTask(m_store->setGoogleTokens(QStringLiteral("ya29.c"), QString(), expiry.addSecs(60)));
        QCOMPARE(item(googleRefresh), QByteArray("1//old"));
        QCOMPARE(item(googleAccess), QByteArray("ya29.c"));
        QCOMPARE(runTask(m_store->readGoogleAccessTokenExpiry()), expiry.addSecs(60));
    }

    void theExpiryIsTheShortestDecimalTextOfItsSeconds() {
        runTask(m_store->setGoogleTokens(QStringLiteral("a"), std::nullopt,
                                         QDateTime::fromSecsSinceEpoch(1'700'000'000, Qt::UTC)));
        QCOMPARE(item(googleExpiry), QByteArray("1700000000"));
        runTask(m_store->setGoogleTokens(QStringLiteral("a"), std::nullopt,
                                         QDateTime::fromMSecsSinceEpoch(1'700'000'000'001, Qt::UTC)));
        QCOMPARE(item(googleExpiry), QByteArray("1700000000.001"));
    }

    void aFailedGoogleWriteStopsThere() {
        m_secrets->failWrites(googleAccess, 9);
        QVERIFY_THROWS_EXCEPTION(StorageCredentialError,
                                 runTask(m_store->setGoogleTokens(QStringLiteral("a"), QStringLiteral("r"), expiry)));
        QCOMPARE(item(googleRefresh), std::nullopt);
        QCOMPARE(item(googleExpiry), std::nullopt);
    }

    void theExpiryReadsBackAsTheSameInstant() {
        runTask(m_store->setGoogleTokens(QStringLiteral("a"), std::nullopt, expiry));
        QCOMPARE(runTask(m_store->readGoogleAccessTokenExpiry()), expiry);
    }

    void aMissingExpiryItemReadsAsAbsent() { QCOMPARE(runTask(m_store->readGoogleAccessTokenExpiry()), std::nullopt); }

    void anExpiryItemWithDamagedTextReadsAsAbsent() {
        for (const QByteArray& damaged :
             {QByteArray("17000x"), QByteArray(" 1700000000"), QByteArray("1700000000 "), QByteArray(""),
              QByteArray("tomorrow"), QByteArray("nan"), QByteArray("1e300"), QByteArray("\xff")}) {
            m_secrets->setItem(service, googleExpiry, damaged);
            QVERIFY2(!runTask(m_store->readGoogleAccessTokenExpiry()), damaged.constData());
        }
    }

    void anExpiryInAnyFormStrtodReadsIsTaken() {
        m_secrets->setItem(service, googleExpiry, "1.7e9");
        QCOMPARE(runTask(m_store->readGoogleAccessTokenExpiry()),
                 QDateTime::fromSecsSinceEpoch(1'700'000'000, Qt::UTC));
    }

    void clearGoogleTokensRemovesAllThreeAndLeavesR2Alone() {
        for (const QString& account : {googleAccess, googleRefresh, googleExpiry, accessKey}) {
            m_secrets->setItem(service, account, "x");
        }
        runTask(m_store->clearGoogleTokens());
        QCOMPARE(item(googleAccess), std::nullopt);
        QCOMPARE(item(googleRefresh), std::nullopt);
        QCOMPARE(item(googleExpiry), std::nullopt);
        QCOMPARE(item(accessKey), QByteArray("x"));
        runTask(m_store->clearGoogleTokens()); // nothing left to remove: no failure
    }

    void anOperationOutlivesTheStore() {
        QCoro::Task<> writing = m_store->setR2Credentials(QStringLiteral("AKIA1"), QStringLiteral("secret"));
        m_store.reset();
        runTask(std::move(writing));
        QCOMPARE(item(secretKey), QByteArray("secret"));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(StorageCredentialStoreTest)
#include "StorageCredentialStoreTest.moc"
