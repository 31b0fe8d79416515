#include "desktop/recording/RecordingDefaultsViewModel.h"
#include "support/AppStateFixture.h"
#include "support/EnvironmentOverride.h"
#include "support/SettingsFileTesting.h"
#include "support/TemporaryFolderTesting.h"
#include "support/TestMain.h"

#include <QBuffer>
#include <QImage>
#include <QSignalSpy>
#include <QTest>

// The recording defaults of the setup sheet and the General tab over the central state as the app
// builds it: what each choice shows, and what it writes into the settings file at once.
class RecordingDefaultsViewModelTest : public QObject {
    Q_OBJECT

    std::unique_ptr<TemporaryFolderOverride> m_temporary;
    // The camera's backgrounds are copied into the data folder.
    std::unique_ptr<QTemporaryDir> m_home;
    std::unique_ptr<EnvironmentOverride> m_dataHome;
    std::unique_ptr<AppStateFixture> m_fixture;
    std::unique_ptr<RecordingDefaultsViewModel> m_defaults;

    SettingsStore& settings() { return m_fixture->app().settings(); }
    QJsonObject stored() const { return SettingsFileTesting::stored(m_fixture->settingsPath()); }
    QJsonObject storedStyle() const { return stored().value(QStringLiteral("recordingFacecamStyle")).toObject(); }
    void setCornerRadius(double radius) {
        settings().modify([radius](AppSettings& changed) { changed.recordingFacecamStyle.cornerRadius = radius; });
    }

private slots:
    void init() {
        m_temporary = std::make_unique<TemporaryFolderOverride>();
        m_home = std::make_unique<QTemporaryDir>();
        m_dataHome =
            std::make_unique<EnvironmentOverride>("XDG_DATA_HOME", m_home->filePath(QStringLiteral("data")).toUtf8());
        m_fixture = std::make_unique<AppStateFixture>();
        m_fixture->start();
        m_defaults = std::make_unique<RecordingDefaultsViewModel>(settings());
    }

    void cleanup() {
        m_defaults.reset();
        m_fixture.reset();
        m_dataHome.reset();
        m_home.reset();
        m_temporary.reset();
    }

    void theChoicesReadAsThePersonSeesThem() {
        QCOMPARE(RecordingDefaultsViewModel::qualityLabels(), (QStringList{"720p", "1080p"}));
        QCOMPARE(RecordingDefaultsViewModel::shapeLabels(), (QStringList{"Square", "Rounded", "Circle"}));
        QCOMPARE(RecordingDefaultsViewModel::positionLabels(),
                 (QStringList{"Top left", "Top right", "Bottom left", "Bottom right"}));
        QCOMPARE(RecordingDefaultsViewModel::backgroundLabels(), (QStringList{"None", "Blur", "Custom image"}));
        QCOMPARE(RecordingDefaultsViewModel::maxDurationLabels(),
                 (QStringList{"5 minutes", "10 minutes", "15 minutes", "30 minutes", "45 minutes"}));
    }

    void aHalfRoundCornerReadsAsRoundedAndRoundedIsKeptAsAThird() {
        setCornerRadius(0.5);
        QCOMPARE(m_defaults->shapeIndex(), 1);
        m_defaults->setShapeIndex(1);
        QCOMPARE(storedStyle().value(QStringLiteral("cornerRadius")).toDouble(), 0.35);
        setCornerRadius(0.99);
        QCOMPARE(m_defaults->shapeIndex(), 2);
        setCornerRadius(0.01);
        QCOMPARE(m_defaults->shapeIndex(), 0);
        m_defaults->setShapeIndex(2);
        QCOMPARE(storedStyle().value(QStringLiteral("cornerRadius")).toDouble(), 1.0);
        m_defaults->setShapeIndex(0);
        QCOMPARE(storedStyle().value(QStringLiteral("cornerRadius")).toDouble(), 0.0);
        m_defaults->setShapeIndex(3);
        QCOMPARE(storedStyle().value(QStringLiteral("cornerRadius")).toDouble(), 0.0);
    }

