#include "core/storage/OAuthEncoding.h"
#include "support/TestMain.h"

#include <QRegularExpression>
#include <QSet>
#include <QTest>
#include <QUrlQuery>

class OAuthEncodingTest : public QObject {
    Q_OBJECT

private slots:
    void theVerifierIsFortyThreeLettersDigitsHyphensAndUnderscores() {
        const QRegularExpression alphabet(QStringLiteral("^[A-Za-z0-9_-]{43}$"));
        QSet<QString> seen;
        for (int round = 0; round < 200; ++round) {
            const QString verifier = OAuthEncoding::makeCodeVerifier();
            QVERIFY2(alphabet.match(verifier).hasMatch(), qPrintable(verifier));
            seen.insert(verifier);
        }
        // Drawn from a random source: no two alike.
        QCOMPARE(seen.size(), 200);
    }

    void theChallengeOfTheRfc7636ExampleVerifierIsItsExampleChallenge() {
        QCOMPARE(OAuthEncoding::codeChallenge(QStringLiteral("dBjftJeZ4CVP-mB92K27uhbUJU1p1r_wW1gFWFOEjXk")),
                 QStringLiteral("E9Melhoa2OwvFrEMTJguCHaoeK1t8URWbuGJSstw-cM"));
    }

    void aValueWithPlusAmpersandOrEqualsIsPercentEncodedInTheForm() {
        const QByteArray form =
            OAuthEncoding::formEncode({{QStringLiteral("code"), QStringLiteral("4/a+b&c=d e")},
                                       {QStringLiteral("grant_type"), QStringLiteral("refresh_token")}});
        QCOMPARE(form, QByteArray("code=4/a%2Bb%26c%3Dd%20e&grant_type=refresh_token"));
        // Read back as a form, the value is whole again.
        QCOMPARE(QUrlQuery(QString::fromUtf8(form)).queryItemValue(QStringLiteral("code"), QUrl::FullyDecoded),
                 QStringLiteral("4/a+b&c=d e"));
    }

    void textBeyondAsciiIsSentAsPercentEncodedUtf8() {
        QCOMPARE(OAuthEncoding::formEncode({{QStringLiteral("name"), QStringLiteral("Ødegård")}}),
                 QByteArray("name=%C3%98deg%C3%A5rd"));
    }
};

NORVANEBAR_TEST_APPLESS_MAIN(OAuthEncodingTest)
#include "OAuthEncodingTest.moc"
