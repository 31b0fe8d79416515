#include "core/api/UploadRetryPolicy.h"
#include "core/api/NVError.h"
#include "core/json/DecodingError.h"
#include "core/support/FileError.h"
#include "support/TestMain.h"

#include <QTest>

using namespace std::chrono_literals;

namespace {
template <typename Error> std::exception_ptr thrown(Error error) {
    return std::make_exception_ptr(std::move(error));
}

std::exception_ptr server(std::optional<int> status) {
    return thrown(NVError(NVError::Server{std::nullopt, QStringLiteral("failed"), status}));
}

std::exception_ptr network(QNetworkReply::NetworkError error) {
    return thrown(NVError(NVError::Network{error, QString()}));
}
} // namespace

class UploadRetryPolicyTest : public QObject {
    Q_OBJECT

private slots:
    void rateLimitsAreRetried() {
        QVERIFY(UploadRetryPolicy::isRetryable(thrown(NVError(NVError::RateLimited{std::nullopt}))));
        QVERIFY(UploadRetryPolicy::isRetryable(thrown(NVError(NVError::RateLimited{30.0}))));
    }

    void serverErrorsAreRetriedFor429AndEvery5xx() {
        for (const int status : {429, 500, 502, 503, 599}) {
            QVERIFY2(UploadRetryPolicy::isRetryable(server(status)), qPrintable(QString::number(status)));
        }
        for (const std::optional<int> status : {std::optional(400), std::optional(404), std::optional(413),
                                                std::optional(428), std::optional(600), std::optional<int>()}) {
            QVERIFY(!UploadRetryPolicy::isRetryable(server(status)));
        }
    }

    void otherServiceErrorsAreNotRetried() {
        for (const NVError& error :
             {NVError(NVError::Unauthorized{std::nullopt}), NVError(NVError::Decoding{QString(), QString()}),
              NVError(NVError::NotAuthenticated{}), NVError(NVError::StorageLimitExceeded{}),
              NVError(NVError::InvalidResponse{})}) {
            QVERIFY2(!UploadRetryPolicy::isRetryable(thrown(error)), error.what());
        }
    }

    void fileErrorsAndAnythingElseAreNotRetried() {
        QVERIFY(!UploadRetryPolicy::isRetryable(thrown(FileError(QStringLiteral("/x"), QStringLiteral("gone")))));
        QVERIFY(!UploadRetryPolicy::isRetryable(thrown(DecodingError(QStringLiteral("$"), QStringLiteral("bad")))));
        QVERIFY(!UploadRetryPolicy::isRetryable(thrown(42)));
    }

    void transportFailuresThatMayPassAreRetried() {
        for (const auto error : {QNetworkReply::TimeoutError, QNetworkReply::RemoteHostClosedError,
                                 QNetworkReply::NetworkSessionFailedError, QNetworkReply::ConnectionRefusedError,
                                 QNetworkReply::HostNotFoundError, QNetworkReply::TemporaryNetworkFailureError,
                                 QNetworkReply::BackgroundRequestNotAllowedError}) {
            QVERIFY(UploadRetryPolicy::isRetryableNetworkError(error));
            QVERIFY(UploadRetryPolicy::isRetryable(network(error)));
        }
    }

    void aDeliberateAbortIsNotRetried() {
        // The client's own time limits end a transfer with TimeoutError; a cancel is on purpose.
        QVERIFY(!UploadRetryPolicy::isRetryableNetworkError(QNetworkReply::OperationCanceledError));
        QVERIFY(!UploadRetryPolicy::isRetryable(network(QNetworkReply::OperationCanceledError)));
    }

    void otherTransportFailuresAreNotRetried() {
        for (const auto error : {QNetworkReply::SslHandshakeFailedError, QNetworkReply::TooManyRedirectsError,
                                 QNetworkReply::InsecureRedirectError, QNetworkReply::ProxyConnectionRefusedError,
                                 QNetworkReply::ProxyNotFoundError, QNetworkReply::ProtocolFailure,
                                 QNetworkReply::UnknownNetworkError, QNetworkReply::NoError}) {
            QVERIFY(!UploadRetryPolicy::isRetryableNetworkError(error));
            QVERIFY(!UploadRetryPolicy::isRetryable(network(error)));
        }
    }

    void theWaitDoublesFromTwoSecondsUpToThirtyTwo() {
        const auto failure = server(503);
        QCOMPARE(UploadRetryPolicy::delayAfter(1, failure), 2s);
        QCOMPARE(UploadRetryPolicy::delayAfter(2, failure), 4s);
        QCOMPARE(UploadRetryPolicy::delayAfter(3, failure), 8s);
        QCOMPARE(UploadRetryPolicy::delayAfter(4, failure), 16s);
        QCOMPARE(UploadRetryPolicy::delayAfter(5, failure), 32s);
        QCOMPARE(UploadRetryPolicy::delayAfter(9, failure), 32s);
    }

    void aRateLimitWaitsWhatTheServiceAsksUpTo120Seconds() {
        const auto limited = [](std::optional<double> seconds) {
            return thrown(NVError(NVError::RateLimited{seconds}));
        };
        QCOMPARE(UploadRetryPolicy::delayAfter(1, limited(300)), 120s);
        QCOMPARE(UploadRetryPolicy::delayAfter(3, limited(45)), 45s);
        QCOMPARE(UploadRetryPolicy::delayAfter(1, limited(0.25)), 250ms);
        QCOMPARE(UploadRetryPolicy::delayAfter(3, limited(0)), 8s);
        QCOMPARE(UploadRetryPolicy::delayAfter(2, limited(-5)), 4s);
        QCOMPARE(UploadRetryPolicy::delayAfter(2, limited(std::nullopt)), 4s);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(UploadRetryPolicyTest)
#include "UploadRetryPolicyTest.moc"
