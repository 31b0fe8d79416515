#include "core/api/NVError.h"
#include "support/TestMain.h"

#include <QTest>

class NVErrorTest : public QObject {
    Q_OBJECT

    static QString describe(NVError::Case failure) { return NVError(std::move(failure)).errorDescription(); }

private slots:
    void aRejectedTokenShowsTheServicesOwnText() {
        QCOMPARE(describe(NVError::Unauthorized{QStringLiteral("Token invalid")}), QStringLiteral("Token invalid"));
    }

    void aRejectedTokenWithoutDetailShowsTheDefaultText() {
        const QString expected = QStringLiteral("Norvane rejected the API token. Check it in Settings.");
        QCOMPARE(describe(NVError::Unauthorized{std::nullopt}), expected);
        QCOMPARE(describe(NVError::Unauthorized{QString()}), expected);
        QCOMPARE(NVError::rejectedTokenText(), expected);
    }

    void aRateLimitDoesNotShowItsWait() {
        QCOMPARE(describe(NVError::RateLimited{30.0}),
                 QStringLiteral("Norvane rate limit reached. Try again in a moment."));
        QCOMPARE(describe(NVError::RateLimited{std::nullopt}),
                 QStringLiteral("Norvane rate limit reached. Try again in a moment."));
    }

    void aServerFailureShowsItsMessageEvenWhenEmpty() {
        QCOMPARE(describe(NVError::Server{QStringLiteral("E1"), QStringLiteral("List not found"), 404}),
                 QStringLiteral("List not found"));
        QCOMPARE(describe(NVError::Server{std::nullopt, QString(), 500}), QString());
    }

    void aNetworkFailureDoesNotShowTheUnderlyingError() {
        QCOMPARE(
            describe(NVError::Network{QNetworkReply::ConnectionRefusedError, QStringLiteral("Connection refused")}),
            QStringLiteral("Couldn't reach Norvane. Check your connection."));
    }

    void aDecodingFailureAndAnInvalidResponseReadTheSame() {
        QCOMPARE(describe(NVError::Decoding{QStringLiteral("$.user"), QStringLiteral("required key is missing")}),
                 QStringLiteral("Unexpected response from Norvane."));
        QCOMPARE(describe(NVError::InvalidResponse{}), QStringLiteral("Unexpected response from Norvane."));
    }

    void theRemainingCasesHaveTheirTexts() {
        QCOMPARE(describe(NVError::NotAuthenticated{}),
                 QStringLiteral("You're not signed in. Add your Norvane API token in Settings."));
        QCOMPARE(describe(NVError::StorageLimitExceeded{}),
                 QStringLiteral("Your Norvane workspace storage limit has been reached. Upgrade your plan or free up "
                                "space, then try again."));
    }

    void aDecodingErrorKeepsWhereAndWhy() {
        const NVError error =
            NVError::decoding(DecodingError(QStringLiteral("$.tasks[3]"), QStringLiteral("expected a string")));
        QVERIFY(error.is<NVError::Decoding>());
        QCOMPARE(error.as<NVError::Decoding>()->path, QStringLiteral("$.tasks[3]"));
        QCOMPARE(error.as<NVError::Decoding>()->description, QStringLiteral("expected a string"));
    }

    void theCaseCanBeToldAndItsPayloadRead() {
        const NVError error(NVError::Server{QStringLiteral("GBUSED_004"), QStringLiteral("m"), 413});
        QVERIFY(error.is<NVError::Server>());
        QVERIFY(!error.is<NVError::Unauthorized>());
        QCOMPARE(error.as<NVError::Unauthorized>(), nullptr);
        QCOMPARE(error.as<NVError::Server>()->statusCode, std::optional<int>(413));
        QCOMPARE(error.failure(),
                 NVError::Case(NVError::Server{QStringLiteral("GBUSED_004"), QStringLiteral("m"), 413}));
    }

    void onlyAWholeRequestWithoutAnswerOrAnUnreadableSuccessLeavesTheOutcomeUnknown() {
        QVERIFY(NVError(NVError::Network{QNetworkReply::RemoteHostClosedError, QString(), true}).outcomeUnknown());
        QVERIFY(NVError(NVError::Decoding{QStringLiteral("$.id"), QStringLiteral("missing")}).outcomeUnknown());
        QVERIFY(!NVError(NVError::Network{QNetworkReply::ConnectionRefusedError, QString(), false}).outcomeUnknown());
        QVERIFY(!NVError(NVError::Server{std::nullopt, QStringLiteral("m"), 500}).outcomeUnknown());
        QVERIFY(!NVError(NVError::RateLimited{}).outcomeUnknown());
        QVERIFY(!NVError(NVError::Unauthorized{}).outcomeUnknown());
        QVERIFY(!NVError(NVError::InvalidResponse{}).outcomeUnknown());
    }

    void whatIsTheDescription() {
        try {
            throw NVError(NVError::Unauthorized{QStringLiteral("Token invalid ✓")});
        } catch (const std::exception& error) {
            QCOMPARE(QString::fromUtf8(error.what()), QStringLiteral("Token invalid ✓"));
        }
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(NVErrorTest)
#include "NVErrorTest.moc"
