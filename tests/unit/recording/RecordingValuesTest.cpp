#include "core/recording/CaptureDimensions.h"
#include "core/recording/PendingRecordingPreview.h"
#include "core/recording/ScreenRecordingError.h"
#include "core/settings/AppSettings.h"
#include "support/TestMain.h"

#include <QTest>

// The plain values of screen recording: errors and what they say, the configuration kept in the
// settings, how a recording enters the draft, and the size a recording captures at.
class RecordingValuesTest : public QObject {
    Q_OBJECT

private slots:
    void aCancelSaysNothing() {
        QCOMPARE(ScreenRecordingError(ScreenRecordingError::Cancelled{}).errorDescription(), std::nullopt);
    }

    void eachFailureSaysWhatHappened() {
        QCOMPARE(ScreenRecordingError(ScreenRecordingError::PermissionDenied{QStringLiteral("Allow the microphone.")})
                     .errorDescription(),
                 QStringLiteral("Allow the microphone."));
        QCOMPARE(ScreenRecordingError::writerFailed(QStringLiteral("Missing video frame data.")).errorDescription(),
                 QStringLiteral("Recording failed: Missing video frame data."));
        QCOMPARE(
            ScreenRecordingError(ScreenRecordingError::FileTooLarge{QStringLiteral("Over 1 GB.")}).errorDescription(),
            QStringLiteral("Over 1 GB."));
        QCOMPARE(ScreenRecordingError(ScreenRecordingError::NoContentSelected{}).errorDescription(),
                 QStringLiteral("No screen, window, or region was selected."));
        QCOMPARE(ScreenRecordingError(ScreenRecordingError::StagingFailed{}).errorDescription(),
                 QStringLiteral("Could not attach the recording."));
        QCOMPARE(QString::fromUtf8(ScreenRecordingError(ScreenRecordingError::StagingFailed{}).what()),
                 QStringLiteral("Could not attach the recording."));
    }

    void aWriterFailureThatNamesItselfKeepsItsOwnPrefixToo() {
        QCOMPARE(ScreenRecordingError::writerFailed(QStringLiteral("Recording failed (-11800): The disk is full."))
                     .errorDescription(),
                 QStringLiteral("Recording failed: Recording failed (-11800): The disk is full."));
    }

    void fifteenMinutesAreNineHundredSecondsAndBack() {
        AppSettings settings;
        settings.recordingMaxDurationMinutes = 15;
        QCOMPARE(settings.recordingConfiguration().maxDurationSeconds, 900.0);
        settings.recordingMaxDurationMinutes = 0;
        settings.setRecordingConfiguration(RecordingConfiguration{.maxDurationSeconds = 900.0});
        QCOMPARE(settings.recordingMaxDurationMinutes, qint64(15));
        settings.setRecordingConfiguration(RecordingConfiguration{.maxDurationSeconds = 959.9});
        QCOMPARE(settings.recordingMaxDurationMinutes, qint64(15));
    }

    void theConfigurationIsTheSettingsRecordingDefaults() {
        AppSettings settings;
        QCOMPARE(settings.recordingConfiguration(), RecordingConfiguration());
        RecordingConfiguration changed{.quality = RecordingQuality::hd1080,
                                       .captureMicrophone = false,
                                       .showCursor = false,
                                       .includeFacecam = true,
                                       .maxDurationSeconds = 300.0};
        changed.facecamStyle.corner = FacecamCorner::topLeft;
        settings.setRecordingConfiguration(changed);
        QCOMPARE(settings.recordingConfiguration(), changed);
        QCOMPARE(settings.recordingQuality, RecordingQuality::hd1080);
        QVERIFY(!settings.recordingCaptureMicrophone);
        QCOMPARE(settings.recordingFacecamStyle.corner, FacecamCorner::topLeft);
    }

    void theQualitySetsTheBitRate() {
        QCOMPARE(averageBitRate(RecordingQuality::hd720), qint64(3'000'000));
        QCOMPARE(averageBitRate(RecordingQuality::hd1080), qint64(6'000'000));
    }

    void twoReplacingModesAreEqualOnlyWithTheSameTemplate() {
        const QUuid first = QUuid::createUuid();
        const ScreenRecordingStartMode replacing = ScreenRecordingStartModes::ReplaceDraft{first};
        QCOMPARE(replacing, ScreenRecordingStartMode(ScreenRecordingStartModes::ReplaceDraft{first}));
        QVERIFY(replacing != ScreenRecordingStartMode(ScreenRecordingStartModes::ReplaceDraft{QUuid::createUuid()}));
        QVERIFY(replacing != ScreenRecordingStartMode(ScreenRecordingStartModes::ReplaceDraft{}));
        QVERIFY(replacing != ScreenRecordingStartMode(ScreenRecordingStartModes::AppendToDraft{}));
    }

    void aPendingPreviewComparesByItsFields() {
        const PendingRecordingPreview preview{.url = QUrl::fromLocalFile(QStringLiteral("/tmp/a.mov")),
                                              .duration = 12.5,
                                              .mode = ScreenRecordingStartModes::AppendToDraft{}};
        PendingRecordingPreview other = preview;
        QCOMPARE(other, preview);
        other.sizeWarning = QStringLiteral("Large");
        QVERIFY(other != preview);
    }

    void theCaptureSize_data() {
        QTest::addColumn<QSizeF>("content");
        QTest::addColumn<double>("scale");
        QTest::addColumn<QSize>("captured");
        QTest::newRow("a 2560 × 1600 area keeps its shape at 1080 lines")
            << QSizeF(2560, 1600) << 1.0 << QSize(1728, 1080);
        QTest::newRow("a 4K screen is captured at 1080 lines whatever the quality")
            << QSizeF(1920, 1080) << 2.0 << QSize(1920, 1080);
        QTest::newRow("an area of width 0 gives the fallback") << QSizeF(0, 900) << 1.0 << QSize(1280, 720);
        QTest::newRow("below a pixel gives the fallback") << QSizeF(400, 0.4) << 2.0 << QSize(1280, 720);
        QTest::newRow("odd sizes become even") << QSizeF(801, 601) << 1.0 << QSize(800, 600);
        QTest::newRow("a fractional scale is floored, then made even") << QSizeF(1001, 701) << 1.5 << QSize(1500, 1050);
        QTest::newRow("no side falls below 2") << QSizeF(1, 3000) << 1.0 << QSize(2, 1080);
    }

    void theCaptureSize() {
        QFETCH(QSizeF, content);
        QFETCH(double, scale);
        QFETCH(QSize, captured);
        QCOMPARE(captureDimensions(content, scale), captured);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(RecordingValuesTest)
#include "RecordingValuesTest.moc"
