#include "core/storage/AttachmentStorageSettings.h"
#include "core/storage/CloudflareR2Provider.h"
#include "core/storage/StorageProviderError.h"
#include "support/MemorySecretStore.h"
#include "support/RecordingLinkActions.h"
#include "support/RunTask.h"
#include "support/StorageTesting.h"
#include "support/TestMain.h"

#include <QNetworkAccessManager>
#include <QTemporaryDir>
#include <QTest>

namespace {
const QString service = KeychainStore::appService;
const QString accessKeyAccount = QStringLiteral("cloudflare-r2-access-key");
const QString secretKeyAccount = QStringLiteral("cloudflare-r2-secret-key");

// A provider whose check passes, or fails with `failure`.
class CheckedProvider : public ExternalStorageProvider {
public:
    explicit CheckedProvider(std::optional<QString> failure)
        : m_failure(std::move(failure)) {}

    QString displayName() const override { return QStringLiteral("Cloudinary"); }
    void validateConfiguration() const override {
        if (m_failure) {
            throw StorageProviderError::missingConfiguration(*m_failure);
        }
    }
    QCoro::Task<QUrl> upload(QUrl, QString) const override { co_return QUrl(); }

private:
    std::optional<QString> m_failure;
};
} // namespace

// The Attachments tab's own state over a settings file of its own and a secret store in memory.
class AttachmentStorageSettingsTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;
    std::unique_ptr<SettingsStore> m_settings;
    std::unique_ptr<MemorySecretStore> m_secrets;
    std::unique_ptr<StorageCredentialStore> m_credentials;
    std::unique_ptr<StorageProviderRegistry> m_providers;
    QNetworkAccessManager m_network;
    std::unique_ptr<RecordingLinkActions> m_browser;
    std::unique_ptr<GoogleDriveAuthManager> m_googleAuth;
    std::unique_ptr<AttachmentStorageSettings> m_pane;

    // The pane over a Google sign-in whose browser only records where it was sent; `clientID` is
    // this build's OAuth client.
    void makePane(std::optional<QString> clientID = QStringLiteral("unit-test-client")) {
        m_pane.reset();
        m_googleAuth = std::make_unique<GoogleDriveAuthManager>(
            GoogleDriveAuthManager::Environment{.credentials = *m_credentials,
                                                .session = &m_network,
                                                .clientID = std::move(clientID),
                                                .browser = m_browser.get()});
        m_pane = std::make_unique<AttachmentStorageSettings>(*m_settings, *m_providers, *m_credentials, *m_googleAuth);
    }

    void useProvider(std::optional<QString> failure) {
        m_settings->set(&AppSettings::storageProvider, StorageProviderKind::cloudinary);
        m_providers->setFactory(StorageProviderKind::cloudinary,
                                [failure](const AppSettings&) { return std::make_shared<CheckedProvider>(failure); });
    }

    QString stored(const QString& account) const {
        return QString::fromUtf8(m_secrets->item(service, account).value_or(QByteArray("<none>")));
    }

