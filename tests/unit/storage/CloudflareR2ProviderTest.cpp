#include "core/storage/CloudflareR2Provider.h"
#include "core/storage/StorageProviderError.h"
#include "support/MemorySecretStore.h"
#include "support/RunTask.h"
#include "support/StorageTesting.h"
#include "support/TestMain.h"

#include <QNetworkAccessManager>
#include <QTest>

using StorageTesting::completeR2Settings;

namespace {
// The description of the missing configuration that validation ends with, or empty when it passes.
QString validationMessage(const CloudflareR2Provider& provider) {
    try {
        provider.validateConfiguration();
    } catch (const StorageProviderError& error) {
        if (error.is<StorageProviderError::MissingConfiguration>()) {
            return error.errorDescription();
        }
        return QStringLiteral("another failure: ") + error.errorDescription();
    }
    return {};
}
} // namespace

class CloudflareR2ProviderTest : public QObject {
    Q_OBJECT

private slots:
    void goesByItsName() {
        QCOMPARE(CloudflareR2Provider(completeR2Settings(), QStringLiteral("k"), QStringLiteral("s"), &m_session)
                     .displayName(),
                 QStringLiteral("Cloudflare R2"));
    }

    void aCompleteConfigurationIsValid() {
        const CloudflareR2Provider provider(completeR2Settings(), QStringLiteral("k"), QStringLiteral("s"), &m_session);
        QCOMPARE(validationMessage(provider), QString());
    }

    void validationNamesTheFirstMissingValueInOrder() {
        AppSettings settings = completeR2Settings();
        const auto messageWith = [this](const AppSettings& values, const QString& keyID, const QString& secret) {
            return validationMessage(CloudflareR2Provider(values, keyID, secret, &m_session));
        };
        QCOMPARE(messageWith(AppSettings(), QString(), QString()),
                 QStringLiteral("Cloudflare account ID is required."));
        settings.cloudflareR2Bucket.clear();
        settings.cloudflareR2PublicURLBase.clear();
        QCOMPARE(messageWith(settings, QString(), QString()), QStringLiteral("R2 bucket name is required."));
        settings.cloudflareR2Bucket = QStringLiteral("team-files");
        QCOMPARE(messageWith(settings, QString(), QString()), QStringLiteral("Public URL base is required."));
        settings.cloudflareR2PublicURLBase = QStringLiteral("https://files example.com");
        QCOMPARE(messageWith(settings, QString(), QString()), QStringLiteral("Public URL base must be a valid URL."));
        settings.cloudflareR2PublicURLBase = QStringLiteral("https://files.example.com");
        QCOMPARE(messageWith(settings, QString(), QStringLiteral("s")),
                 QStringLiteral("R2 access key ID is required."));
        QCOMPARE(messageWith(settings, QStringLiteral("k"), QString()),
                 QStringLiteral("R2 secret access key is required."));
    }

    void everyValueIsTrimmed() {
        AppSettings settings = completeR2Settings();
        settings.cloudflareR2AccountID = QStringLiteral(" 0123abcd\n");
        settings.cloudflareR2Bucket = QStringLiteral("\tteam-files ");
        settings.cloudflareR2PublicURLBase = QStringLiteral(" https://files.example.com\r\n");
        const CloudflareR2Provider provider(settings, QStringLiteral(" key\n"), QStringLiteral("\tsecret "),
                                            &m_session);
        QCOMPARE(provider.accountID, QStringLiteral("0123abcd"));
        QCOMPARE(provider.bucket, QStringLiteral("team-files"));
        QCOMPARE(provider.publicURLBase, QStringLiteral("https://files.example.com"));
        QCOMPARE(provider.accessKeyID, QStringLiteral("key"));
        QCOMPARE(provider.secretAccessKey, QStringLiteral("secret"));
        const CloudflareR2Provider blanks(settings, QStringLiteral("  "), QStringLiteral("\n"), &m_session);
        QCOMPARE(validationMessage(blanks), QStringLiteral("R2 access key ID is required."));
    }

