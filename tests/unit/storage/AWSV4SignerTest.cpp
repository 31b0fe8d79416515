#include "core/storage/AWSV4Signer.h"
#include "support/TestMain.h"

#include <QCryptographicHash>
#include <QProcess>
#include <QTemporaryFile>
#include <QTest>
#include <QTimeZone>

namespace {
const QString accessKey = QStringLiteral("AKIDEXAMPLE");
const QString secret = QStringLiteral("wJalrXUtnFEMI/K7MDENG+bPxRfiCYEXAMPLEKEY");
const QDateTime signedAt(QDate(2026, 11, 26), QTime(12, 30, 45), Qt::UTC);

Clock fixedClock() {
    return [] { return signedAt; };
}

QString header(const QNetworkRequest& request, const char* name) {
    return QString::fromUtf8(request.rawHeader(name));
}

QString signature(const QNetworkRequest& request) {
    return header(request, "Authorization").section(QStringLiteral("Signature="), 1);
}

QByteArray hex(const char* text) {
    return QByteArray::fromHex(text);
}

// The Authorization header botocore, an independent signer, makes for the same PUT at `signedAt`.
QString botocoreAuthorization(const QString& url, const QByteArray& payload, const QString& contentType) {
    QTemporaryFile payloadFile;
    if (!payloadFile.open() || payloadFile.write(payload) != payload.size() || !payloadFile.flush()) {
        return QStringLiteral("payload not written");
    }
    QProcess python;
    python.start(QStringLiteral("/usr/bin/python3"),
                 {QStringLiteral(NORVANEBAR_SIGV4_BOTOCORE_SCRIPT), url, accessKey, secret, contentType,
                  AWSV4Signer::amzDate(signedAt), payloadFile.fileName()});
    if (!python.waitForFinished(30'000) || python.exitCode() != 0) {
        return QStringLiteral("botocore failed: ") + QString::fromUtf8(python.readAllStandardError());
    }
    return QString::fromUtf8(python.readAllStandardOutput()).trimmed();
}
} // namespace

class AWSV4SignerTest : public QObject {
    Q_OBJECT

private slots:
    void hmacMatchesThePublishedSha256Vectors() {
        // RFC 4231, test cases 1 and 2.
        QCOMPARE(AWSV4Signer::hmac(QByteArray(20, '\x0b'), "Hi There").toHex(),
                 QByteArrayLiteral("b0344c61d8db38535ca8afceaf0bf12b881dc200c9833da726e9376c2e32cff7"));
        QCOMPARE(AWSV4Signer::hmac("Jefe", "what do ya want for nothing?").toHex(),
                 QByteArrayLiteral("5bdcc146bf60754e6a042426089575c75a003f089d2739839dec58b964ec3843"));
    }

    void chainedHmacDerivesThePublishedSigningKey() {
        // AWS's example of deriving a signing key for Signature Version 4.
        QByteArray key = "AWS4wJalrXUtnFEMI/K7MDENG+bPxRfiCYEXAMPLEKEY";
        for (const char* part : {"20120215", "us-east-1", "iam", "aws4_request"}) {
            key = AWSV4Signer::hmac(key, part);
        }
        QCOMPARE(key, hex("f4780e2d9f65fa895f9c67b32ce1baf0b0d8a43505a000a1a9e090d414db404d"));
    }

    void chainedHmacSignsThePublishedPutObjectExample() {
        // The PUT Object example of Amazon S3's header authentication: its string to sign and
        // signature. Its other headers and its region differ from R2's, so only the HMAC chain applies.
        QByteArray key = "AWS4wJalrXUtnFEMI/K7MDENG/bPxRfiCYEXAMPLEKEY";
        for (const char* part : {"20130524", "us-east-1", "s3", "aws4_request"}) {
            key = AWSV4Signer::hmac(key, part);
        }
        const QByteArray stringToSign = "AWS4-HMAC-SHA256\n20130524T000000Z\n20130524/us-east-1/s3/aws4_request\n"
                                        "9e0e90d9c76de8fa5b200d8c849cd5b8dc7a3be3951ddb7f6a76b4158342019d";
        QCOMPARE(AWSV4Signer::hmac(key, stringToSign).toHex(),
                 QByteArrayLiteral("98ad721746da40c64f1a55b78f14c238d841ea1380cd77a1b5971af0ece108bd"));
    }

    void theDatesAreInUtcWhateverTheClocksZone() {
        const QDateTime inBerlin(QDate(2026, 1, 1), QTime(0, 30, 5), QTimeZone("Europe/Berlin"));
        QCOMPARE(AWSV4Signer::amzDate(inBerlin), QStringLiteral("20251231T233005Z"));
        QCOMPARE(AWSV4Signer::dateStamp(inBerlin), QStringLiteral("20251231"));
    }

