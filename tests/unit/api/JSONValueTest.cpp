#include "core/api/JSONValue.h"
#include "core/json/JsonEncoding.h"
#include "support/TestMain.h"

#include <QTest>

class JSONValueTest : public QObject {
    Q_OBJECT

    static JSONValue parse(const QByteArray& bytes) { return JSONValue::fromJson(Json::parse(bytes)); }

private slots:
    void aWholeNumberIsAnInteger() {
        QCOMPARE(parse("[12]").value, JSONValue::Value(JSONValue::Array{JSONValue::integer(12)}));
        QCOMPARE(parse("[12.0]").value, JSONValue::Value(JSONValue::Array{JSONValue::integer(12)}));
        QCOMPARE(parse("[12.5]").value, JSONValue::Value(JSONValue::Array{JSONValue::number(12.5)}));
    }

    void eachKindDecodesToItsCase() {
        const JSONValue value = parse(R"({"s":"x","b":true,"n":null,"o":{"k":[1]}})");
        const JSONValue::Object expected{
            {QStringLiteral("s"), JSONValue::string(QStringLiteral("x"))},
            {QStringLiteral("b"), JSONValue::boolean(true)},
            {QStringLiteral("n"), JSONValue::null()},
            {QStringLiteral("o"),
             JSONValue::object({{QStringLiteral("k"), JSONValue::array({JSONValue::integer(1)})}})},
        };
        QCOMPARE(value, JSONValue::object(expected));
    }

    void anArrayOfAWholeNumberAStringAndANullIsWrittenBackTheSame() {
        const JSONValue value = parse(R"([3,"three",null])");
        QCOMPARE(Json::serialize(value.toJson()), QByteArray(R"([3,"three",null])"));
    }

    void anIntegerIsWrittenWithoutAFraction() {
        QCOMPARE(Json::serialize(JSONValue::integer(9007199254740993LL).toJson()), QByteArray("9007199254740993"));
        QCOMPARE(Json::serialize(JSONValue::number(0.5).toJson()), QByteArray("0.5"));
        QCOMPARE(Json::serialize(JSONValue::null().toJson()), QByteArray("null"));
    }

    void anUndefinedValueIsUnsupported() {
        try {
            JSONValue::fromJson(QJsonValue(QJsonValue::Undefined));
            QFAIL("no error");
        } catch (const DecodingError& error) {
            QCOMPARE(error.description(), QStringLiteral("Unsupported JSON value"));
        }
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(JSONValueTest)
#include "JSONValueTest.moc"
