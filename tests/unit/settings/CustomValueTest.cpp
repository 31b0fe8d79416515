#include "core/settings/CustomValue.h"
#include "core/json/JsonEncoding.h"
#include "support/TestMain.h"

#include <QTest>

namespace {
CustomValue decoded(const QByteArray& json) {
    return Json::decode<CustomValue>(Json::parse(json), QStringLiteral("$"));
}

QByteArray persisted(const CustomValue& value) {
    return Json::serialize(value.toJson());
}

QString decodingFailure(const QByteArray& json) {
    try {
        decoded(json);
    } catch (const DecodingError& error) {
        return error.description();
    }
    return {};
}

// 2001-01-01 00:00:00 UTC, the zero of the settings file's dates.
const QDateTime settingsEpoch(QDate(2001, 1, 1), QTime(0, 0), Qt::UTC);
} // namespace

class CustomValueTest : public QObject {
    Q_OBJECT

private slots:
    // What the user sees as empty, and what goes to the service.

    void aNumberHoldingLettersIsKeptButDroppedFromTheRequest() {
        const CustomValue value = CustomValue::number(QStringLiteral("twelve"));
        QVERIFY(!value.isEmpty());
        QCOMPARE(value.jsonValue(), std::nullopt);
    }

    void aNumberHoldingSevenWithSpacesAroundIsTheInteger7() {
        QCOMPARE(CustomValue::number(QStringLiteral("  7 \t")).jsonValue(), JSONValue::integer(7));
    }

    void textWithOnlySpacesIsEmpty() {
        const CustomValue value = CustomValue::text(QStringLiteral("  \t "));
        QVERIFY(value.isEmpty());
        QCOMPARE(value.jsonValue(), std::nullopt);
    }

    void textWithASingleNewlineIsNotEmptyAndSendsTheNewline() {
        const CustomValue value = CustomValue::text(QStringLiteral("\n"));
        QVERIFY(!value.isEmpty());
        QCOMPARE(value.jsonValue(), JSONValue::string(QStringLiteral("\n")));
    }

    void labelsGivenInAnyOrderSendTheSameSortedArray() {
        const JSONValue sorted =
            JSONValue::array({JSONValue::string(QStringLiteral("a1")), JSONValue::string(QStringLiteral("b2")),
                              JSONValue::string(QStringLiteral("c3"))});
        QCOMPARE(CustomValue::labels({QStringLiteral("c3"), QStringLiteral("a1"), QStringLiteral("b2")}).jsonValue(),
                 sorted);
        QCOMPARE(CustomValue::labels({QStringLiteral("b2"), QStringLiteral("c3"), QStringLiteral("a1")}).jsonValue(),
                 sorted);
    }

    void anOptionWithTheEmptyStringIsNotEmptyAndSendsAnEmptyString() {
        const CustomValue value = CustomValue::option(QString());
        QVERIFY(!value.isEmpty());
        QCOMPARE(value.jsonValue(), JSONValue::string(QString()));
    }

    void twelveAndTwelvePointZeroAreTheInteger12AndTwelveAndAHalfANumber() {
        QCOMPARE(CustomValue::number(QStringLiteral("12")).jsonValue(), JSONValue::integer(12));
        QCOMPARE(CustomValue::number(QStringLiteral("12.0")).jsonValue(), JSONValue::integer(12));
        QCOMPARE(CustomValue::number(QStringLiteral("12.5")).jsonValue(), JSONValue::number(12.5));
        QCOMPARE(CustomValue::number(QStringLiteral("-3")).jsonValue(), JSONValue::integer(-3));
    }

    void aNumberIsReadAsStrtodReadsIt() {
        QCOMPARE(CustomValue::number(QStringLiteral("1e3")).jsonValue(), JSONValue::integer(1000));
        QCOMPARE(CustomValue::number(QStringLiteral("0x10")).jsonValue(), JSONValue::integer(16));
        QCOMPARE(CustomValue::number(QStringLiteral("+.5")).jsonValue(), JSONValue::number(0.5));
    }