    void theRequestCarriesItsHeadersAndTheAuthorization() {
        const QByteArray payload = "Welcome to Amazon S3.";
        const QNetworkRequest request =
            AWSV4Signer::signedPUT(QUrl(QStringLiteral("https://account.r2.cloudflarestorage.com/bucket/a.png")),
                                   accessKey, secret, payload, QStringLiteral("image/png"), fixedClock());
        QCOMPARE(request.transferTimeout(), 60'000);
        QCOMPARE(header(request, "Content-Type"), QStringLiteral("image/png"));
        QCOMPARE(header(request, "x-amz-content-sha256"),
                 QStringLiteral("44ce7dd67c959e0d3524ffac1771dfbba87d2b6b4b4e99e42034a8b803f8b072"));
        QCOMPARE(header(request, "x-amz-date"), QStringLiteral("20261126T123045Z"));
        const QString authorization = header(request, "Authorization");
        QVERIFY2(authorization.startsWith(
                     QStringLiteral("AWS4-HMAC-SHA256 Credential=AKIDEXAMPLE/20261126/auto/s3/aws4_request, "
                                    "SignedHeaders=content-type;host;x-amz-content-sha256;x-amz-date, Signature=")),
                 qPrintable(authorization));
        QCOMPARE(signature(request).size(), 64);
    }

    void theSignatureIsBotocoresForTheSamePut() {
        const QString url = QStringLiteral("http://127.31.4.5/norvanebar/0A1B-report.pdf");
        const QByteArray payload = QByteArray(4096, 'x') + QByteArray("\0\xff", 2);
        const QNetworkRequest request = AWSV4Signer::signedPUT(QUrl(url), accessKey, secret, payload,
                                                               QStringLiteral("application/pdf"), fixedClock());
        QCOMPARE(header(request, "Authorization"),
                 botocoreAuthorization(url, payload, QStringLiteral("application/pdf")));
    }

    void anEmptyPayloadIsHashedAsNothingAndStillSigned() {
        const QString url = QStringLiteral("https://account.r2.cloudflarestorage.com/bucket/empty.txt");
        const QNetworkRequest request = AWSV4Signer::signedPUT(QUrl(url), accessKey, secret, QByteArray(),
                                                               QStringLiteral("text/plain"), fixedClock());
        QCOMPARE(header(request, "x-amz-content-sha256"),
                 QString::fromLatin1(QCryptographicHash::hash(QByteArray(), QCryptographicHash::Sha256).toHex()));
        QCOMPARE(header(request, "x-amz-content-sha256"),
                 QStringLiteral("e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"));
        QCOMPARE(header(request, "Authorization"),
                 botocoreAuthorization(url, QByteArray(), QStringLiteral("text/plain")));
    }

    void aPathIsSignedInItsDecodedForm() {
        // The request line carries "%20"; the signature covers the blank itself, as a signer that is
        // given the decoded path computes it, and not as one given the encoded path.
        const QNetworkRequest request =
            AWSV4Signer::signedPUT(QUrl(QStringLiteral("http://127.31.4.5/bucket/ID-hello%20world.txt")), accessKey,
                                   secret, "hi", QStringLiteral("text/plain"), fixedClock());
        QCOMPARE(request.url().toEncoded(), QByteArrayLiteral("http://127.31.4.5/bucket/ID-hello%20world.txt"));
        const QString decoded = botocoreAuthorization(QStringLiteral("http://127.31.4.5/bucket/ID-hello world.txt"),
                                                      "hi", QStringLiteral("text/plain"));
        const QString encoded = botocoreAuthorization(QStringLiteral("http://127.31.4.5/bucket/ID-hello%20world.txt"),
                                                      "hi", QStringLiteral("text/plain"));
        QCOMPARE(header(request, "Authorization"), decoded);
        QVERIFY(decoded != encoded);
    }

    void theHostIsSignedWithoutItsPort() {
        const auto signedFor = [](const QString& url) {
            return signature(
                AWSV4Signer::signedPUT(QUrl(url), accessKey, secret, "x", QStringLiteral("text/plain"), fixedClock()));
        };
        QCOMPARE(signedFor(QStringLiteral("http://127.31.4.5:9000/bucket/k")),
                 signedFor(QStringLiteral("http://127.31.4.5/bucket/k")));
        QVERIFY(signedFor(QStringLiteral("http://127.31.4.6/bucket/k")) !=
                signedFor(QStringLiteral("http://127.31.4.5/bucket/k")));
    }

    void allDatesOfOneSignatureComeFromOneReadingOfTheClock() {
        // Each reading is a second later; the first is the last second of a day.
        int readings = 0;
        const Clock ticking = [&readings] {
            return QDateTime(QDate(2026, 11, 26), QTime(23, 59, 59), Qt::UTC).addSecs(readings++);
        };
        const QNetworkRequest request =
            AWSV4Signer::signedPUT(QUrl(QStringLiteral("https://a.r2.cloudflarestorage.com/b/k")), accessKey, secret,
                                   "x", QStringLiteral("text/plain"), ticking);
        QCOMPARE(readings, 1);
        QCOMPARE(header(request, "x-amz-date"), QStringLiteral("20261126T235959Z"));
        QVERIFY2(header(request, "Authorization").contains(QStringLiteral("Credential=AKIDEXAMPLE/20261126/auto/s3/")),
                 qPrintable(header(request, "Authorization")));
    }

    void aUrlWithoutHostIsLeftUnsigned() {
        const QNetworkRequest request = AWSV4Signer::signedPUT(QUrl(QStringLiteral("/bucket/key")), accessKey, secret,
                                                               "x", QStringLiteral("text/plain"), fixedClock());
        QVERIFY(!request.hasRawHeader("Authorization"));
        QCOMPARE(header(request, "x-amz-date"), QStringLiteral("20261126T123045Z"));
        QVERIFY(request.hasRawHeader("x-amz-content-sha256"));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(AWSV4SignerTest)
#include "AWSV4SignerTest.moc"
