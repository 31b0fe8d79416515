// The Cloudinary provider without the network: its checks, the request it builds, how it reads
// Cloudinary's answers, and how the central state makes it from the settings.
#include "core/storage/CloudinaryProvider.h"
#include "core/json/DecodingError.h"
#include "core/storage/StorageProviderError.h"
#include "support/AppStateFixture.h"
#include "support/RunTask.h"
#include "support/StorageTesting.h"
#include "support/TestMain.h"

#include <QTest>

namespace {
using StorageTesting::failureOf;

QString uploadFailure(int status, const QByteArray& body) {
    const auto failure = failureOf([&] { CloudinaryProvider::decodeResponse(status, body); });
    if (!failure || !failure->is<StorageProviderError::UploadFailed>()) {
        return QStringLiteral("<no uploadFailed>");
    }
    return failure->errorDescription();
}

bool isInvalidResponse(const QByteArray& body) {
    const auto failure = failureOf([&] { CloudinaryProvider::decodeResponse(200, body); });
    return failure && failure->is<StorageProviderError::InvalidResponse>();
}

const QString boundary = QStringLiteral("norvanebar-0F1E2D3C-4B5A-6978-8796-A5B4C3D2E1F0");
} // namespace

class CloudinaryProviderTest : public QObject {
    Q_OBJECT

private slots:
    void itIsNamedCloudinary() {
        QCOMPARE(CloudinaryProvider(QStringLiteral("c"), QStringLiteral("p"), nullptr).displayName(),
                 QStringLiteral("Cloudinary"));
    }

    void validationAsksForTheCloudNameFirstThenThePreset() {
        const auto neither = failureOf([] { CloudinaryProvider({}, {}, nullptr).validateConfiguration(); });
        QVERIFY(neither && neither->is<StorageProviderError::MissingConfiguration>());
        QCOMPARE(neither->errorDescription(), QStringLiteral("Cloudinary cloud name is required."));
        const auto noPreset =
            failureOf([] { CloudinaryProvider(QStringLiteral("demo"), {}, nullptr).validateConfiguration(); });
        QVERIFY(noPreset && noPreset->is<StorageProviderError::MissingConfiguration>());
        QCOMPARE(noPreset->errorDescription(), QStringLiteral("Cloudinary upload preset is required."));
        QVERIFY(!failureOf([] {
            CloudinaryProvider(QStringLiteral("demo"), QStringLiteral("unsigned"), nullptr).validateConfiguration();
        }));
    }

    void anUploadWithoutAPresetFailsBeforeTheFileIsRead() {
        const CloudinaryProvider provider(QStringLiteral("demo"), {}, nullptr);
        const auto failure = failureOf([&] {
            runTask(provider.upload(QUrl::fromLocalFile(QStringLiteral("/nonexistent/file.txt")),
                                    QStringLiteral("file.txt")));
        });
        QVERIFY(failure && failure->is<StorageProviderError::MissingConfiguration>());
    }

    void theUploadGoesToCloudinarysRestHostUnderTheCloudName() {
        QCOMPARE(CloudinaryProvider::uploadURL(CloudinaryProvider::defaultAPIBaseURL(), QStringLiteral("demo")),
                 QUrl(QStringLiteral("https://api.cloudinary.com/v1_1/demo/auto/upload")));
    }

    void aBaseURLReplacesTheHostAndKeepsItsPath() {
        QCOMPARE(CloudinaryProvider::uploadURL(QUrl(QStringLiteral("http://127.0.0.1:8080")), QStringLiteral("demo")),
                 QUrl(QStringLiteral("http://127.0.0.1:8080/v1_1/demo/auto/upload")));
        QCOMPARE(CloudinaryProvider::uploadURL(QUrl(QStringLiteral("http://127.0.0.1:8080/cloudinary/")),
                                               QStringLiteral("demo")),
                 QUrl(QStringLiteral("http://127.0.0.1:8080/cloudinary/v1_1/demo/auto/upload")));
    }

