#include "core/api/TaskAttachment.h"
#include "core/json/JsonDecoding.h"
#include "core/json/JsonEncoding.h"
#include "support/TestMain.h"

#include <QTest>

namespace {
// JSON is written here with single quotes, which read better than escaped double quotes (and raw
// string literals trip up moc of Qt 6.4).
QByteArray json(const QByteArray& singleQuoted) {
    return QByteArray(singleQuoted).replace('\'', '"');
}

TaskAttachment decode(const QByteArray& singleQuoted) {
    return Json::decode<TaskAttachment>(Json::parse(json(singleQuoted)), QStringLiteral("$"));
}

std::optional<qint64> dateOf(const QByteArray& date) {
    return decode("{'date':" + date + '}').date;
}

std::optional<QString> idOf(const QByteArray& id) {
    return decode("{'id':" + id + '}').id;
}
} // namespace

class TaskAttachmentTest : public QObject {
    Q_OBJECT

private slots:
    void aNumericIdAndVersionAndATextDateAreReadLeniently() {
        const TaskAttachment attachment = decode("{'id':12345,'version':2.0,'date':'1718092800000'}");
        QCOMPARE(attachment.id, std::optional<QString>(QStringLiteral("12345")));
        QCOMPARE(attachment.version, std::optional<QString>(QStringLiteral("2")));
        QCOMPARE(attachment.date, std::optional<qint64>(1718092800000));
    }

    void aDateWithLettersIsAbsentNotAFailure() {
        QCOMPARE(dateOf("'17180928x0000'"), std::nullopt);
        QCOMPARE(dateOf("'tomorrow'"), std::nullopt);
    }

    void aURLGivenAsANumberFailsTheWholeAttachment() {
        QVERIFY_THROWS_EXCEPTION(DecodingError, decode("{'id':'a1','url':42}"));
        QVERIFY_THROWS_EXCEPTION(DecodingError, decode("{'id':'a1','title':true}"));
        QVERIFY_THROWS_EXCEPTION(DecodingError, decode("{'id':'a1','thumbnail_small':[]}"));
    }

    void aFlexibleStringTakesTextAsItStands() {
        QCOMPARE(idOf("'a1b2'"), std::optional<QString>(QStringLiteral("a1b2")));
        QCOMPARE(idOf("''"), std::optional<QString>(QString()));
    }

    void aFlexibleStringTruncatesADoubleTowardZero() {
        QCOMPARE(idOf("2.9"), std::optional<QString>(QStringLiteral("2")));
        QCOMPARE(idOf("-2.9"), std::optional<QString>(QStringLiteral("-2")));
        QCOMPARE(idOf("9007199254740993"), std::optional<QString>(QStringLiteral("9007199254740993")));
    }

    void aFlexibleStringOfAnyOtherKindIsAbsent() {
        QCOMPARE(idOf("true"), std::nullopt);
        QCOMPARE(idOf("null"), std::nullopt);
        QCOMPARE(idOf("{'x':1}"), std::nullopt);
        QCOMPARE(idOf("[1]"), std::nullopt);
        QCOMPARE(decode("{}").id, std::nullopt);
    }

    void aDoubleBeyondSixtyFourBitsIsAbsent() {
        QCOMPARE(idOf("1e19"), std::nullopt);
        QCOMPARE(idOf("-1e300"), std::nullopt);
        QCOMPARE(dateOf("9223372036854775808"), std::nullopt);
        QCOMPARE(dateOf("-9223372036854775808"), std::optional<qint64>(std::numeric_limits<qint64>::min()));
    }

    void aFlexibleIntegerTruncatesADoubleTowardZero() {
        QCOMPARE(dateOf("1718092800000.9"), std::optional<qint64>(1718092800000));
        QCOMPARE(dateOf("-0.5"), std::optional<qint64>(0));
    }

    void aFlexibleIntegerReadsDigitsWithOneSign() {
        QCOMPARE(dateOf("'+42'"), std::optional<qint64>(42));
        QCOMPARE(dateOf("'-42'"), std::optional<qint64>(-42));
        QCOMPARE(dateOf("'007'"), std::optional<qint64>(7));
        QCOMPARE(dateOf("'9223372036854775807'"), std::optional<qint64>(std::numeric_limits<qint64>::max()));
        QCOMPARE(dateOf("'-9223372036854775808'"), std::optional<qint64>(std::numeric_limits<qint64>::min()));
    }

    void aFlexibleIntegerRefusesAnyOtherText() {
        for (const char* text : {"''", "'+'", "'-'", "'+-4'", "'--4'", "' 42'", "'42 '", "'4 2'", "'4.0'", "'1e3'",
                                 "'0x10'", "'٤٢'", "'9223372036854775808'", "'-9223372036854775809'"}) {
            QVERIFY2(!dateOf(text), text);
        }
    }

    void aFlexibleIntegerOfAnyOtherKindIsAbsent() {
        QCOMPARE(dateOf("false"), std::nullopt);
        QCOMPARE(dateOf("null"), std::nullopt);
        QCOMPARE(dateOf("[1]"), std::nullopt);
    }

    void anAttachmentIsWrittenWithItsKeys() {
        const QByteArray sample =
            "{'date':1718092800000,'extension':'png','id':'a1','name':'shot.png',"
            "'thumbnail_small':'https://x.test/s.png','title':'shot','url':'https://x.test/a.png',"
            "'version':'0'}";
        const TaskAttachment attachment = decode(sample);
        QCOMPARE(attachment.fileExtension, std::optional<QString>(QStringLiteral("png")));
        QCOMPARE(Json::serialize(attachment.toJson()), json(sample));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(TaskAttachmentTest)
#include "TaskAttachmentTest.moc"
