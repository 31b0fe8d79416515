#include "core/api/UploadRetryPolicy.h"
#include "support/TestMain.h"

#include <QTest>
#include <cmath>

namespace {
const QDateTime now = QDateTime(QDate(2024, 6, 11), QTime(9, 30), Qt::UTC);

std::optional<double> retryAfter(const QByteArray& value) {
    return UploadRetryPolicy::retryAfter(value, now);
}
} // namespace

class RetryAfterTest : public QObject {
    Q_OBJECT

private slots:
    void aMissingHeaderIsAbsent() { QCOMPARE(UploadRetryPolicy::retryAfter(std::nullopt, now), std::nullopt); }

    void aNumberIsTakenWhateverItsSign() {
        QCOMPARE(retryAfter("300"), std::optional(300.0));
        QCOMPARE(retryAfter("0"), std::optional(0.0));
        QCOMPARE(retryAfter("-5"), std::optional(-5.0));
        QCOMPARE(retryAfter("1.5"), std::optional(1.5));
        QCOMPARE(retryAfter("+2"), std::optional(2.0));
        QCOMPARE(retryAfter(".5"), std::optional(0.5));
        QCOMPARE(retryAfter("3."), std::optional(3.0));
        QCOMPARE(retryAfter("1e2"), std::optional(100.0));
        QCOMPARE(retryAfter("0x10"), std::optional(16.0));
    }

    void infinityAndNotANumberReadAsNumbers() {
        QCOMPARE(retryAfter("inf"), std::optional(std::numeric_limits<double>::infinity()));
        QCOMPARE(retryAfter("-Infinity"), std::optional(-std::numeric_limits<double>::infinity()));
        const auto nan = retryAfter("nan");
        QVERIFY(nan && std::isnan(*nan));
    }

    void aLeadingBlankDoesNotReadAsANumber() {
        QCOMPARE(retryAfter(" 300"), std::nullopt);
        QCOMPARE(retryAfter("\t300"), std::nullopt);
    }

    void anythingAroundTheNumberSpoilsIt() {
        for (const char* text :
             {"", "300 ", "300s", "3 00", "+-5", "--5", "++5", "0x", "0x-1", "0xinf", "1e", "e5", "1e999", "rubbish"}) {
            QVERIFY2(!retryAfter(text), text);
        }
        QCOMPARE(retryAfter(QByteArray("30\0"
                                       "0",
                                       4)),
                 std::nullopt);
    }

    void anHTTPDateGivesTheSecondsFromNow() {
        QCOMPARE(retryAfter("Tue, 11 Jun 2024 09:35:00 GMT"), std::optional(300.0));
        QCOMPARE(retryAfter("Tue, 11 Jun 2024 09:30:01 UTC"), std::optional(1.0));
        QCOMPARE(retryAfter("Tue, 11 Jun 2024 11:30:00 +0200"), std::optional(0.0));
        QCOMPARE(retryAfter("Tue, 11 Jun 2024 11:32:00 Europe/Berlin"), std::optional(120.0));
    }

    void aDateInThePastGivesZero() {
        QCOMPARE(retryAfter("Tue, 11 Jun 2024 09:29:59 GMT"), std::optional(0.0));
        QCOMPARE(retryAfter("Wed, 21 Oct 2015 07:28:00 GMT"), std::optional(0.0));
    }

    void aDateOfAnotherShapeIsAbsent() {
        for (const char* text : {"Tuesday, 11-Jun-24 09:35:00 GMT", "Tue Jun 11 09:35:00 2024", "2024-06-11T09:35:00Z",
                                 "Tue, 11 Jun 2024 09:35:00", " Tue, 11 Jun 2024 09:35:00 GMT",
                                 "Tue, 11 Jun 2024 25:35:00 GMT", "Di, 11 Jun 2024 09:35:00 GMT"}) {
            QVERIFY2(!retryAfter(text), text);
        }
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(RetryAfterTest)
#include "RetryAfterTest.moc"