    void blurAfterACustomImageForgetsTheImage() {
        QImage picture(8, 8, QImage::Format_RGB32);
        picture.fill(Qt::darkCyan);
        QByteArray png;
        QBuffer buffer(&png);
        buffer.open(QIODevice::WriteOnly);
        QVERIFY(picture.save(&buffer, "PNG"));
        const QString chosen = m_temporary->writeOutside(QStringLiteral("<b>Beach & sun ☀.png"), png);
        QSignalSpy changes(m_defaults.get(), &RecordingDefaultsViewModel::changed);
        QVERIFY(m_defaults->importBackgroundImage(QUrl::fromLocalFile(chosen)));
        QVERIFY(!changes.isEmpty());
        QCOMPARE(m_defaults->backgroundIndex(), 2);
        QCOMPARE(m_defaults->backgroundImageName(), QStringLiteral("<b>Beach & sun ☀.png"));
        const QString copy = storedStyle().value(QStringLiteral("customImagePath")).toString();
        QVERIFY(QFileInfo::exists(copy));
        QCOMPARE(storedStyle().value(QStringLiteral("backgroundKind")).toString(), QStringLiteral("customImage"));

        m_defaults->setBackgroundIndex(1);
        QCOMPARE(storedStyle().value(QStringLiteral("backgroundKind")).toString(), QStringLiteral("blur"));
        QVERIFY(!storedStyle().contains(QStringLiteral("customImagePath")));
        QVERIFY(m_defaults->backgroundImageName().isEmpty());
    }

    void anImageThatCannotBeCopiedChangesNothing() {
        QVERIFY(
            !m_defaults->importBackgroundImage(QUrl::fromLocalFile(m_home->filePath(QStringLiteral("missing.png")))));
        QCOMPARE(m_defaults->backgroundIndex(), 0);
        QVERIFY(m_defaults->backgroundImageName().isEmpty());
    }

    void theSheetsCameraSwitchAlsoShowsTheCamera() {
        m_defaults->setFacecamVisible(false);
        m_defaults->setIncludeFacecam(true);
        QVERIFY(!storedStyle().value(QStringLiteral("isVisible")).toBool());
        m_defaults->chooseIncludeFacecam(false);
        QCOMPARE(stored().value(QStringLiteral("recordingIncludeFacecam")).toBool(), false);
        QVERIFY(!m_defaults->facecamVisible());
        m_defaults->chooseIncludeFacecam(true);
        QCOMPARE(stored().value(QStringLiteral("recordingIncludeFacecam")).toBool(), true);
        QVERIFY(storedStyle().value(QStringLiteral("isVisible")).toBool());
        QVERIFY(m_defaults->facecamVisible());
    }

    void eachChoiceIsSavedAtOnce() {
        m_defaults->setQualityIndex(1);
        m_defaults->setCaptureMicrophone(false);
        m_defaults->setShowCursor(false);
        m_defaults->setPositionIndex(0);
        m_defaults->setMaxDurationIndex(4);
        QCOMPARE(stored().value(QStringLiteral("recordingQuality")).toString(), QStringLiteral("hd1080"));
        QCOMPARE(stored().value(QStringLiteral("recordingCaptureMicrophone")).toBool(true), false);
        QCOMPARE(stored().value(QStringLiteral("recordingShowCursor")).toBool(true), false);
        QCOMPARE(storedStyle().value(QStringLiteral("corner")).toString(), QStringLiteral("topLeft"));
        QCOMPARE(stored().value(QStringLiteral("recordingMaxDurationMinutes")).toInt(), 45);
        QCOMPARE(m_defaults->qualityIndex(), 1);
        QCOMPARE(m_defaults->positionIndex(), 0);
        QCOMPARE(m_defaults->maxDurationIndex(), 4);
        QCOMPARE(settings().settings().recordingConfiguration().maxDurationSeconds, 2700.0);
    }

    void aLengthOutsideTheChoicesShowsNone() {
        settings().set(&AppSettings::recordingMaxDurationMinutes, qint64(20));
        QCOMPARE(m_defaults->maxDurationIndex(), -1);
        m_defaults->setMaxDurationIndex(7);
        QCOMPARE(stored().value(QStringLiteral("recordingMaxDurationMinutes")).toInt(), 20);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(RecordingDefaultsViewModelTest)
#include "RecordingDefaultsViewModelTest.moc"
