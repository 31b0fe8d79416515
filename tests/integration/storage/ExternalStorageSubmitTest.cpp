// Tasks created with their files on each external provider, through the queue of jobs as the
// program runs it: Cloudinary and Google Drive at the sandbox's stand-ins, Cloudflare R2 on a real S3
// server that checks signatures, and the task itself at the sandbox. The providers are the program's
// own, made by the registry from the settings of the moment.
#include "core/auth/StaticTokenAuth.h"
#include "core/settings/SettingsStore.h"
#include "core/storage/AttachmentLinkFormatter.h"
#include "core/storage/BuiltInStorageProviders.h"
#include "support/ClientTesting.h"
#include "support/GoogleSandboxFixture.h"
#include "support/RunTask.h"
#include "support/S3ServerProcess.h"
#include "support/SandboxDemo.h"
#include "support/SandboxFault.h"
#include "support/StorageTesting.h"
#include "support/SubmitPipeline.h"
#include "support/SubmitTesting.h"
#include "support/TestMain.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace ClientTesting;
using namespace SubmitTesting;
using StorageTesting::randomBytes;

namespace {
const QString listID = SandboxDemo::supportListID;
const QString cloudName = QStringLiteral("norvanebar-demo");
const QString cloudinaryUploadPath = QStringLiteral("/v1_1/norvanebar-demo/auto/upload");
const QString driveUploadPath = QStringLiteral("/google/upload/drive/v3/files");
const QString r2PublicBase = QStringLiteral("https://files.example.com/team");

// The links of a text as the formatter writes them, in order.
QList<AttachmentLinkFormatter::Link> linksIn(const QString& text) {
    static const QRegularExpression link(QStringLiteral(R"(\[([^\]]*)\]\(([^)]*)\))"));
    QList<AttachmentLinkFormatter::Link> links;
    for (const QRegularExpressionMatch& match : link.globalMatch(text)) {
        links.append({match.captured(1), QUrl(match.captured(2))});
    }
    return links;
}
} // namespace

class ExternalStorageSubmitTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    S3ServerProcess m_s3;
    QTemporaryDir m_folder;
    QNetworkAccessManager m_session;
    std::optional<StaticTokenAuth> m_auth;
    RecordingSleeper m_sleeper;
    std::optional<NorvaneClient> m_client;
    std::unique_ptr<GoogleSandboxFixture> m_google;
    std::optional<SettingsStore> m_settings;
    std::optional<StorageProviderRegistry> m_providers;
    std::optional<SubmitPipeline> m_pipeline;

    StorageProviderKind kind() const {
        const QString name = QString::fromLatin1(QTest::currentDataTag());
        if (name == QLatin1String("cloudinary")) {
            return StorageProviderKind::cloudinary;
        }
        return name == QLatin1String("cloudflareR2") ? StorageProviderKind::cloudflareR2
                                                     : StorageProviderKind::googleDrive;
    }

    void providers() {
        QTest::addColumn<int>("unused");
        QTest::newRow("cloudinary") << 0;
        QTest::newRow("cloudflareR2") << 0;
        QTest::newRow("googleDrive") << 0;
    }

    // The settings of the provider under test, each host at its stand-in.
    AppSettings settingsOfTheProvider() const {
        AppSettings settings;
        settings.storageProvider = kind();
        settings.cloudinaryCloudName = cloudName;
        settings.cloudinaryUploadPreset = QStringLiteral("norvanebar_unsigned");
        settings.cloudinaryAPIBaseURL = m_sandbox.baseUrl().toString();
        settings.cloudflareR2AccountID = QStringLiteral("0123456789abcdef");
        settings.cloudflareR2Bucket = m_s3.bucket();
        settings.cloudflareR2PublicURLBase = r2PublicBase;
        settings.cloudflareR2EndpointBaseURL = m_s3.endpointBaseURL();
        const QString google = m_sandbox.webUrl(u"/google").toString();
        settings.googleAccountsBaseURL = google;
        settings.googleOAuthTokenBaseURL = google;
        settings.googleDriveAPIBaseURL = google;
        settings.googleDriveUploadBaseURL = google;
        settings.googleDriveWebBaseURL = google;
        return settings;
    }

    // The bytes the provider keeps behind a link it gave.
    QByteArray bytesBehind(const QUrl& link) {
        SyncHttpClient http;
        switch (kind()) {
        case StorageProviderKind::cloudflareR2: {
            const QString key = link.toString().mid(r2PublicBase.size() + 1);
            return m_s3.storedObject(QUrl::fromPercentEncoding(key.toUtf8())).value_or("<none>");
        }
        case StorageProviderKind::googleDrive: {
            // The link is the file's page, ".../file/d/<id>/view".
            const QString id = link.path().section(QLatin1Char('/'), -2, -2);
            QUrl content = m_sandbox.webUrl(QStringLiteral("/google/drive/v3/files/") + id);
            content.setQuery(QStringLiteral("alt=media"));
            const QByteArray bearer = "Bearer " + m_google->item("google-drive-access-token").value_or("").toUtf8();
            return http.send("GET", content, {{"Authorization", bearer}}).body;
        }
        default:
            return http.get(link).body;
        }
    }

    // Makes the provider's next upload fail, as a host that is down or refuses it.
    void breakTheProvider() {
        switch (kind()) {
        case StorageProviderKind::cloudflareR2:
            QVERIFY(m_s3.stop());
            break;
        case StorageProviderKind::googleDrive:
            QVERIFY(m_sandbox.addFault(SandboxFault::answer(driveUploadPath, 503).forMethod(QStringLiteral("POST"))));
            break;
        default:
            QVERIFY(
                m_sandbox.addFault(SandboxFault::answer(cloudinaryUploadPath, 500).forMethod(QStringLiteral("POST"))));
        }
    }

    // The provider is back; an S3 server that comes back listens on another address.
    void repairTheProvider() {
        if (kind() == StorageProviderKind::cloudflareR2) {
            QVERIFY2(m_s3.start(), qPrintable(m_s3.errorString()));
            m_settings->set(&AppSettings::cloudflareR2EndpointBaseURL, std::optional(m_s3.endpointBaseURL()));
        }
    }

    void waitForJobs() { QTRY_COMPARE_WITH_TIMEOUT(m_pipeline->queue.pendingCount(), 0, 30'000); }

    QString descriptionOfTheCreatedTask() {
        const QJsonArray creates = postsEndingWith(m_sandbox.requests(), QStringLiteral("list/%1/task").arg(listID));
        return creates.isEmpty()
                   ? QStringLiteral("<no task>")
                   : creates.last()[QStringLiteral("json")][QStringLiteral("markdown_description")].toString();
    }

private slots:
    void initTestCase() {
        QVERIFY(m_folder.isValid());
        QVERIFY2(m_sandbox.start(), qPrintable(m_sandbox.errorString()));
        QVERIFY2(m_s3.start(), qPrintable(m_s3.errorString()));
        m_auth.emplace(m_sandbox.token());
    }

    void init() {
        QVERIFY(GoogleSandboxFixture::startAfresh(m_sandbox));
        m_sleeper = RecordingSleeper();
        m_client.emplace(*m_auth, &m_session, nullptr, m_sandbox.apiUrl(u""), m_sleeper.sleeper());
        m_google = std::make_unique<GoogleSandboxFixture>(m_sandbox);
        runTask(m_google->auth().signIn());
        m_google->setItem("cloudflare-r2-access-key", m_s3.accessKeyID());
        m_google->setItem("cloudflare-r2-secret-key", m_s3.secretAccessKey());
        m_settings.emplace(m_folder.filePath(QUuid::createUuid().toString(QUuid::WithoutBraces) + ".json"));
        m_settings->setSettings(settingsOfTheProvider());
        m_providers.emplace();
        BuiltInStorageProviders::registerAll(
            *m_providers,
            {.session = &m_session, .credentials = &m_google->credentials(), .googleAuth = &m_google->auth()});
        m_pipeline.emplace(*m_providers, *m_settings);
    }

    void cleanup() {
        m_pipeline.reset();
        m_providers.reset();
        m_google.reset();
    }

    void aTaskWithTwoFilesCarriesTheirLinks_data() { providers(); }
    void aTaskWithTwoFilesCarriesTheirLinks() {
        const QByteArray notes = randomBytes(180'000);
        const QByteArray picture = QByteArray("\x89PNG\r\n\x1a\n", 8) + randomBytes(40'000);
        const QList<StagedAttachment> files{pinnedFile(m_folder.path(), QStringLiteral("meeting-notes.pdf"), notes),
                                            pinnedFile(m_folder.path(), QStringLiteral("screen.png"), picture)};
        PhaseRecorder phases;
        m_pipeline->queue.enqueue(payload(listID, QStringLiteral("Share the files"), files, QStringLiteral("Steps\n")),
                                  *m_client, QUuid::createUuid(), phases.handler());
        waitForJobs();

        QCOMPARE(phases.described().last(), QStringLiteral("done 0 failed"));
        const QString description = descriptionOfTheCreatedTask();
        const QList<AttachmentLinkFormatter::Link> links = linksIn(description);
        QCOMPARE(links.size(), 2);
        QCOMPARE(description, AttachmentLinkFormatter::appendLinks(QStringLiteral("Steps\n"), links));
        QCOMPARE(links[0].first, QStringLiteral("meeting-notes.pdf"));
        QCOMPARE(links[1].first, QStringLiteral("screen.png"));
        QVERIFY(bytesBehind(links[0].second) == notes);
        QVERIFY(bytesBehind(links[1].second) == picture);
        QVERIFY(!exists(files[0]) && !exists(files[1]));
    }

    void aFailureAfterTheTaskExistsIsRetriedAndItsLinkComesAsAComment_data() { providers(); }
    void aFailureAfterTheTaskExistsIsRetriedAndItsLinkComesAsAComment() {
        const QByteArray first = randomBytes(20'000);
        const QByteArray second = randomBytes(30'000);
        const QList<StagedAttachment> files{pinnedFile(m_folder.path(), QStringLiteral("first.txt"), first),
                                            pinnedFile(m_folder.path(), QStringLiteral("second.txt"), second)};
        // The provider fails once the first file is up, before the second.
        PhaseRecorder phases;
        const PhaseHandler recording = phases.handler();
        bool broken = false;
        const PhaseHandler breakingBeforeTheSecond = [&](const ForegroundSubmitPhase& phase) {
            recording(phase);
            const auto* uploading = std::get_if<ForegroundSubmitPhases::Uploading>(&phase);
            if (uploading && uploading->current == 2 && !broken) {
                broken = true;
                breakTheProvider();
            }
        };
        m_pipeline->queue.enqueue(payload(listID, QStringLiteral("Partly shared"), files), *m_client,
                                  QUuid::createUuid(), breakingBeforeTheSecond);
        waitForJobs();
        QVERIFY(broken);
        const auto* done = phases.last<ForegroundSubmitPhases::Done>();
        QVERIFY(done && done->retryJobID);
        QCOMPARE(done->failedUploads.size(), 1);
        QCOMPARE(done->failedUploads[0].attachment, files[1]);
        const QList<AttachmentLinkFormatter::Link> created = linksIn(descriptionOfTheCreatedTask());
        QCOMPARE(created.size(), 1);
        QCOMPARE(created[0].first, QStringLiteral("first.txt"));
        QVERIFY(bytesBehind(created[0].second) == first);

        repairTheProvider();
        PhaseRecorder retried;
        m_pipeline->queue.retry(*done->retryJobID, *m_client, retried.handler(), false);
        waitForJobs();
        QCOMPARE(retried.described(), (QStringList{QStringLiteral("uploading 1/1"), QStringLiteral("done 0 failed")}));
        const QJsonArray comments =
            postsEndingWith(m_sandbox.requests(), QStringLiteral("task/%1/comment").arg(done->task.id));
        QCOMPARE(comments.size(), 1);
        const QString comment = comments[0][QStringLiteral("json")][QStringLiteral("comment_text")].toString();
        const QList<AttachmentLinkFormatter::Link> added = linksIn(comment);
        QCOMPARE(added.size(), 1);
        QCOMPARE(comment, AttachmentLinkFormatter::appendLinks(std::nullopt, added));
        QCOMPARE(added[0].first, QStringLiteral("second.txt"));
        QVERIFY(bytesBehind(added[0].second) == second);
        QCOMPARE(postsEndingWith(m_sandbox.requests(), QStringLiteral("list/%1/task").arg(listID)).size(), 1);
        QVERIFY(!exists(files[1]));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(ExternalStorageSubmitTest)
#include "ExternalStorageSubmitTest.moc"
