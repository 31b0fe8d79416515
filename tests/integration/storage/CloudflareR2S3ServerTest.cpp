#include "core/app/AppState.h"
#include "core/storage/CloudflareR2Provider.h"
#include "core/storage/StorageProviderError.h"
#include "support/AppStateFixture.h"
#include "support/RunTask.h"
#include "support/S3ServerProcess.h"
#include "support/TemporaryFolderTesting.h"
#include "support/TestMain.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>
#include <QUuid>

namespace {
const QString publicBase = QStringLiteral("https://files.example.com");

// The last segment of a public address, decoded: the object's key.
QString keyOf(const QUrl& url) {
    return url.fileName(QUrl::FullyDecoded);
}
} // namespace

// The R2 provider against a real S3 server that verifies signatures, on port 80 of a private
// loopback address.
class CloudflareR2S3ServerTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        QVERIFY(m_files.isValid());
        QVERIFY2(m_s3.start(), qPrintable(m_s3.errorString()));
    }

    void aFileIsUploadedAndReadBackByteForByte() {
        QByteArray bytes(1'000'003, Qt::Uninitialized);
        for (char& byte : bytes) {
            byte = static_cast<char>(QRandomGenerator::global()->bounded(256));
        }
        const QUrl url = upload(provider(), bytes, QStringLiteral("screen.png"));
        const QString key = keyOf(url);
        QVERIFY2(key.endsWith(QStringLiteral("-screen.png")), qPrintable(key));
        QVERIFY2(!QUuid::fromString(key.chopped(QStringLiteral("-screen.png").size())).isNull(), qPrintable(key));
        QCOMPARE(m_s3.storedObject(key), std::optional(bytes));
        QCOMPARE(storedContentType(key), QStringLiteral("image/png"));
    }

    void anEmptyFileIsUploaded() {
        const QUrl url = upload(provider(), QByteArray(), QStringLiteral("empty.txt"));
        QCOMPARE(m_s3.storedObject(keyOf(url)), std::optional(QByteArray()));
    }

    void eachUploadGoesUnderAKeyOfItsOwn() {
        const QUrl first = upload(provider(), "first", QStringLiteral("same.txt"));
        const QUrl second = upload(provider(), "second", QStringLiteral("same.txt"));
        QVERIFY(first != second);
        QCOMPARE(m_s3.storedObject(keyOf(first)), std::optional(QByteArray("first")));
        QCOMPARE(m_s3.storedObject(keyOf(second)), std::optional(QByteArray("second")));
    }

    void thePublicAddressIsFormedFromThePublicUrlBase() {
        const QUrl url =
            upload(provider(publicBase + QStringLiteral("/attachments/")), "x", QStringLiteral("notes.txt"));
        QCOMPARE(url.toString(QUrl::RemoveFilename), publicBase + QStringLiteral("/attachments/"));
        QVERIFY(m_s3.storedKeys().contains(keyOf(url)));
    }

    void aWrongSecretIsRefusedWithSignatureDoesNotMatchAsTheMessage() {
        const QStringList before = m_s3.storedKeys();
        const CloudflareR2Provider wrong(settings(publicBase), m_s3.accessKeyID(), QStringLiteral("not-the-secret"),
                                         &m_session);
        const QString message = refusal(wrong, QStringLiteral("a.txt"));
        QVERIFY2(message.startsWith(QStringLiteral("<?xml")), qPrintable(message));
        QVERIFY2(message.contains(QStringLiteral("<Code>SignatureDoesNotMatch</Code>")), qPrintable(message));
        QCOMPARE(m_s3.storedKeys(), before);
    }

    void anUnknownKeyIDIsRefusedWithItsXml() {
        const CloudflareR2Provider unknown(settings(publicBase), QStringLiteral("NVUNKNOWN"), m_s3.secretAccessKey(),
                                           &m_session);
        const QString message = refusal(unknown, QStringLiteral("a.txt"));
        QVERIFY2(message.contains(QStringLiteral("<Code>InvalidAccessKeyId</Code>")), qPrintable(message));
    }

    void aKeyWithABlankIsRefusedWithItsXml() {
        // The path is signed decoded while the request line carries "%20", so the server's signature,
        // made over the encoded path, differs.
        const QStringList before = m_s3.storedKeys();
        const QString message = refusal(*provider(), QStringLiteral("hello world.txt"));
        QVERIFY2(message.startsWith(QStringLiteral("<?xml")), qPrintable(message));
        QVERIFY2(message.contains(QStringLiteral("<Code>SignatureDoesNotMatch</Code>")), qPrintable(message));
        QCOMPARE(m_s3.storedKeys(), before);
    }

    void aServerThatIsNotThereFailsWithTheTransfersError() {
        AppSettings unreachable = settings(publicBase);
        unreachable.cloudflareR2EndpointBaseURL = QStringLiteral("http://127.0.0.1:1");
        const CloudflareR2Provider provider(unreachable, m_s3.accessKeyID(), m_s3.secretAccessKey(), &m_session);
        const QString path = writtenFile(m_files.filePath(QStringLiteral("unsent.txt")), "x");
        try {
            runTask(provider.upload(QUrl::fromLocalFile(path), QStringLiteral("unsent.txt")));
            QFAIL("the upload succeeded");
        } catch (const StorageProviderError& error) {
            QFAIL(qPrintable(QStringLiteral("a provider error: ") + error.errorDescription()));
        } catch (const std::exception& error) {
            QVERIFY2(QString::fromUtf8(error.what()).contains(QStringLiteral("refused")), error.what());
        }
    }

    void theAppMakesTheR2ProviderFromTheSettingsAndTheStoredKeys() {
        AppStateFixture fixture;
        fixture.writeSettings({{QStringLiteral("storageProvider"), QStringLiteral("cloudflareR2")},
                               {QStringLiteral("cloudflareR2AccountID"), QStringLiteral("0123abcd")},
                               {QStringLiteral("cloudflareR2Bucket"), m_s3.bucket()},
                               {QStringLiteral("cloudflareR2PublicURLBase"), publicBase},
                               {QStringLiteral("cloudflareR2EndpointBaseURL"), m_s3.endpointBaseURL()}});
        AppState& app = fixture.start();
        runTask(app.storageCredentials().setR2Credentials(m_s3.accessKeyID(), m_s3.secretAccessKey()));
        const auto made = runTask(app.storageProviders().makeProvider(app.settings().settings()));
        QVERIFY(std::dynamic_pointer_cast<const CloudflareR2Provider>(made));
        const QUrl url = upload(made, "from the app", QStringLiteral("app.txt"));
        QCOMPARE(m_s3.storedObject(keyOf(url)), std::optional(QByteArray("from the app")));
    }

    void cleanupTestCase() { QVERIFY(m_s3.stop()); }

