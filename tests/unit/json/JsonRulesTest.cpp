#include "core/json/JsonDecoding.h"
#include "core/json/JsonEncoding.h"
#include "support/TestMain.h"

#include <QTest>
#include <limits>

namespace {
struct Sample {
    QString name;
    std::optional<qint64> count;
    std::optional<QList<QString>> tags;

    static Sample fromJson(const Json::JsonObject& json) {
        return {json.required<QString>(QStringLiteral("name")), json.optional<qint64>(QStringLiteral("count")),
                json.optional<QList<QString>>(QStringLiteral("tags"))};
    }
    QJsonObject toJson() const {
        return Json::ObjectBuilder()
            .set(QStringLiteral("name"), name)
            .set(QStringLiteral("count"), count)
            .set(QStringLiteral("tags"), tags)
            .object();
    }
};

Sample decodeSample(const QByteArray& bytes) {
    return Json::decode<Sample>(Json::parse(bytes), QStringLiteral("$"));
}

// A record with a 32-bit integer.
struct Level {
    int level = 0;

    static Level fromJson(const Json::JsonObject& json) { return {json.required<int>(QStringLiteral("level"))}; }
};

int decodeLevel(const QByteArray& bytes) {
    return Json::decode<Level>(Json::parse(bytes), QStringLiteral("$")).level;
}
} // namespace

class JsonRulesTest : public QObject {
    Q_OBJECT

private slots:
    void aMissingOptionalKeyAndANullBothGiveAbsent() {
        QCOMPARE(decodeSample(R"({"name":"a"})").count, std::nullopt);
        QCOMPARE(decodeSample(R"({"name":"a","count":null})").count, std::nullopt);
    }

    void aMissingOrNullRequiredKeyFails() {
        QVERIFY_THROWS_EXCEPTION(DecodingError, decodeSample(R"({"count":1})"));
        QVERIFY_THROWS_EXCEPTION(DecodingError, decodeSample(R"({"name":null})"));
    }

    void aWrongTypeFailsEvenForAnOptionalKey() {
        QVERIFY_THROWS_EXCEPTION(DecodingError, decodeSample(R"({"name":"a","count":"1"})"));
        QVERIFY_THROWS_EXCEPTION(DecodingError, decodeSample(R"({"name":"a","tags":["x",2]})"));
        QVERIFY_THROWS_EXCEPTION(DecodingError, decodeSample(R"({"name":5})"));
    }

    void aNumberWithAFractionIsNoInteger() {
        QVERIFY_THROWS_EXCEPTION(DecodingError, decodeSample(R"({"name":"a","count":1.5})"));
        QCOMPARE(decodeSample(R"({"name":"a","count":2.0})").count, std::optional<qint64>(2));
        QCOMPARE(decodeSample(R"({"name":"a","count":9007199254740993})").count,
                 std::optional<qint64>(9007199254740993LL));
        QVERIFY_THROWS_EXCEPTION(DecodingError, decodeSample(R"({"name":"a","count":1e20})"));
    }

    void aThirtyTwoBitIntegerTakesItsWholeRangeAndNothingBeyond() {
        QCOMPARE(decodeLevel(R"({"level":-2147483648})"), std::numeric_limits<int>::min());
        QCOMPARE(decodeLevel(R"({"level":2147483647})"), std::numeric_limits<int>::max());
        QVERIFY_THROWS_EXCEPTION(DecodingError, decodeLevel(R"({"level":-2147483649})"));
        QVERIFY_THROWS_EXCEPTION(DecodingError, decodeLevel(R"({"level":2147483648})"));
    }

    void unknownKeysAreIgnored() {
        QCOMPARE(decodeSample(R"({"name":"a","other":{"x":1}})").name, QStringLiteral("a"));
    }

    void theErrorNamesThePath() {
        try {
            decodeSample(R"({"name":"a","tags":["x",2]})");
            QFAIL("no error");
        } catch (const DecodingError& error) {
            QCOMPARE(error.path(), QStringLiteral("$.tags[1]"));
        }
    }

    void invalidJsonFails() { QVERIFY_THROWS_EXCEPTION(DecodingError, decodeSample("{\"name\":")); }

    void absentFieldsAreLeftOutAndKeysAreSorted() {
        QCOMPARE(Json::serialize(Sample{QStringLiteral("a"), std::nullopt, std::nullopt}.toJson()),
                 QByteArray(R"({"name":"a"})"));
        QCOMPARE(Json::serialize(Sample{QStringLiteral("a"), 3, QList<QString>{QStringLiteral("t")}}.toJson()),
                 QByteArray(R"({"count":3,"name":"a","tags":["t"]})"));
    }

    void setsAreWrittenSorted() {
        QCOMPARE(Json::serialize(Json::encode(QSet<QString>{QStringLiteral("b"), QStringLiteral("a")})),
                 QByteArray(R"(["a","b"])"));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(JsonRulesTest)
#include "JsonRulesTest.moc"
