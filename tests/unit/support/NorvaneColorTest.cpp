#include "core/support/NorvaneColor.h"
#include "support/TestMain.h"

#include <QTest>

class NorvaneColorTest : public QObject {
    Q_OBJECT

private slots:
    void aColourReadsRedGreenAndBlueFromItsBytes() {
        const std::optional<NorvaneColor> color = NorvaneColor::fromHex(QStringLiteral("#FF8000"));
        QVERIFY(color);
        QCOMPARE(color->red, 1.0);
        QCOMPARE(color->green, 128.0 / 255);
        QCOMPARE(color->blue, 0.0);
        QCOMPARE(color->name(), QStringLiteral("#ff8000"));
    }

    void theHashIsOptionalAndCaseDoesNotMatter() {
        QCOMPARE(NorvaneColor::fromHex(QStringLiteral("7b68ee")), NorvaneColor::fromHex(QStringLiteral("#7B68EE")));
    }

    void shortTextIsReadAsANumberNotAsShorthand() {
        // "fff" is 0x000fff: no red, green 0x0f, blue 0xff.
        QCOMPARE(NorvaneColor::fromHex(QStringLiteral("#fff"))->name(), QStringLiteral("#000fff"));
    }

    void bitsAboveTheBlueGreenAndRedBytesAreIgnored() {
        QCOMPARE(NorvaneColor::fromHex(QStringLiteral("#80FF0000"))->name(), QStringLiteral("#ff0000"));
    }

    void absentEmptyOrOnlyAHashIsNoColour() {
        QCOMPARE(NorvaneColor::fromHex(std::nullopt), std::nullopt);
        QCOMPARE(NorvaneColor::fromHex(QString()), std::nullopt);
        QCOMPARE(NorvaneColor::fromHex(QStringLiteral("#")), std::nullopt);
    }

    void textThatIsNotBaseSixteenIsNoColour() {
        for (const QString& bad : {QStringLiteral("#12345G"), QStringLiteral("red"), QStringLiteral("##123456"),
                                   QStringLiteral(" 123456"), QStringLiteral("0x123456"), QStringLiteral("-1"),
                                   QStringLiteral("#12345６"), QStringLiteral("1234567890ABCDEF0")}) {
            QVERIFY2(!NorvaneColor::fromHex(bad), qPrintable(bad));
        }
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(NorvaneColorTest)
#include "NorvaneColorTest.moc"
