#include "platform/linux/PortalColorScheme.h"
#include "desktop/shell/ColorSchemePalette.h"
#include "desktop/shell/DarkPalette.h"
#include "support/TestMain.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QGuiApplication>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>
#include <optional>

using ColorScheme = ColorSchemeSource::ColorScheme;

namespace {
const QString portalService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString appearance = QStringLiteral("org.freedesktop.appearance");
const QString colorSchemeKey = QStringLiteral("color-scheme");
// Long enough for an answer over the private bus to have come, were one on its way.
constexpr int settleMs = 300;

QVariant inVariant(const QVariant& value) {
    return QVariant::fromValue(QDBusVariant(value));
}
} // namespace

// The desktop's colour scheme from the Settings portal of tests/harness/settings_portal.py, and the
// palette that follows it. Runs in a desktop session of its own, without a portal until a test
// starts one.
class PortalColorSchemeTest : public QObject {
    Q_OBJECT

    QProcess m_portal;
    QPalette m_platform;

    static QDBusConnectionInterface* bus() { return QDBusConnection::sessionBus().interface(); }

    // The portal, with the scheme set from its start or no colour scheme at all.
    bool startPortal(std::optional<ColorScheme> scheme = std::nullopt) {
        QStringList arguments{QStringLiteral(NORVANEBAR_SETTINGS_PORTAL_SCRIPT)};
        if (scheme) {
            arguments << QStringLiteral("--color-scheme") << QString::number(int(*scheme));
        }
        m_portal.start(QStringLiteral("/usr/bin/python3"), arguments);
        return QTest::qWaitFor([] { return bus()->isServiceRegistered(portalService).value(); }, 5000);
    }

    // Starts the reader and waits long enough for an answer: it tells no change and has no preference.
    static bool startsWithoutPreference(PortalColorScheme& source) {
        QSignalSpy changes(&source, &ColorSchemeSource::colorSchemeChanged);
        source.start();
        QTest::qWait(settleMs);
        return changes.isEmpty() && source.colorScheme() == ColorScheme::noPreference;
    }

    bool stopPortal() {
        if (m_portal.state() != QProcess::NotRunning) {
            m_portal.terminate();
            if (!m_portal.waitForFinished(3000)) {
                m_portal.kill();
                m_portal.waitForFinished();
            }
        }
        return QTest::qWaitFor([] { return !bus()->isServiceRegistered(portalService).value(); }, 5000);
    }

    // Sets a value in the portal as the desktop's settings would; the portal sends SettingChanged.
    static bool change(const QVariant& value, const QString& nameSpace = appearance,
                       const QString& key = colorSchemeKey) {
        QDBusMessage call =
            QDBusMessage::createMethodCall(portalService, QStringLiteral("/org/freedesktop/portal/desktop"),
                                           QStringLiteral("org.norvanebar.Test.Settings"), QStringLiteral("Change"));
        call << nameSpace << key << inVariant(value);
        return QDBusConnection::sessionBus().call(call).type() == QDBusMessage::ReplyMessage;
    }

    bool hasPlatformPalette() const { return QGuiApplication::palette() == m_platform; }
    static bool hasDarkPalette() { return !DarkPalette::isLight(QGuiApplication::palette()); }

private slots:
    void init() {
        QGuiApplication::setPalette(QPalette());
        m_platform = QGuiApplication::palette();
        QVERIFY2(DarkPalette::isLight(m_platform), "these tests need a light platform palette");
    }

    void cleanup() {
        QVERIFY(stopPortal());
        QGuiApplication::setPalette(QPalette());
    }

    void aDarkPreferenceIsReadAtTheStartAndDarkensThePalette() {
        QVERIFY(startPortal(ColorScheme::dark));
        PortalColorScheme source;
        ColorSchemePalette palette(source);
        QVERIFY(hasPlatformPalette());
        source.start();
        QTRY_COMPARE(source.colorScheme(), ColorScheme::dark);
        QVERIFY(palette.isDarkened());
        QVERIFY(hasDarkPalette());
    }

    void aLightPreferenceAtTheStartKeepsThePlatformsPalette() {
        QVERIFY(startPortal(ColorScheme::light));
        PortalColorScheme source;
        ColorSchemePalette palette(source);
        source.start();
        QTRY_COMPARE(source.colorScheme(), ColorScheme::light);
        QVERIFY(!palette.isDarkened());
        QVERIFY(hasPlatformPalette());
    }

    void aSettingChangedSwitchesThePaletteLiveBetweenDarkAndLight() {
        QVERIFY(startPortal(ColorScheme::light));
        PortalColorScheme source;
        ColorSchemePalette palette(source);
        source.start();
        QTRY_COMPARE(source.colorScheme(), ColorScheme::light);
        QSignalSpy changes(&source, &ColorSchemeSource::colorSchemeChanged);

        QVERIFY(change(1u));
        QTRY_COMPARE(source.colorScheme(), ColorScheme::dark);
        QVERIFY(hasDarkPalette());
        QVERIFY(change(2u));
        QTRY_COMPARE(source.colorScheme(), ColorScheme::light);
        QVERIFY(hasPlatformPalette());
        QVERIFY(change(1u));
        QTRY_COMPARE(source.colorScheme(), ColorScheme::dark);
        QVERIFY(change(0u));
        QTRY_COMPARE(source.colorScheme(), ColorScheme::noPreference);
        QVERIFY(hasPlatformPalette());
        QCOMPARE(changes.count(), 4);
    }

