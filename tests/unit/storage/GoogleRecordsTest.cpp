#include "core/storage/DriveRecords.h"
#include "core/storage/GoogleAuthRecords.h"
#include "support/TestMain.h"

#include <QTest>

class GoogleRecordsTest : public QObject {
    Q_OBJECT

private slots:
    void aTokenAnswerKeepsItsThreeFields() {
        const auto tokens = Json::decode<GoogleTokenResponse>(
            Json::parse(
                "{\"access_token\": \"ya29.a\", \"refresh_token\": \"1//r\", \"expires_in\": 3599, \"scope\": \"s\"}"),
            QStringLiteral("$"));
        QCOMPARE(tokens, (GoogleTokenResponse{QStringLiteral("ya29.a"), QStringLiteral("1//r"), 3599}));
    }

    void aTokenAnswerWithoutExpiryDoesNotDecode() {
        QVERIFY_THROWS_EXCEPTION(
            DecodingError,
            Json::decode<GoogleTokenResponse>(Json::parse("{\"access_token\": \"ya29.a\"}"), QStringLiteral("$")));
    }

    void aGoogleRefusalGivesItsDescriptionElseItsCode_data() {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<std::optional<QString>>("message");
        QTest::newRow("description") << QByteArray("{\"error\": \"invalid_grant\", \"error_description\": \"Bad\"}")
                                     << std::optional(QStringLiteral("Bad"));
        QTest::newRow("code alone") << QByteArray("{\"error\": \"invalid_grant\"}")
                                    << std::optional(QStringLiteral("invalid_grant"));
        QTest::newRow("neither") << QByteArray("{\"other\": 1}") << std::optional<QString>();
        QTest::newRow("wrong type is text")
            << QByteArray("{\"error\": 5}") << std::optional(QStringLiteral("{\"error\": 5}"));
        QTest::newRow("plain text") << QByteArray("Service Unavailable")
                                    << std::optional(QStringLiteral("Service Unavailable"));
        QTest::newRow("not UTF-8") << QByteArray("\xff\xfe") << std::optional<QString>();
    }

    void aGoogleRefusalGivesItsDescriptionElseItsCode() {
        QFETCH(QByteArray, body);
        QFETCH(std::optional<QString>, message);
        QCOMPARE(GoogleErrorResponse::messageIn(body), message);
    }

    void aDriveRefusalGivesTheMessageOfItsErrorObject_data() {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<std::optional<QString>>("message");
        QTest::newRow("message") << QByteArray("{\"error\": {\"code\": 403, \"message\": \"Quota exceeded\"}}")
                                 << std::optional(QStringLiteral("Quota exceeded"));
        QTest::newRow("error object without a message")
            << QByteArray("{\"error\": {\"code\": 500}}") << std::optional<QString>();
        QTest::newRow("no error object") << QByteArray("{}") << std::optional<QString>();
        QTest::newRow("error not an object is text")
            << QByteArray("{\"error\": \"x\"}") << std::optional(QStringLiteral("{\"error\": \"x\"}"));
        QTest::newRow("plain text") << QByteArray("Bad Gateway") << std::optional(QStringLiteral("Bad Gateway"));
        QTest::newRow("not UTF-8") << QByteArray("\xc3") << std::optional<QString>();
    }

    void aDriveRefusalGivesTheMessageOfItsErrorObject() {
        QFETCH(QByteArray, body);
        QFETCH(std::optional<QString>, message);
        QCOMPARE(DriveErrorResponse::messageIn(body), message);
    }
};

NORVANEBAR_TEST_APPLESS_MAIN(GoogleRecordsTest)
#include "GoogleRecordsTest.moc"
