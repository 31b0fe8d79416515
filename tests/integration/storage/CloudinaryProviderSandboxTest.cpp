// The Cloudinary provider over loopback HTTP against the sandbox's stand-in for Cloudinary's upload
// API: files that go up and come back unchanged, the form as the sandbox received it, Cloudinary's
// refusals shown in its own words, and each way an answer can fail, injected by fault rules.
#include "core/json/DecodingError.h"
#include "core/storage/CloudinaryProvider.h"
#include "core/storage/StorageProviderError.h"
#include "core/storage/StorageTransferError.h"
#include "core/support/FileError.h"
#include "support/AppStateFixture.h"
#include "support/RunTask.h"
#include "support/SandboxProcess.h"
#include "support/StorageTesting.h"
#include "support/SyncHttpClient.h"
#include "support/TestMain.h"

#include <QFile>
#include <QJsonArray>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>

using StorageTesting::randomBytes;

namespace {
// The sandbox's one cloud and its presets.
const QString cloudName = QStringLiteral("norvanebar-demo");
const QString unsignedPreset = QStringLiteral("norvanebar_unsigned");
const QString signedPreset = QStringLiteral("norvanebar_signed");
const QString uploadPath = QStringLiteral("/v1_1/norvanebar-demo/auto/upload");

// What the upload threw, as the text the user sees, or "<none>".
template <typename Error> QString failureText(const std::exception_ptr& failure) {
    try {
        std::rethrow_exception(failure);
    } catch (const Error& error) {
        if constexpr (std::is_same_v<Error, StorageProviderError>) {
            return error.errorDescription();
        } else {
            return QString::fromUtf8(error.what());
        }
    } catch (...) {
    }
    return QStringLiteral("<none>");
}

// The network error of a StorageTransferError with its text, or nothing for any other failure.
std::optional<QNetworkReply::NetworkError> transferErrorOf(const std::exception_ptr& failure) {
    try {
        std::rethrow_exception(failure);
    } catch (const StorageTransferError& error) {
        if (!error.errorString().isEmpty()) {
            return error.error();
        }
    } catch (...) {
    }
    return std::nullopt;
}
} // namespace

class CloudinaryProviderSandboxTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_dataFolder;
    QTemporaryDir m_files;
    SandboxProcess m_sandbox;
    SyncHttpClient m_http;
    QNetworkAccessManager m_session;

    CloudinaryProvider provider(const QString& preset = unsignedPreset, const QString& cloud = cloudName) {
        return CloudinaryProvider(cloud, preset, &m_session, m_sandbox.baseUrl());
    }

    QUrl writeFile(const QString& name, const QByteArray& content) {
        QFile file(m_files.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
            qFatal("Cannot write %s", qPrintable(file.fileName()));
        }
        return QUrl::fromLocalFile(file.fileName());
    }

    // The address the upload gave, or the exception it threw.
    static std::variant<QUrl, std::exception_ptr> upload(const CloudinaryProvider& provider, const QUrl& fileURL,
                                                         const QString& filename) {
        try {
            return runTask(provider.upload(fileURL, filename));
        } catch (...) {
            return std::current_exception();
        }
    }

    static QString describe(const std::variant<QUrl, std::exception_ptr>& outcome) {
        if (const QUrl* url = std::get_if<QUrl>(&outcome)) {
            return url->toString();
        }
        return failureText<std::exception>(std::get<std::exception_ptr>(outcome));
    }

    std::exception_ptr failedUpload(const CloudinaryProvider& provider) {
        auto outcome =
            upload(provider, writeFile(QStringLiteral("notes.txt"), "some notes"), QStringLiteral("notes.txt"));
        if (std::holds_alternative<QUrl>(outcome)) {
            return nullptr;
        }
        return std::get<std::exception_ptr>(outcome);
    }

    QString refusal() { return failureText<StorageProviderError>(failedUpload(provider())); }

    // A rule that answers the upload with this status and JSON body.
    static SandboxFault answer(int status, const QJsonValue& body) {
        SandboxFault fault;
        fault.status = status;
        fault.body = body;
        return fault;
    }

    bool addFault(SandboxFault fault) {
        fault.method = QStringLiteral("POST");
        fault.path = uploadPath;
        return m_sandbox.addFault(fault);
    }

    QJsonArray uploadsReceived() {
        QJsonArray uploads;
        for (const QJsonValue& entry : m_sandbox.requests()) {
            if (entry.toObject().value(QStringLiteral("method")).toString() == QStringLiteral("POST")) {
                uploads.append(entry);
            }
        }
        return uploads;
    }