    void aNumberWithWhiteSpaceOtherThanSpacesAndTabsBeforeItIsDropped() {
        QCOMPARE(CustomValue::number(QStringLiteral("\n7")).jsonValue(), std::nullopt);
        QCOMPARE(CustomValue::number(QStringLiteral("7\n")).jsonValue(), std::nullopt);
        QCOMPARE(CustomValue::number(QStringLiteral("7 7")).jsonValue(), std::nullopt);
        QCOMPARE(CustomValue::number(QStringLiteral("1,5")).jsonValue(), std::nullopt);
    }

    void aNumberNoJsonCanHoldIsDropped() {
        QCOMPARE(CustomValue::number(QStringLiteral("inf")).jsonValue(), std::nullopt);
        QCOMPARE(CustomValue::number(QStringLiteral("nan")).jsonValue(), std::nullopt);
        QCOMPARE(CustomValue::number(QStringLiteral("1e400")).jsonValue(), std::nullopt);
    }

    void aWholeNumberBeyond64BitsIsSentAsANumber() {
        QCOMPARE(CustomValue::number(QStringLiteral("1e20")).jsonValue(), JSONValue::number(1e20));
        QCOMPARE(CustomValue::number(QStringLiteral("9223372036854775808")).jsonValue(),
                 JSONValue::number(9223372036854775808.0));
        QCOMPARE(CustomValue::number(QStringLiteral("-9223372036854775808")).jsonValue(),
                 JSONValue::integer(std::numeric_limits<qint64>::min()));
    }

    void anEmptyNumberIsEmpty() {
        QVERIFY(CustomValue::number(QStringLiteral(" ")).isEmpty());
        QCOMPARE(CustomValue::number(QString()).jsonValue(), std::nullopt);
    }

    void textIsSentTrimmedOfSpacesAndTabs() {
        QCOMPARE(CustomValue::text(QStringLiteral(" \tDone \n\t")).jsonValue(),
                 JSONValue::string(QStringLiteral("Done \n")));
    }

    void anAbsentOptionOrDateAndNoLabelsAreEmptyAndSendNothing() {
        for (const CustomValue& value :
             {CustomValue::option(std::nullopt), CustomValue::date(std::nullopt), CustomValue::labels({})}) {
            QVERIFY(value.isEmpty());
            QCOMPARE(value.jsonValue(), std::nullopt);
        }
    }

    void anOptionIsSentUntrimmed() {
        QCOMPARE(CustomValue::option(QStringLiteral(" id ")).jsonValue(), JSONValue::string(QStringLiteral(" id ")));
    }