    void theRequestIsMultipartWithItsBoundaryAndASixtySecondTimeout() {
        const QUrl url(QStringLiteral("https://api.cloudinary.com/v1_1/demo/auto/upload"));
        const QNetworkRequest request = CloudinaryProvider::uploadRequest(url, boundary);
        QCOMPARE(request.url(), url);
        QCOMPARE(request.header(QNetworkRequest::ContentTypeHeader).toByteArray(),
                 "multipart/form-data; boundary=" + boundary.toUtf8());
        QCOMPARE(request.transferTimeout(), 60'000);
    }

    void theBodyHoldsThePresetThenTheFileWithCarriageReturns() {
        const QByteArray fileData("\x89PNG\r\n\x00\xff", 8);
        const QByteArray delimiter = "--" + boundary.toUtf8() + "\r\n";
        const QByteArray expected = delimiter +
                                    "Content-Disposition: form-data; name=\"upload_preset\"\r\n"
                                    "\r\n"
                                    "unsigned_preset\r\n" +
                                    delimiter +
                                    "Content-Disposition: form-data; name=\"file\"; filename=\"Ünïcode \"q\".png\"\r\n"
                                    "Content-Type: application/octet-stream\r\n"
                                    "\r\n" +
                                    fileData + "\r\n--" + boundary.toUtf8() + "--\r\n";
        QCOMPARE(CloudinaryProvider::multipartBody(boundary, QStringLiteral("unsigned_preset"),
                                                   QStringLiteral("Ünïcode \"q\".png"), fileData),
                 expected);
    }

    void aSuccessGivesTheSecureUrl() {
        QCOMPARE(CloudinaryProvider::decodeResponse(
                     200, "{\"public_id\":\"abc\",\"url\":\"http://res.cloudinary.com/demo/image/upload/v1/abc.png\","
                          "\"secure_url\":\"https://res.cloudinary.com/demo/image/upload/v1/abc.png\"}"),
                 QUrl(QStringLiteral("https://res.cloudinary.com/demo/image/upload/v1/abc.png")));
        QCOMPARE(CloudinaryProvider::decodeResponse(299, "{\"secure_url\":\"https://x.test/a\"}"),
                 QUrl(QStringLiteral("https://x.test/a")));
    }

    void anErrorObjectWithAMessageShowsTheMessageAlone() {
        QCOMPARE(uploadFailure(400, "{\"error\":{\"message\":\"Upload preset not found\"}}"),
                 QStringLiteral("Upload preset not found"));
    }

    void anHtmlPageIsTheMessage() {
        const QByteArray page = "<html><body><h1>500 Internal Server Error</h1></body></html>\n";
        QCOMPARE(uploadFailure(500, page), QString::fromUtf8(page));
    }

    void aJsonObjectWithoutErrorShowsTheStatusLine() {
        QCOMPARE(uploadFailure(500, "{\"status\":\"down\"}"), QStringLiteral("Cloudinary upload failed (HTTP 500)."));
    }

    void anErrorWithoutAMessageShowsTheStatusLine() {
        QCOMPARE(uploadFailure(401, "{\"error\":{}}"), QStringLiteral("Cloudinary upload failed (HTTP 401)."));
        QCOMPARE(uploadFailure(401, "{\"error\":{\"message\":null}}"),
                 QStringLiteral("Cloudinary upload failed (HTTP 401)."));
    }

    void aBodyThatIsNotUtf8ShowsTheStatusLine() {
        QCOMPARE(uploadFailure(502, QByteArray("\xff\xfe\xc3", 3)),
                 QStringLiteral("Cloudinary upload failed (HTTP 502)."));
    }

    void anErrorOfAnotherShapeIsShownAsText() {
        // Not Cloudinary's error record, so the body is the message as it is.
        QCOMPARE(uploadFailure(400, "{\"error\":\"quota\"}"), QStringLiteral("{\"error\":\"quota\"}"));
        QCOMPARE(uploadFailure(400, "{\"error\":{\"message\":7}}"), QStringLiteral("{\"error\":{\"message\":7}}"));
        QCOMPARE(uploadFailure(300, "moved"), QStringLiteral("moved"));
    }

    void errorMessageReadsCloudinarysErrorRecord() {
        QCOMPARE(CloudinaryProvider::errorMessage("{\"error\":{\"message\":\"Empty file\"}}"),
                 std::optional(QStringLiteral("Empty file")));
        QCOMPARE(CloudinaryProvider::errorMessage("{}"), std::nullopt);
        QCOMPARE(CloudinaryProvider::errorMessage("plain words"), std::optional(QStringLiteral("plain words")));
        QCOMPARE(CloudinaryProvider::errorMessage(QByteArray("\xc3\x28", 2)), std::nullopt);
    }

    void aSuccessWithoutSecureUrlIsAnInvalidResponse() {
        QVERIFY(
            isInvalidResponse("{\"public_id\":\"abc\",\"url\":\"http://res.cloudinary.com/demo/raw/upload/v1/abc\"}"));
        QVERIFY(isInvalidResponse("{\"secure_url\":null}"));
    }

    void aSecureUrlThatIsNoUrlIsAnInvalidResponse() {
        QVERIFY(isInvalidResponse("{\"secure_url\":\"\"}"));
        QVERIFY(isInvalidResponse("{\"secure_url\":\"https://res.cloudinary.com/%zz\"}"));
        QVERIFY(isInvalidResponse("{\"secure_url\":\"https://res cloudinary.com/a\"}"));
    }

    void aSuccessThatIsNotTheUploadsJsonPassesTheDecodingErrorOn() {
        QVERIFY_THROWS_EXCEPTION(DecodingError, CloudinaryProvider::decodeResponse(200, "<html>OK</html>"));
        QVERIFY_THROWS_EXCEPTION(DecodingError, CloudinaryProvider::decodeResponse(200, "[\"secure_url\"]"));
        QVERIFY_THROWS_EXCEPTION(DecodingError, CloudinaryProvider::decodeResponse(200, "{\"secure_url\":42}"));
        QVERIFY_THROWS_EXCEPTION(DecodingError, CloudinaryProvider::decodeResponse(201, ""));
    }

    void aCloudNameWithATrailingBlankIsTrimmed() {
        AppStateFixture fixture;
        fixture.writeSettings({{QStringLiteral("storageProvider"), QStringLiteral("cloudinary")},
                               {QStringLiteral("cloudinaryCloudName"), QStringLiteral("demo-cloud \n")},
                               {QStringLiteral("cloudinaryUploadPreset"), QStringLiteral("\tunsigned ")}});
        AppState& app = fixture.start();
        const auto provider = std::dynamic_pointer_cast<const CloudinaryProvider>(
            runTask(app.storageProviders().makeProvider(app.settings().settings())));
        QVERIFY(provider);
        QCOMPARE(provider->cloudName(), QStringLiteral("demo-cloud"));
        QCOMPARE(provider->uploadPreset(), QStringLiteral("unsigned"));
        QCOMPARE(provider->apiBaseURL(), QUrl(QStringLiteral("https://api.cloudinary.com")));
        QCOMPARE(CloudinaryProvider::uploadURL(provider->apiBaseURL(), provider->cloudName()),
                 QUrl(QStringLiteral("https://api.cloudinary.com/v1_1/demo-cloud/auto/upload")));
    }

    void theBaseURLKeyReplacesTheHostAndIsLeftOutWhenAbsent() {
        AppSettings settings;
        QVERIFY(!settings.toJson().contains(QStringLiteral("cloudinaryAPIBaseURL")));
        QCOMPARE(AppSettings::fromJson(Json::JsonObject::from(settings.toJson())).cloudinaryAPIBaseURL, std::nullopt);
        settings.cloudinaryAPIBaseURL = QStringLiteral("http://127.0.0.1:9000");
        QCOMPARE(settings.toJson().value(QStringLiteral("cloudinaryAPIBaseURL")).toString(),
                 QStringLiteral("http://127.0.0.1:9000"));
        QCOMPARE(AppSettings::fromJson(Json::JsonObject::from(settings.toJson())), settings);
        settings.cloudinaryCloudName = QStringLiteral("demo");
        QCOMPARE(CloudinaryProvider::fromSettings(settings, nullptr)->apiBaseURL(),
                 QUrl(QStringLiteral("http://127.0.0.1:9000")));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(CloudinaryProviderTest)
#include "CloudinaryProviderTest.moc"