    void theEndpointIsTheAccountsR2HostUnlessTheSettingsNameAnother() {
        AppSettings settings = completeR2Settings();
        QCOMPARE(CloudflareR2Provider(settings, QString(), QString(), &m_session).endpointBaseURL,
                 QStringLiteral("https://0123abcd.r2.cloudflarestorage.com"));
        settings.cloudflareR2EndpointBaseURL = QStringLiteral(" http://127.44.3.9 ");
        QCOMPARE(CloudflareR2Provider(settings, QString(), QString(), &m_session).endpointBaseURL,
                 QStringLiteral("http://127.44.3.9"));
    }

    void aPublicUrlBaseWithATrailingSlashGivesNoDoubleSlash() {
        AppSettings settings = completeR2Settings();
        settings.cloudflareR2PublicURLBase = QStringLiteral("https://files.example.com/");
        QCOMPARE(CloudflareR2Provider(settings, QString(), QString(), &m_session).publicURL(QStringLiteral("ID-a.png")),
                 QUrl(QStringLiteral("https://files.example.com/ID-a.png")));
        settings.cloudflareR2PublicURLBase = QStringLiteral("https://files.example.com/team");
        QCOMPARE(CloudflareR2Provider(settings, QString(), QString(), &m_session).publicURL(QStringLiteral("ID-a.png")),
                 QUrl(QStringLiteral("https://files.example.com/team/ID-a.png")));
    }

    void aPublicUrlBaseWithTwoTrailingSlashesKeepsOne() {
        AppSettings settings = completeR2Settings();
        settings.cloudflareR2PublicURLBase = QStringLiteral("https://files.example.com//");
        const QUrl url =
            CloudflareR2Provider(settings, QString(), QString(), &m_session).publicURL(QStringLiteral("ID-a.png"));
        QCOMPARE(url.toString(QUrl::FullyEncoded), QStringLiteral("https://files.example.com//ID-a.png"));
    }

    void aFileNameWithABlankGivesAPublicAddressWithThePercentEncodedBlank() {
        const QUrl url = CloudflareR2Provider(completeR2Settings(), QString(), QString(), &m_session)
                             .publicURL(QStringLiteral("ID-Quarterly report.pdf"));
        QCOMPARE(url.toString(QUrl::FullyEncoded),
                 QStringLiteral("https://files.example.com/ID-Quarterly%20report.pdf"));
    }

    void aKeyKeepsThePathCharactersAndEncodesTheRest() {
        const QUrl url = CloudflareR2Provider(completeR2Settings(), QString(), QString(), &m_session)
                             .publicURL(QStringLiteral("ID-a+b=c&d;é#?%.txt"));
        QCOMPARE(url.toString(QUrl::FullyEncoded),
                 QStringLiteral("https://files.example.com/ID-a+b=c&d%3B%C3%A9%23%3F%25.txt"));
    }

    void theContentTypeFollowsTheExtension_data() {
        QTest::addColumn<QString>("filename");
        QTest::addColumn<QString>("type");
        const QList<std::pair<const char*, const char*>> table{{"a.png", "image/png"},
                                                               {"a.jpg", "image/jpeg"},
                                                               {"a.jpeg", "image/jpeg"},
                                                               {"a.gif", "image/gif"},
                                                               {"a.webp", "image/webp"},
                                                               {"a.mov", "video/quicktime"},
                                                               {"a.mp4", "video/mp4"},
                                                               {"a.m4v", "video/mp4"},
                                                               {"a.txt", "text/plain"},
                                                               {"a.pdf", "application/pdf"},
                                                               {"a.zip", "application/octet-stream"}};
        for (const auto& [filename, type] : table) {
            QTest::newRow(filename) << QString::fromLatin1(filename) << QString::fromLatin1(type);
        }
    }
    void theContentTypeFollowsTheExtension() {
        QFETCH(QString, filename);
        QFETCH(QString, type);
        QCOMPARE(CloudflareR2Provider::contentType(filename), type);
    }