    void aDateIsSentAsMillisecondsSince1970() {
        const QDateTime date = QDateTime::fromMSecsSinceEpoch(1'700'000'000'123, Qt::UTC);
        QCOMPARE(CustomValue::date(date).jsonValue(), JSONValue::integer(1'700'000'000'123));
        const QDateTime before1970 = QDateTime::fromMSecsSinceEpoch(-1'500, Qt::UTC);
        QCOMPARE(CustomValue::date(before1970).jsonValue(), JSONValue::integer(-1'500));
    }

    void aTickedCheckboxIsSentAsTrueAndAnUntickedOneNotAtAll() {
        QVERIFY(!CustomValue::checkbox(true).isEmpty());
        QCOMPARE(CustomValue::checkbox(true).jsonValue(), JSONValue::boolean(true));
        QVERIFY(CustomValue::checkbox(false).isEmpty());
        QCOMPARE(CustomValue::checkbox(false).jsonValue(), std::nullopt);
    }

    void equalityComparesCaseAndPayload() {
        QCOMPARE(CustomValue::text(QStringLiteral("1")), CustomValue::text(QStringLiteral("1")));
        QVERIFY(CustomValue::text(QStringLiteral("1")) != CustomValue::number(QStringLiteral("1")));
        QVERIFY(CustomValue::option(std::nullopt) != CustomValue::option(QString()));
    }

    // The settings file's form.

    void eachCaseIsStoredUnderItsNameWithThePayloadIn_0() {
        QCOMPARE(persisted(CustomValue::text(QStringLiteral("a"))), QByteArray(R"({"text":{"_0":"a"}})"));
        QCOMPARE(persisted(CustomValue::number(QStringLiteral("1.5"))), QByteArray(R"({"number":{"_0":"1.5"}})"));
        QCOMPARE(persisted(CustomValue::option(QStringLiteral("o"))), QByteArray(R"({"option":{"_0":"o"}})"));
        QCOMPARE(persisted(CustomValue::labels({QStringLiteral("l")})), QByteArray(R"({"labels":{"_0":["l"]}})"));
        QCOMPARE(persisted(CustomValue::checkbox(false)), QByteArray(R"({"checkbox":{"_0":false}})"));
    }

    void anAbsentOptionOrDateIsStoredAsAnEmptyObject() {
        QCOMPARE(persisted(CustomValue::option(std::nullopt)), QByteArray(R"({"option":{}})"));
        QCOMPARE(persisted(CustomValue::date(std::nullopt)), QByteArray(R"({"date":{}})"));
        QCOMPARE(decoded(R"({"option":{}})"), CustomValue::option(std::nullopt));
        QCOMPARE(decoded(R"({"date":{}})"), CustomValue::date(std::nullopt));
        QCOMPARE(decoded(R"({"option":{"_0":null}})"), CustomValue::option(std::nullopt));
    }

    void aDateIsStoredAsSecondsSince2001() {
        QCOMPARE(persisted(CustomValue::date(settingsEpoch.addMSecs(1'500))), QByteArray(R"({"date":{"_0":1.5}})"));
        QCOMPARE(decoded(R"({"date":{"_0":725760000}})"),
                 CustomValue::date(QDateTime(QDate(2024, 1, 1), QTime(0, 0), Qt::UTC)));
        QCOMPARE(decoded(R"({"date":{"_0":-0.25}})"), CustomValue::date(settingsEpoch.addMSecs(-250)));
    }

    void everyCaseComesBackAsItWasStored() {
        const QList<CustomValue> values{
            CustomValue::text(QStringLiteral(" a\n")),
            CustomValue::number(QStringLiteral("x")),
            CustomValue::option(QString()),
            CustomValue::labels({QStringLiteral("b"), QStringLiteral("a")}),
            CustomValue::date(QDateTime::fromMSecsSinceEpoch(1'712'345'678'901, Qt::UTC)),
            CustomValue::checkbox(true),
        };
        for (const CustomValue& value : values) {
            QCOMPARE(decoded(persisted(value)), value);
        }
    }

    void anythingButExactlyOneCaseKeyFailsWithTheKeyCountText() {
        const QString text = QStringLiteral("Invalid number of keys found, expected one.");
        QCOMPARE(decodingFailure(R"({})"), text);
        QCOMPARE(decodingFailure(R"({"text":{"_0":"a"},"number":{"_0":"1"}})"), text);
        QCOMPARE(decodingFailure(R"({"other":{"_0":"a"}})"), text);
    }

    void aKeyOfNoCaseIsNotCounted() {
        QCOMPARE(decoded(R"({"text":{"_0":"a"},"other":1})"), CustomValue::text(QStringLiteral("a")));
    }

    void theOtherCasesRequire_0() {
        for (const QByteArray& json : {QByteArray(R"({"text":{}})"), QByteArray(R"({"number":{}})"),
                                       QByteArray(R"({"labels":{}})"), QByteArray(R"({"checkbox":{}})")}) {
            QVERIFY2(!decodingFailure(json).isEmpty(), json.constData());
        }
    }

    void aPayloadOfTheWrongTypeFails() {
        for (const QByteArray& json :
             {QByteArray(R"({"text":{"_0":1}})"), QByteArray(R"({"labels":{"_0":[1]}})"),
              QByteArray(R"({"date":{"_0":"2024-01-01"}})"), QByteArray(R"({"checkbox":{"_0":"true"}})"),
              QByteArray(R"({"option":"o"})"), QByteArray(R"({"date":{"_0":1e300}})"), QByteArray(R"("text")")}) {
            QVERIFY2(!decodingFailure(json).isEmpty(), json.constData());
        }
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(CustomValueTest)
#include "CustomValueTest.moc"
