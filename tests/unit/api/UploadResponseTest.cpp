#include "core/api/UploadResponse.h"
#include "core/api/NVError.h"
#include "support/TestMain.h"

#include <QTest>

namespace {
// The NVError that decoding the answer throws; absent if it gives an attachment.
std::optional<NVError> failureOf(const QByteArray& body, std::optional<int> status,
                                 std::optional<double> retryAfter = std::nullopt) {
    try {
        decodeUploadResponse(body, status, retryAfter);
    } catch (const NVError& error) {
        return error;
    }
    return std::nullopt;
}

QString decodingDescription(const std::optional<NVError>& error) {
    return error && error->is<NVError::Decoding>() ? error->as<NVError::Decoding>()->description : QString();
}
} // namespace

class UploadResponseTest : public QObject {
    Q_OBJECT

private slots:
    void anAnswerThatIsNotHTTPIsInvalid() {
        const auto error = failureOf("{\"id\":\"a1\"}", std::nullopt);
        QVERIFY(error && error->is<NVError::InvalidResponse>());
    }

    void anAttachmentWithAnIDIsTheResult() {
        const TaskAttachment attachment = decodeUploadResponse(
            "{\"id\":\"a1\",\"url\":\"https://files/a1/x.png\",\"title\":\"x.png\"}", 200, std::nullopt);
        QCOMPARE(attachment.id, std::optional(QStringLiteral("a1")));
        QCOMPARE(attachment.url, std::optional(QStringLiteral("https://files/a1/x.png")));
    }

    void aNumericIDIsAccepted() {
        QCOMPARE(decodeUploadResponse("{\"id\":12345}", 201, std::nullopt).id, std::optional(QStringLiteral("12345")));
    }

    void anEmptySuccessBodyIsCorrupted() {
        QCOMPARE(decodingDescription(failureOf(QByteArray(), 200)), QStringLiteral("Upload response body was empty"));
    }

    void aSuccessWithoutAnIDIsNotAnAttachment() {
        for (const QByteArray& body : {QByteArray("{\"title\":\"x\"}"), QByteArray("{\"id\":\"\"}"),
                                       QByteArray("{\"err\":\"Quota\",\"ECODE\":\"X\"}")}) {
            QCOMPARE(decodingDescription(failureOf(body, 200)),
                     QStringLiteral("Upload response was not a valid Norvane attachment"));
        }
    }

    void aSuccessThatIsNoAttachmentButCarriesAnErrorIsAServerError() {
        const auto error = failureOf("{\"err\":\"Virus found\",\"ECODE\":\"ATT_9\",\"url\":7}", 200);
        QVERIFY(error && error->is<NVError::Server>());
        QCOMPARE(*error->as<NVError::Server>(),
                 (NVError::Server{QStringLiteral("ATT_9"), QStringLiteral("Virus found"), 200}));
    }

    void aSuccessThatDecodesAsNeitherFailsWithTheAttachmentsError() {
        const auto emptyErr = failureOf("{\"err\":\"\",\"url\":7}", 200);
        QVERIFY(emptyErr && emptyErr->is<NVError::Decoding>());
        QVERIFY(emptyErr->as<NVError::Decoding>()->path.contains(QStringLiteral("url")));
        const auto notJSON = failureOf("<html>ok</html>", 200);
        QVERIFY(notJSON && notJSON->is<NVError::Decoding>());
    }

    void aRateLimitCarriesTheWait() {
        const auto error = failureOf(QByteArray(), 429, 12.5);
        QVERIFY(error && error->is<NVError::RateLimited>());
        QCOMPARE(error->as<NVError::RateLimited>()->retryAfter, std::optional(12.5));
    }

    void aRejectedTokenCarriesTheServicesTextOrTheDefault() {
        const auto withText = failureOf("{\"err\":\"Token expired\"}", 401);
        QCOMPARE(withText->as<NVError::Unauthorized>()->detail, std::optional(QStringLiteral("Token expired")));
        const auto withoutText = failureOf("nope", 401);
        QCOMPARE(withoutText->as<NVError::Unauthorized>()->detail, std::optional(NVError::rejectedTokenText()));
    }

    void theStorageLimitCodeIsToldApartWhateverTheStatus() {
        for (const int status : {400, 403, 500}) {
            const auto error = failureOf("{\"err\":\"Full\",\"ECODE\":\"GBUSED_005\"}", status);
            QVERIFY(error && error->is<NVError::StorageLimitExceeded>());
        }
    }

    void anEmptyCodeWith413IsAServerErrorWithTheServicesText() {
        const auto error = failureOf("{\"err\":\"Payload too large\",\"ECODE\":\"\"}", 413);
        QVERIFY(error && error->is<NVError::Server>());
        QCOMPARE(*error->as<NVError::Server>(), (NVError::Server{QString(), QStringLiteral("Payload too large"), 413}));
    }

    void anotherFailureWithoutABodyNamesTheStatus() {
        const auto error = failureOf(QByteArray(), 502);
        QCOMPARE(*error->as<NVError::Server>(),
                 (NVError::Server{std::nullopt, QStringLiteral("Norvane error (HTTP 502)"), 502}));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(UploadResponseTest)
#include "UploadResponseTest.moc"