private:
    AppSettings settings(const QString& publicURLBase) const {
        AppSettings settings;
        settings.storageProvider = StorageProviderKind::cloudflareR2;
        settings.cloudflareR2AccountID = QStringLiteral("0123abcd");
        settings.cloudflareR2Bucket = m_s3.bucket();
        settings.cloudflareR2PublicURLBase = publicURLBase;
        settings.cloudflareR2EndpointBaseURL = m_s3.endpointBaseURL();
        return settings;
    }

    std::shared_ptr<const CloudflareR2Provider> provider(const QString& publicURLBase = publicBase) {
        return std::make_shared<const CloudflareR2Provider>(settings(publicURLBase), m_s3.accessKeyID(),
                                                            m_s3.secretAccessKey(), &m_session);
    }

    QUrl upload(const std::shared_ptr<const ExternalStorageProvider>& provider, const QByteArray& bytes,
                const QString& filename) {
        const QString path = writtenFile(m_files.filePath(QUuid::createUuid().toString(QUuid::WithoutBraces)), bytes);
        return runTask(provider->upload(QUrl::fromLocalFile(path), filename));
    }

    // The message of the refused upload of a small file.
    QString refusal(const CloudflareR2Provider& provider, const QString& filename) {
        const QString path = writtenFile(m_files.filePath(QUuid::createUuid().toString(QUuid::WithoutBraces)), "x");
        try {
            runTask(provider.upload(QUrl::fromLocalFile(path), filename));
        } catch (const StorageProviderError& error) {
            if (error.is<StorageProviderError::UploadFailed>()) {
                return error.errorDescription();
            }
            return QStringLiteral("another failure: ") + error.errorDescription();
        }
        return QStringLiteral("the upload succeeded");
    }

    QString storedContentType(const QString& key) const {
        QFile metadata(m_s3.objectFolder() + QLatin1Char('/') + key + QStringLiteral("._S3rver_metadata.json"));
        if (!metadata.open(QIODevice::ReadOnly)) {
            return QStringLiteral("no metadata");
        }
        return QJsonDocument::fromJson(metadata.readAll()).object().value(QStringLiteral("content-type")).toString();
    }

    S3ServerProcess m_s3;
    QNetworkAccessManager m_session;
    QTemporaryDir m_files;
};

NORVANEBAR_TEST_GUILESS_MAIN(CloudflareR2S3ServerTest)
#include "CloudflareR2S3ServerTest.moc"