    void anExtensionInCapitalsIsFoundAsInLowerCase() {
        QCOMPARE(CloudflareR2Provider::contentType(QStringLiteral("Screen Shot.PNG")), QStringLiteral("image/png"));
        QCOMPARE(CloudflareR2Provider::contentType(QStringLiteral("clip.MoV")), QStringLiteral("video/quicktime"));
    }

    void aNameWithoutExtensionIsAnOctetStream() {
        QCOMPARE(CloudflareR2Provider::contentType(QStringLiteral("README")),
                 QStringLiteral("application/octet-stream"));
    }

    void a403AnswerWithAnXmlBodyShowsThatXml() {
        const QByteArray xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Error><Code>AccessDenied</Code>"
                               "<Message>Access Denied</Message></Error>";
        QCOMPARE(CloudflareR2Provider::failureMessage(403, xml), QString::fromUtf8(xml));
    }

    void aRefusalWithAnEmptyBodyHasAnEmptyMessage() {
        QCOMPARE(CloudflareR2Provider::failureMessage(500, QByteArray()), QString(""));
    }

    void aRefusalWhoseBodyIsNotUtf8NamesTheStatus() {
        QCOMPARE(CloudflareR2Provider::failureMessage(502, QByteArray("\xff\xfe<Error>", 9)),
                 QStringLiteral("R2 upload failed (HTTP 502)."));
    }

    void theKeysAreReadFromTheStoreKeyIDFirst() {
        MemorySecretStore secrets;
        const StorageCredentialStore credentials(&secrets);
        secrets.setItem(KeychainStore::appService, QStringLiteral("cloudflare-r2-access-key"), " stored-key ");
        secrets.setItem(KeychainStore::appService, QStringLiteral("cloudflare-r2-secret-key"), "stored-secret\n");
        const auto made = runTask(CloudflareR2Provider::make(completeR2Settings(), credentials, &m_session));
        const auto provider = std::dynamic_pointer_cast<const CloudflareR2Provider>(made);
        QVERIFY(provider);
        QCOMPARE(provider->accessKeyID, QStringLiteral("stored-key"));
        QCOMPARE(provider->secretAccessKey, QStringLiteral("stored-secret"));
        QCOMPARE(secrets.log(), QStringList({QStringLiteral("read cloudflare-r2-access-key"),
                                             QStringLiteral("read cloudflare-r2-secret-key")}));
    }

    void keysThatAreNotStoredAreEmpty() {
        MemorySecretStore secrets;
        const auto made =
            runTask(CloudflareR2Provider::make(completeR2Settings(), StorageCredentialStore(&secrets), &m_session));
        const auto provider = std::dynamic_pointer_cast<const CloudflareR2Provider>(made);
        QVERIFY(provider);
        QCOMPARE(provider->accessKeyID, QString(""));
        QCOMPARE(validationMessage(*provider), QStringLiteral("R2 access key ID is required."));
    }

    void anUploadWithAMissingValueFailsBeforeAnyTransfer() {
        const CloudflareR2Provider provider(completeR2Settings(), QStringLiteral("k"), QString(), &m_session);
        try {
            runTask(
                provider.upload(QUrl::fromLocalFile(QStringLiteral("/nonexistent/a.png")), QStringLiteral("a.png")));
            QFAIL("the upload went on");
        } catch (const StorageProviderError& error) {
            QCOMPARE(error.errorDescription(), QStringLiteral("R2 secret access key is required."));
        }
    }

private:
    QNetworkAccessManager m_session;
};

NORVANEBAR_TEST_GUILESS_MAIN(CloudflareR2ProviderTest)
#include "CloudflareR2ProviderTest.moc"