    void aValueInsideASecondVariantIsReadAtTheStartAndWhenItChanges() {
        QVERIFY(startPortal());
        // Read answers as older portals do, with the value inside a second variant.
        QVERIFY(change(inVariant(1u)));
        PortalColorScheme source;
        ColorSchemePalette palette(source);
        source.start();
        QTRY_COMPARE(source.colorScheme(), ColorScheme::dark);
        QVERIFY(hasDarkPalette());
        QVERIFY(change(inVariant(2u)));
        QTRY_COMPARE(source.colorScheme(), ColorScheme::light);
        QVERIFY(hasPlatformPalette());
    }

    void valuesOfTheWrongTypeMeanNoPreference_data() {
        QTest::addColumn<QVariant>("value");
        QTest::newRow("string") << QVariant(QStringLiteral("prefer-dark"));
        QTest::newRow("int32") << QVariant(qint32(1));
        QTest::newRow("boolean") << QVariant(true);
        QTest::newRow("array") << QVariant(QStringList{QStringLiteral("1")});
    }
    void valuesOfTheWrongTypeMeanNoPreference() {
        QFETCH(QVariant, value);
        QVERIFY(startPortal(ColorScheme::dark));
        PortalColorScheme source;
        ColorSchemePalette palette(source);
        source.start();
        QTRY_COMPARE(source.colorScheme(), ColorScheme::dark);
        // Sent as a change, and then read by a reader that starts now.
        QVERIFY(change(value));
        QTRY_COMPARE(source.colorScheme(), ColorScheme::noPreference);
        QVERIFY(hasPlatformPalette());
        PortalColorScheme later;
        QVERIFY(startsWithoutPreference(later));
    }

    void otherSettingsAreNotTheColorScheme() {
        QVERIFY(startPortal(ColorScheme::light));
        PortalColorScheme source;
        source.start();
        QTRY_COMPARE(source.colorScheme(), ColorScheme::light);
        QVERIFY(change(1u, appearance, QStringLiteral("accent-color")));
        QVERIFY(change(1u, QStringLiteral("org.gnome.desktop.interface"), colorSchemeKey));
        QTest::qWait(settleMs);
        QCOMPARE(source.colorScheme(), ColorScheme::light);
        QVERIFY(change(1u));
        QTRY_COMPARE(source.colorScheme(), ColorScheme::dark);
    }

    void aPortalWithoutTheSettingMeansNoPreference() {
        QVERIFY(startPortal());
        PortalColorScheme source;
        QVERIFY(startsWithoutPreference(source));
        // The subscription stands all the same.
        QVERIFY(change(1u));
        QTRY_COMPARE(source.colorScheme(), ColorScheme::dark);
    }

    void withoutAPortalThereIsNoPreferenceUntilOneStarts() {
        PortalColorScheme source;
        ColorSchemePalette palette(source);
        QVERIFY(startsWithoutPreference(source));
        QVERIFY(hasPlatformPalette());
        QVERIFY(startPortal(ColorScheme::dark));
        QTRY_COMPARE(source.colorScheme(), ColorScheme::dark);
        QVERIFY(hasDarkPalette());
    }

    void aPortalThatGoesLeavesNoPreference() {
        QVERIFY(startPortal(ColorScheme::dark));
        PortalColorScheme source;
        ColorSchemePalette palette(source);
        source.start();
        QTRY_COMPARE(source.colorScheme(), ColorScheme::dark);
        QVERIFY(stopPortal());
        QTRY_COMPARE(source.colorScheme(), ColorScheme::noPreference);
        QVERIFY(hasPlatformPalette());
    }

    void withoutABusThereIsNoPreference() {
        PortalColorScheme source(QDBusConnection(QStringLiteral("no such connection")));
        QVERIFY(startsWithoutPreference(source));
    }

    void aPlatformPaletteThatIsDarkAlreadyIsKept() {
        QPalette platformDark(QColor(0x40, 0x40, 0x48), QColor(0x20, 0x20, 0x28));
        QGuiApplication::setPalette(platformDark);
        const QPalette applied = QGuiApplication::palette();
        QVERIFY(!DarkPalette::isLight(applied));
        QVERIFY(startPortal(ColorScheme::dark));
        PortalColorScheme source;
        ColorSchemePalette palette(source);
        source.start();
        QTRY_COMPARE(source.colorScheme(), ColorScheme::dark);
        QVERIFY(!palette.isDarkened());
        QCOMPARE(QGuiApplication::palette(), applied);
        QVERIFY(change(2u));
        QTRY_COMPARE(source.colorScheme(), ColorScheme::light);
        QCOMPARE(QGuiApplication::palette(), applied);
    }
};

NORVANEBAR_TEST_MAIN(PortalColorSchemeTest)
#include "PortalColorSchemeTest.moc"