private slots:
    void initTestCase() {
        SandboxProcess::Options options;
        options.dataFolder = m_dataFolder.path();
        QVERIFY2(m_sandbox.start(options), qPrintable(m_sandbox.errorString()));
    }

    void init() {
        QVERIFY(m_sandbox.clearFaults());
        QVERIFY(m_sandbox.clearRequests());
    }

    void aFileIsUploadedAndReadBackByteForByte() {
        const QByteArray content = randomBytes(300'000);
        const auto outcome =
            upload(provider(), writeFile(QStringLiteral("data.bin"), content), QStringLiteral("Quarterly data.bin"));
        QVERIFY2(std::holds_alternative<QUrl>(outcome), qPrintable(describe(outcome)));
        const QUrl url = std::get<QUrl>(outcome);
        QVERIFY2(url.path().startsWith(QStringLiteral("/norvanebar-demo/raw/upload/v")), qPrintable(url.toString()));
        QVERIFY(url.path().endsWith(QStringLiteral(".bin")));
        const HttpResult download = m_http.get(url);
        QCOMPARE(download.status, 200);
        QCOMPARE(download.body.size(), content.size());
        QVERIFY(download.body == content);
    }

    void aPictureComesBackAsAnImageOfItsFormat() {
        const QByteArray picture = QByteArray("\x89PNG\r\n\x1a\n", 8) + randomBytes(5'000);
        const auto outcome =
            upload(provider(), writeFile(QStringLiteral("shot.png"), picture), QStringLiteral("Screenshot.png"));
        QVERIFY(std::holds_alternative<QUrl>(outcome));
        const QUrl url = std::get<QUrl>(outcome);
        QVERIFY2(url.path().startsWith(QStringLiteral("/norvanebar-demo/image/upload/v")), qPrintable(url.toString()));
        QVERIFY(url.path().endsWith(QStringLiteral(".png")));
        const HttpResult download = m_http.get(url);
        QCOMPARE(download.header("Content-Type"), QByteArray("image/png"));
        QVERIFY(download.body == picture);
    }

    void theSandboxReceivedThePresetThenTheFile() {
        const QByteArray content = randomBytes(1'234);
        QVERIFY(std::holds_alternative<QUrl>(
            upload(provider(), writeFile(QStringLiteral("a.bin"), content), QStringLiteral("Ünïcode name.bin"))));
        const QJsonArray uploads = uploadsReceived();
        QCOMPARE(uploads.size(), 1);
        const QJsonObject entry = uploads.first().toObject();
        QCOMPARE(entry[QStringLiteral("path")].toString(), uploadPath);
        QCOMPARE(entry[QStringLiteral("status")].toInt(), 200);
        QString contentType;
        for (const QJsonValue& header : entry[QStringLiteral("headers")].toArray()) {
            const QJsonArray pair = header.toArray();
            if (pair.at(0).toString().compare(QStringLiteral("Content-Type"), Qt::CaseInsensitive) == 0) {
                contentType = pair.at(1).toString();
            }
        }
        QVERIFY2(contentType.startsWith(QStringLiteral("multipart/form-data; boundary=norvanebar-")),
                 qPrintable(contentType));
        const QJsonArray partList = entry[QStringLiteral("parts")].toArray();
        QCOMPARE(partList.size(), 2);
        const QJsonObject parts[] = {partList.at(0).toObject(), partList.at(1).toObject()};
        QCOMPARE(parts[0][QStringLiteral("name")].toString(), QStringLiteral("upload_preset"));
        QCOMPARE(parts[0][QStringLiteral("filename")].toString(), QString());
        QCOMPARE(parts[0][QStringLiteral("size")].toInteger(), qint64(unsignedPreset.size()));
        QCOMPARE(parts[1][QStringLiteral("name")].toString(), QStringLiteral("file"));
        QCOMPARE(parts[1][QStringLiteral("filename")].toString(), QStringLiteral("Ünïcode name.bin"));
        QCOMPARE(parts[1][QStringLiteral("contentType")].toString(), QStringLiteral("application/octet-stream"));
        QCOMPARE(parts[1][QStringLiteral("size")].toInteger(), qint64(content.size()));
    }

    void anUnknownPresetIsRefusedWithCloudinarysMessage() {
        const QString shown =
            failureText<StorageProviderError>(failedUpload(provider(QStringLiteral("no_such_preset"))));
        QCOMPARE(shown, QStringLiteral("Upload preset not found"));
    }

    void aSignedPresetIsRefusedForAnUnsignedUpload() {
        QCOMPARE(failureText<StorageProviderError>(failedUpload(provider(signedPreset))),
                 QStringLiteral("Upload preset must be whitelisted for unsigned uploads"));
    }

    void anUnknownCloudIsRefusedWithCloudinarysMessage() {
        QCOMPARE(failureText<StorageProviderError>(failedUpload(provider(unsignedPreset, QStringLiteral("nobody")))),
                 QStringLiteral("Invalid cloud_name nobody"));
    }

    void anEmptyFileIsRefused() {
        const auto outcome =
            upload(provider(), writeFile(QStringLiteral("empty.txt"), {}), QStringLiteral("empty.txt"));
        QVERIFY(std::holds_alternative<std::exception_ptr>(outcome));
        QCOMPARE(failureText<StorageProviderError>(std::get<std::exception_ptr>(outcome)),
                 QStringLiteral("Empty file"));
    }

    void anErrorObjectWithAMessageShowsTheMessageAlone() {
        QVERIFY(addFault(answer(
            420, QJsonObject{{QStringLiteral("error"),
                              QJsonObject{{QStringLiteral("message"), QStringLiteral("Rate Limit Exceeded")}}}})));
        QCOMPARE(refusal(), QStringLiteral("Rate Limit Exceeded"));
    }

    void anHtmlPageIsTheMessage() {
        SandboxFault fault;
        fault.status = 500;
        fault.bodyText = QStringLiteral("<html><body><h1>Internal Server Error</h1></body></html>");
        fault.contentType = QStringLiteral("text/html; charset=utf-8");
        QVERIFY(addFault(fault));
        QCOMPARE(refusal(), *fault.bodyText);
    }

    void aJsonObjectWithoutErrorShowsTheStatusLine() {
        QVERIFY(addFault(answer(500, QJsonObject{{QStringLiteral("status"), QStringLiteral("unavailable")}})));
        QCOMPARE(refusal(), QStringLiteral("Cloudinary upload failed (HTTP 500)."));
    }

    void aSuccessWithoutSecureUrlIsAnInvalidResponse() {
        SandboxFault fault = answer(
            200, QJsonObject{{QStringLiteral("public_id"), QStringLiteral("abc")},
                             {QStringLiteral("url"), QStringLiteral("http://res.cloudinary.com/a/raw/upload/v1/abc")}});
        fault.answerAfter = true;
        QVERIFY(addFault(fault));
        const std::exception_ptr failure = failedUpload(provider());
        QCOMPARE(failureText<StorageProviderError>(failure),
                 QStringLiteral("Unexpected response from storage provider."));
        // The file reached the sandbox; only the answer was replaced.
        QCOMPARE(uploadsReceived().first().toObject()[QStringLiteral("parts")].toArray().size(), 2);
    }

    void aSecureUrlThatIsNoUrlIsAnInvalidResponse() {
        QVERIFY(addFault(answer(
            200, QJsonObject{{QStringLiteral("secure_url"), QStringLiteral("https://res cloudinary.com/%zz")}})));
        QCOMPARE(refusal(), QStringLiteral("Unexpected response from storage provider."));
    }

    void aSuccessThatIsNotJsonPassesTheDecodingErrorOn() {
        SandboxFault fault;
        fault.status = 200;
        fault.bodyText = QStringLiteral("<html>Gateway says hello</html>");
        QVERIFY(addFault(fault));
        QVERIFY(failureText<DecodingError>(failedUpload(provider())) != QStringLiteral("<none>"));
    }

    void aDroppedConnectionPassesTheNetworkErrorOn() {
        QVERIFY(m_sandbox.addFault(SandboxFault::dropConnection(uploadPath).forMethod(QStringLiteral("POST"))));
        QCOMPARE(transferErrorOf(failedUpload(provider())), QNetworkReply::RemoteHostClosedError);
    }

    void aRefusedConnectionPassesTheNetworkErrorOn() {
        QTcpServer closed;
        QVERIFY(closed.listen(QHostAddress::LocalHost));
        const QUrl base(QStringLiteral("http://127.0.0.1:%1").arg(closed.serverPort()));
        closed.close();
        const CloudinaryProvider refused(cloudName, unsignedPreset, &m_session, base);
        QCOMPARE(transferErrorOf(failedUpload(refused)), QNetworkReply::ConnectionRefusedError);
    }

    void aFileThatCantBeReadFailsBeforeAnyRequest() {
        const auto outcome = upload(provider(), QUrl::fromLocalFile(m_files.filePath(QStringLiteral("missing.txt"))),
                                    QStringLiteral("missing.txt"));
        QVERIFY(std::holds_alternative<std::exception_ptr>(outcome));
        QVERIFY(failureText<FileError>(std::get<std::exception_ptr>(outcome)).contains(QStringLiteral("missing.txt")));
        QVERIFY(uploadsReceived().isEmpty());
    }

    void aCloudNameWithATrailingBlankIsTrimmed() {
        AppStateFixture fixture(&m_sandbox);
        fixture.writeSettings({{QStringLiteral("storageProvider"), QStringLiteral("cloudinary")},
                               {QStringLiteral("cloudinaryCloudName"), cloudName + QStringLiteral(" ")},
                               {QStringLiteral("cloudinaryUploadPreset"), unsignedPreset},
                               {QStringLiteral("cloudinaryAPIBaseURL"), m_sandbox.baseUrl().toString()}});
        AppState& app = fixture.start();
        const std::shared_ptr<const ExternalStorageProvider> made =
            runTask(app.storageProviders().makeProvider(app.settings().settings()));
        QVERIFY(made);
        QCOMPARE(made->displayName(), QStringLiteral("Cloudinary"));
        const QByteArray content = randomBytes(2'000);
        QCoro::Task<QUrl> uploading =
            made->upload(writeFile(QStringLiteral("trim.bin"), content), QStringLiteral("trim.bin"));
        const QUrl url = runTask(std::move(uploading));
        QCOMPARE(uploadsReceived().first().toObject()[QStringLiteral("path")].toString(), uploadPath);
        QVERIFY(m_http.get(url).body == content);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(CloudinaryProviderSandboxTest)
#include "CloudinaryProviderSandboxTest.moc"
