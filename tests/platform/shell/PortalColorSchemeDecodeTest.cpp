#include "platform/linux/PortalColorScheme.h"
#include "support/TestMain.h"

#include <QDBusVariant>
#include <QTest>

using ColorScheme = ColorSchemeSource::ColorScheme;

namespace {
// The value as a signal or a reply carries it: inside one variant, or `levels` of them.
QVariant inVariants(const QVariant& value, int levels = 1) {
    QVariant wrapped = value;
    for (int level = 0; level < levels; ++level) {
        wrapped = QVariant::fromValue(QDBusVariant(wrapped));
    }
    return wrapped;
}
} // namespace

// What a "color-scheme" value from the Settings portal stands for. The value comes from another
// process: only a uint32 1 or 2 says anything.
class PortalColorSchemeDecodeTest : public QObject {
    Q_OBJECT

private slots:
    void oneIsDarkAndTwoIsLight() {
        QCOMPARE(PortalColorScheme::decode(inVariants(1u)), ColorScheme::dark);
        QCOMPARE(PortalColorScheme::decode(inVariants(2u)), ColorScheme::light);
    }

    void zeroAndNumbersThePortalDoesNotKnowAreNoPreference() {
        for (const uint number : {0u, 3u, 0xffffffffu}) {
            QCOMPARE(PortalColorScheme::decode(inVariants(number)), ColorScheme::noPreference);
        }
    }

    void aValueInsideASecondVariantIsRead() {
        QCOMPARE(PortalColorScheme::decode(inVariants(1u, 2)), ColorScheme::dark);
        QCOMPARE(PortalColorScheme::decode(inVariants(2u, 2)), ColorScheme::light);
    }

    void aValueOutsideAnyVariantIsRead() { QCOMPARE(PortalColorScheme::decode(QVariant(1u)), ColorScheme::dark); }

    void valuesOfOtherTypesAreNoPreference_data() {
        QTest::addColumn<QVariant>("value");
        QTest::newRow("int32 1") << QVariant(qint32(1));
        QTest::newRow("int64 1") << QVariant(qint64(1));
        QTest::newRow("uint64 1") << QVariant(quint64(1));
        QTest::newRow("uint16 1") << QVariant::fromValue(quint16(1));
        QTest::newRow("byte 1") << QVariant::fromValue(uchar(1));
        QTest::newRow("double 1") << QVariant(1.0);
        QTest::newRow("boolean true") << QVariant(true);
        QTest::newRow("string \"dark\"") << QVariant(QStringLiteral("dark"));
        QTest::newRow("string \"1\"") << QVariant(QStringLiteral("1"));
        QTest::newRow("array of strings") << QVariant(QStringList{QStringLiteral("1")});
        QTest::newRow("bytes") << QVariant(QByteArray("\x01", 1));
        QTest::newRow("map") << QVariant(QVariantMap{{QStringLiteral("color-scheme"), 1u}});
        QTest::newRow("nothing") << QVariant();
    }
    void valuesOfOtherTypesAreNoPreference() {
        QFETCH(QVariant, value);
        QCOMPARE(PortalColorScheme::decode(inVariants(value)), ColorScheme::noPreference);
        QCOMPARE(PortalColorScheme::decode(inVariants(value, 2)), ColorScheme::noPreference);
    }

    void aValueBuriedDeeperThanAnyPortalNestsIsNoPreference() {
        QCOMPARE(PortalColorScheme::decode(inVariants(1u, 8)), ColorScheme::dark);
        QCOMPARE(PortalColorScheme::decode(inVariants(1u, 9)), ColorScheme::noPreference);
        QCOMPARE(PortalColorScheme::decode(inVariants(1u, 1000)), ColorScheme::noPreference);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(PortalColorSchemeDecodeTest)
#include "PortalColorSchemeDecodeTest.moc"