private slots:
    void init() {
        m_settings = std::make_unique<SettingsStore>(m_folder.filePath(QStringLiteral("settings.json")));
        m_secrets = std::make_unique<MemorySecretStore>();
        m_credentials = std::make_unique<StorageCredentialStore>(m_secrets.get());
        m_providers = std::make_unique<StorageProviderRegistry>();
        m_browser = std::make_unique<RecordingLinkActions>();
        makePane();
    }

    void cleanup() {
        m_pane.reset();
        m_googleAuth.reset();
        m_browser.reset();
        m_providers.reset();
        m_credentials.reset();
        m_secrets.reset();
        m_settings.reset();
    }

    void withNorvaneChosenTheTestAsksForAnExternalProvider() {
        runTask(m_pane->testConnection());
        QCOMPARE(m_pane->testResult(), QStringLiteral("Select an external storage provider first."));
        QVERIFY(!m_pane->testSucceeded());
        QVERIFY(!m_pane->isTesting());
    }

    void aValidConfigurationIsNamedByItsProvider() {
        useProvider(std::nullopt);
        runTask(m_pane->testConnection());
        QCOMPARE(m_pane->testResult(), QStringLiteral("Cloudinary configuration looks valid."));
        QVERIFY(m_pane->testSucceeded());
    }

    void anIncompleteConfigurationShowsWhatTheProviderSays() {
        useProvider(QStringLiteral("Set the upload preset."));
        runTask(m_pane->testConnection());
        QCOMPARE(m_pane->testResult(), QStringLiteral("Set the upload preset."));
        QVERIFY(!m_pane->testSucceeded());
    }

    void theTestStoresTheTrimmedKeyPairFirst() {
        useProvider(std::nullopt);
        m_pane->setR2AccessKeyID(QStringLiteral("  AKID\n"));
        m_pane->setR2SecretAccessKey(QStringLiteral("\tsecret "));
        runTask(m_pane->testConnection());
        QCOMPARE(stored(accessKeyAccount), QStringLiteral("AKID"));
        QCOMPARE(stored(secretKeyAccount), QStringLiteral("secret"));
    }

    void aBlankSecretLeavesTheStoredPairAsItIs() {
        m_secrets->setItem(service, accessKeyAccount, "stored-id");
        m_secrets->setItem(service, secretKeyAccount, "stored-secret");
        useProvider(std::nullopt);
        m_pane->setR2AccessKeyID(QStringLiteral("typed-id"));
        m_pane->setR2SecretAccessKey(QStringLiteral("   "));
        runTask(m_pane->testConnection());
        QCOMPARE(stored(accessKeyAccount), QStringLiteral("stored-id"));
        QCOMPARE(stored(secretKeyAccount), QStringLiteral("stored-secret"));
        QVERIFY(m_pane->testSucceeded());
    }

    void aBlankR2SecretTestsTheKeyPairStoredBefore() {
        m_settings->setSettings(StorageTesting::completeR2Settings());
        m_providers->setFactory(StorageProviderKind::cloudflareR2, [this](const AppSettings& current) {
            return CloudflareR2Provider::make(current, *m_credentials, &m_network);
        });
        m_pane->setR2AccessKeyID(QStringLiteral("typed-id"));
        m_pane->setR2SecretAccessKey(QStringLiteral(" \n"));

        runTask(m_pane->testConnection());
        QCOMPARE(m_pane->testResult(), QStringLiteral("R2 access key ID is required."));
        QVERIFY(!m_pane->testSucceeded());

        m_secrets->setItem(service, accessKeyAccount, "stored-id");
        m_secrets->setItem(service, secretKeyAccount, "stored-secret");
        runTask(m_pane->testConnection());
        QCOMPARE(m_pane->testResult(), QStringLiteral("Cloudflare R2 configuration looks valid."));
        QVERIFY(m_pane->testSucceeded());
        QCOMPARE(stored(accessKeyAccount), QStringLiteral("stored-id"));
        QCOMPARE(stored(secretKeyAccount), QStringLiteral("stored-secret"));
    }

    void aKeyPairThatCannotBeStoredBecomesTheResult() {
        m_secrets->failWrites(accessKeyAccount, -25);
        m_pane->setR2AccessKeyID(QStringLiteral("AKID"));
        m_pane->setR2SecretAccessKey(QStringLiteral("secret"));
        runTask(m_pane->saveR2Credentials());
        QVERIFY(!m_pane->testSucceeded());
        QVERIFY2(m_pane->testResult().contains(QStringLiteral("-25")), qPrintable(m_pane->testResult()));
    }

    void theKeyPairIsReadBackIntoItsFields() {
        m_secrets->setItem(service, accessKeyAccount, "stored-id");
        m_secrets->setItem(service, secretKeyAccount, "stored-secret");
        runTask(m_pane->loadR2Credentials());
        QCOMPARE(m_pane->r2AccessKeyID(), QStringLiteral("stored-id"));
        QCOMPARE(m_pane->r2SecretAccessKey(), QStringLiteral("stored-secret"));
    }

    void whatIsTypedWhileTheStoreAnswersStays() {
        m_secrets->setItem(service, accessKeyAccount, "stored-id");
        m_secrets->setItem(service, secretKeyAccount, "stored-secret");
        QCoro::Task<> loading = m_pane->loadR2Credentials();
        m_pane->setR2AccessKeyID(QStringLiteral("typed-id"));
        runTask(std::move(loading));
        QCOMPARE(m_pane->r2AccessKeyID(), QStringLiteral("typed-id"));
        QCOMPARE(m_pane->r2SecretAccessKey(), QString());
    }

    void googleIsConnectedWithARefreshTokenOrElseAnAccessToken() {
        runTask(m_pane->refreshGoogleConnectionState());
        QVERIFY(!m_pane->googleConnected());
        m_secrets->setItem(service, QStringLiteral("google-drive-access-token"), "access");
        runTask(m_pane->refreshGoogleConnectionState());
        QVERIFY(m_pane->googleConnected());
        runTask(m_secrets->remove(service, QStringLiteral("google-drive-access-token")));
        m_secrets->setItem(service, QStringLiteral("google-drive-refresh-token"), "refresh");
        runTask(m_pane->refreshGoogleConnectionState());
        QVERIFY(m_pane->googleConnected());
    }

    void aSignInWaitsForTheBrowserUntilItIsCancelled() {
        QCoro::Task<> connecting = m_pane->connectGoogle();
        QVERIFY(m_pane->isConnectingGoogle());
        QCOMPARE(m_browser->opened().size(), 1);
        QCOMPARE(m_browser->opened().first().path(), QStringLiteral("/o/oauth2/v2/auth"));
        m_pane->cancelConnectingGoogle();
        runTask(std::move(connecting));
        QVERIFY(!m_pane->isConnectingGoogle());
        QCOMPARE(m_pane->testResult(), QStringLiteral("Sign-in was cancelled."));
        QVERIFY(!m_pane->testSucceeded());
        QVERIFY(!m_pane->googleConnected());
    }

    void aSecondPressWhileTheBrowserIsOutOpensNoSecondSignIn() {
        QCoro::Task<> connecting = m_pane->connectGoogle();
        runTask(m_pane->connectGoogle());
        QCOMPARE(m_browser->opened().size(), 1);
        QVERIFY(m_pane->isConnectingGoogle());
        m_pane->cancelConnectingGoogle();
        runTask(std::move(connecting));
    }

    void aBuildWithoutAnOAuthClientSaysSo() {
        makePane(std::nullopt);
        runTask(m_pane->connectGoogle());
        QCOMPARE(m_pane->testResult(), QStringLiteral("Google OAuth client ID is not configured for this build."));
        QVERIFY(!m_pane->testSucceeded());
        QVERIFY(m_browser->opened().isEmpty());
    }

    void disconnectingForgetsTheGoogleTokens() {
        m_secrets->setItem(service, QStringLiteral("google-drive-access-token"), "access");
        m_secrets->setItem(service, QStringLiteral("google-drive-refresh-token"), "refresh");
        runTask(m_pane->refreshGoogleConnectionState());
        QVERIFY(m_pane->googleConnected());
        runTask(m_pane->disconnectGoogle());
        QVERIFY(!m_pane->googleConnected());
        QCOMPARE(stored(QStringLiteral("google-drive-refresh-token")), QStringLiteral("<none>"));
        QCOMPARE(stored(QStringLiteral("google-drive-access-token")), QStringLiteral("<none>"));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(AttachmentStorageSettingsTest)
#include "AttachmentStorageSettingsTest.moc"
