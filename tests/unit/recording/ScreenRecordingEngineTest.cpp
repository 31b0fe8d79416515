#include "core/recording/ScreenRecordingEngine.h"
#include "support/RunTask.h"
#include "support/ScriptedRecording.h"
#include "support/TemporaryFolderTesting.h"
#include "support/TestMain.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTest>
#include <QTimeZone>

using namespace ScriptedRecording;
using namespace std::chrono_literals;

namespace {
const QString noVideoFrames =
    QStringLiteral("No video frames were captured. Check that screen sharing is allowed in the desktop's settings.");
const QString noVideoData = QStringLiteral("No video data was captured. Try recording for at least a few seconds.");

RecordingConfiguration withMicrophone(bool on) {
    RecordingConfiguration configuration;
    configuration.captureMicrophone = on;
    return configuration;
}

CaptureTarget area(QSizeF size, double scale = 1.0) {
    CaptureTarget target;
    target.contentRect = QRectF(QPointF(0, 0), size);
    target.pointPixelScale = scale;
    return target;
}

template <typename T> std::optional<ScreenRecordingError> failureOf(QCoro::Task<T> task) {
    try {
        runTask(std::move(task));
    } catch (const ScreenRecordingError& error) {
        return error;
    }
    return std::nullopt;
}

QColor colourAt(const QImage& image, int x, int y) {
    return image.pixelColor(x, y);
}
} // namespace

// The engine between a scripted capture stream and a scripted movie writer, on the test's own
// thread and clock: what reaches the movie, frame by frame and sample by sample, its times, pauses,
// the warnings and the end of a recording.
class ScreenRecordingEngineTest : public QObject {
    Q_OBJECT

    std::unique_ptr<TemporaryFolderOverride> m_temporary;
    std::unique_ptr<Rig> m_rig;
    std::unique_ptr<ScreenRecordingEngine> m_engine;
    QStringList m_sizeWarnings;
    QList<double> m_elapsed;
    int m_maxDurationReached = 0;
    int m_micSamplesReceived = 0;
    int m_micConnected = 0;

    void makeEngine(const RecordingConfiguration& configuration) {
        m_engine = std::make_unique<ScreenRecordingEngine>(configuration, m_rig->engineServices());
        m_engine->onSizeWarning = [this](const QString& text) { m_sizeWarnings.append(text); };
        m_engine->onElapsedUpdate = [this](double seconds, qint64) { m_elapsed.append(seconds); };
        m_engine->onMaxDurationReached = [this] { ++m_maxDurationReached; };
        m_engine->onMicSamplesReceived = [this] { ++m_micSamplesReceived; };
        m_engine->onMicConnected = [this] { ++m_micConnected; };
    }

    void startRecording(const RecordingConfiguration& configuration, CaptureTarget target = area({64, 48})) {
        makeEngine(configuration);
        runTask(m_engine->start(std::move(target)));
    }

    StreamRecord& stream() const { return *m_rig->capture.streams.last(); }
    WriterRecord* writer() const {
        return m_rig->writers.writers.isEmpty() ? nullptr : m_rig->writers.writers.last().get();
    }
    FacecamRecord& facecam() const { return *m_rig->facecams.made.first(); }

    // Lets the posted work run: the writer queue's, then what it hands back.
    static void drain() {
        for (int round = 0; round < 4; ++round) {
            QCoreApplication::processEvents();
        }
    }
    void deliver(VideoFrame frame) {
        stream().deliver(std::move(frame));
        drain();
    }
    void deliver(AudioBuffer buffer) {
        stream().deliver(std::move(buffer));
        drain();
    }
    void advance(double seconds) { m_rig->advance(seconds); }
    // One half-second tick of the elapsed timer, the clock moved on first.
    void tick(double seconds = 0.5) {
        advance(seconds);
        m_rig->waits.release(500ms);
    }
    // The presentation times the movie received, in seconds.
    static QList<double> times(const auto& samples) {
        QList<double> seconds;
        for (const auto& sample : samples) {
            seconds.append(double(*sample.timing.presentation) / 1e9);
        }
        return seconds;
    }

private slots:
    void init() {
        m_temporary = std::make_unique<TemporaryFolderOverride>();
        m_rig = std::make_unique<Rig>();
        m_sizeWarnings.clear();
        m_elapsed.clear();
        m_maxDurationReached = m_micSamplesReceived = m_micConnected = 0;
    }

    void cleanup() {
        m_engine.reset();
        m_rig->waits.releaseAll();
        drain();
        // Each test's temporary folder goes before the next one's comes, so TMPDIR is put back in order.
        m_temporary.reset();
    }

    // --- start ---------------------------------------------------------------------------------

    void startCapturesAtThirtyFramesWithTheCursorAsConfigured() {
        RecordingConfiguration configuration = withMicrophone(true);
        configuration.showCursor = false;
        startRecording(configuration, area({1280, 800}, 2.0));
        QCOMPARE(stream().configuration.size, QSize(1728, 1080));
        QCOMPARE(stream().configuration.framesPerSecond, 30);
        QCOMPARE(stream().configuration.showsCursor, false);
        QCOMPARE(stream().configuration.captureMicrophone, true);
        QVERIFY(bool(stream().microphone));
        QCOMPARE(stream().starts, 1);
        QVERIFY(m_engine->isRecording());
        QCOMPARE(m_rig->waits.held(), (QList<std::chrono::milliseconds>{900s, 500ms}));
    }

    void theMovieIsANewFileInTheTemporaryFolder() {
        startRecording(withMicrophone(false));
        const QFileInfo movie(*m_engine->outputPath());
        QCOMPARE(movie.absolutePath(), QFileInfo(QDir::tempPath()).absoluteFilePath());
        QVERIFY2(QRegularExpression(QStringLiteral("^norvanebar-rec-[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}\\.mov$"))
                     .match(movie.fileName())
                     .hasMatch(),
                 qPrintable(movie.fileName()));
    }

    void aSecondStartWhileRecordingDoesNothing() {
        startRecording(withMicrophone(false));
        runTask(m_engine->start(area({64, 48})));
        QCOMPARE(m_rig->capture.streams.size(), 1);
        QCOMPARE(stream().starts, 1);
    }

    void hd720OverA4kScreenStillCaptures1080Lines() {
        startRecording(withMicrophone(false), area({3840, 2160}));
        QCOMPARE(stream().configuration.size, QSize(1920, 1080));
        deliver(frame(1.0, {1920, 1080}));
        QCOMPARE(writer()->video, (VideoSettings{{1920, 1080}, 3'000'000}));
    }

    void a2560By1600AreaIsCapturedAt1728By1080() {
        startRecording(withMicrophone(false), area({2560, 1600}));
        QCOMPARE(stream().configuration.size, QSize(1728, 1080));
    }

    void anAreaOfWidthZeroIsCapturedAt1280By720() {
        startRecording(withMicrophone(false), area({0, 800}));
        QCOMPARE(stream().configuration.size, QSize(1280, 720));
    }

    void aRefusedMicrophoneStopsTheStartAndSaysWhereToLook() {
        m_rig->microphone.status = MicrophoneAccess::Status::denied;
        makeEngine(withMicrophone(true));
        const std::optional<ScreenRecordingError> failure = failureOf(m_engine->start(area({64, 48})));
        QVERIFY(failure);
        QCOMPARE(failure->errorDescription(),
                 QStringLiteral("Microphone access is required for voice in screen recordings. Check that a "
                                "microphone is connected and not muted in the sound settings."));
        QVERIFY(m_rig->capture.streams.isEmpty());
        QVERIFY(!m_engine->isRecording());
    }

    void anUndecidedMicrophoneIsAskedAndItsAnswerHolds() {
        m_rig->microphone.status = MicrophoneAccess::Status::notDetermined;
        m_rig->microphone.allowsWhenAsked = false;
        makeEngine(withMicrophone(true));
        QVERIFY(failureOf(m_engine->start(area({64, 48}))));
        QCOMPARE(m_rig->microphone.requests, 1);

        m_rig->microphone.allowsWhenAsked = true;
        runTask(m_engine->start(area({64, 48})));
        QCOMPARE(m_rig->microphone.requests, 2);
        QVERIFY(m_engine->isRecording());
    }

    void withoutTheMicrophoneItsAccessIsNeverAsked() {
        m_rig->microphone.status = MicrophoneAccess::Status::denied;
        startRecording(withMicrophone(false));
        QVERIFY(m_engine->isRecording());
        QVERIFY(!bool(stream().microphone));
    }

    void aScreenThatMayNotBeCapturedStopsTheStart() {
        m_rig->capture.accessFails = ScreenRecordingError::writerFailed(QStringLiteral("No display."));
        makeEngine(withMicrophone(false));
        QCOMPARE(failureOf(m_engine->start(area({64, 48}))), m_rig->capture.accessFails);
        QVERIFY(m_rig->capture.streams.isEmpty());
    }

    void aCaptureThatFailsToStartLeavesTheEngineToBeCancelled() {
        m_rig->capture.streamsFailToStart = ScreenRecordingError::writerFailed(QStringLiteral("The screen went away."));
        makeEngine(withMicrophone(false));
        QCOMPARE(failureOf(m_engine->start(area({64, 48}))), m_rig->capture.streamsFailToStart);
        QVERIFY(m_engine->isRecording());
        QVERIFY(m_rig->waits.held().isEmpty());
        runTask(m_engine->cancel());
        QVERIFY(!m_engine->isRecording());
        QVERIFY(m_temporary->fileNames().isEmpty());
    }

    // --- frames --------------------------------------------------------------------------------

    void withoutMicrophoneTheFirstFrameStartsTheMovieAtZero() {
        startRecording(withMicrophone(false));
        deliver(frame(5.0));
        deliver(frame(5.0 + 1.0 / 30));
        QVERIFY(writer());
        QCOMPARE(writer()->sessionStarts, QList<qint64>{0});
        QCOMPARE(times(writer()->frames),
                 (QList<double>{0.0, double(nanoseconds(5.0 + 1.0 / 30) - nanoseconds(5.0)) / 1e9}));
    }

    void theWriterTakesTheFramesSizeMadeEven() {
        startRecording(withMicrophone(false));
        deliver(frame(1.0, {641, 481}));
        QCOMPARE(writer()->video->size, QSize(640, 480));
    }

    void aFrameWithAStatusOtherThanZeroNeitherMakesTheWriterNorStartsTheMovie() {
        startRecording(withMicrophone(false));
        VideoFrame incomplete = frame(1.0);
        incomplete.status = QVariant(1);
        deliver(incomplete);
        QVERIFY(!writer());

        VideoFrame undecided = frame(2.0);
        undecided.status = QVariant(QStringLiteral("idle"));
        deliver(undecided);
        QVERIFY(writer());
        QCOMPARE(writer()->sessionStarts.size(), 1);
        QCOMPARE(writer()->frames.size(), 1);
    }

    void aFrameWithoutPixelsMakesNoWriterAndTheNextTriesAgain() {
        startRecording(withMicrophone(false));
        VideoFrame empty = frame(1.0);
        empty.pixels = QImage();
        deliver(empty);
        QVERIFY(!writer());
        deliver(frame(2.0));
        QVERIFY(writer());
    }

    void aFrameWhoseDataIsNotReadyIsDroppedOnArrival() {
        startRecording(withMicrophone(false));
        VideoFrame notReady = frame(1.0);
        notReady.dataReady = false;
        deliver(notReady);
        QVERIFY(!writer());
    }

    void aWriterThatIsNotReadyLosesTheFrame() {
        startRecording(withMicrophone(false));
        m_rig->writers.prepare = [](WriterRecord& writer) { writer.videoReady = false; };
        deliver(frame(1.0));
        QCOMPARE(writer()->sessionStarts.size(), 1);
        QVERIFY(writer()->frames.isEmpty());
        writer()->videoReady = true;
        deliver(frame(2.0));
        QCOMPARE(times(writer()->frames), QList<double>{1.0});
    }

    void framesComingFasterThanTheWriterTakesThemAreLostOnArrival() {
        startRecording(withMicrophone(false));
        // Three frames before the writer's thread runs: two wait for it, the third is lost.
        stream().deliver(frame(1.0));
        stream().deliver(frame(1.1));
        stream().deliver(frame(1.2));
        drain();
        QCOMPARE(times(writer()->frames), (QList<double>{0.0, double(nanoseconds(1.1) - nanoseconds(1.0)) / 1e9}));
        deliver(frame(1.3));
        QCOMPARE(writer()->frames.size(), 3);
    }

    // --- the microphone's start-up --------------------------------------------------------------

    void theFirstFrameWaitsForTheMicrophoneAndStartsTheMovie() {
        startRecording(withMicrophone(true));
        deliver(frame(3.0));
        deliver(frame(3.1));
        QVERIFY(writer());
        QVERIFY(writer()->sessionStarts.isEmpty());
        QCOMPARE(m_micSamplesReceived, 0);

        deliver(microphone(3.05));
        QCOMPARE(writer()->audio->sampleRate, 48000);
        QCOMPARE(writer()->sessionStarts, QList<qint64>{0});
        // The parked frame opens the movie; the one after it was lost in the wait.
        QCOMPARE(times(writer()->frames), QList<double>{0.0});
        QCOMPARE(writer()->samples.size(), 1);
        QCOMPARE(*writer()->samples.first().timing.presentation, nanoseconds(3.05) - nanoseconds(3.0));
        QCOMPARE(m_micSamplesReceived, 1);
        QCOMPARE(m_micConnected, 1);

        deliver(frame(3.2));
        deliver(microphone(3.06));
        QCOMPARE(writer()->frames.size(), 2);
        QCOMPARE(writer()->samples.size(), 2);
        QCOMPARE(m_micSamplesReceived, 1);
        QCOMPARE(m_micConnected, 1);
    }

    void microphoneSoundBeforeTheFirstFrameIsLostAndSaysNothing() {
        startRecording(withMicrophone(true));
        deliver(microphone(1.0));
        QVERIFY(!writer());
        QCOMPARE(m_micSamplesReceived, 0);
        deliver(frame(1.1));
        QVERIFY(writer()->sessionStarts.isEmpty());
    }

    void soundOlderThanTheParkedFrameIsHandedOnBeforeZero() {
        startRecording(withMicrophone(true));
        deliver(frame(2.0));
        deliver(microphone(1.99));
        QCOMPARE(writer()->samples.size(), 1);
        QVERIFY(*writer()->samples.first().timing.presentation < 0);
    }

    void withAMicrophoneThatNeverDeliversNoMovieStartsAndStopFails() {
        startRecording(withMicrophone(true));
        for (int i = 0; i < 10; ++i) {
            deliver(frame(1.0 + i / 30.0));
        }
        QVERIFY(writer()->sessionStarts.isEmpty());
        QVERIFY(writer()->frames.isEmpty());
        const std::optional<ScreenRecordingError> failure = failureOf(m_engine->stop());
        QCOMPARE(failure, ScreenRecordingError::writerFailed(noVideoFrames));
        QCOMPARE(failure->errorDescription(), QStringLiteral("Recording failed: ") + noVideoFrames);
        QVERIFY(!writer()->finished);
        QVERIFY(writer()->cancelled);
    }

    void aMicrophoneSampleWithoutFormatIsDroppedAndTheNextTriesAgain() {
        startRecording(withMicrophone(true));
        deliver(frame(1.0));
        AudioBuffer unknown = microphone(1.01);
        unknown.format.reset();
        deliver(unknown);
        QVERIFY(!writer()->audio);
        QVERIFY(writer()->sessionStarts.isEmpty());
        deliver(microphone(1.02));
        QVERIFY(writer()->audio);
        QCOMPARE(writer()->sessionStarts.size(), 1);
    }

    // --- refused sound --------------------------------------------------------------------------

    void theThirtiethRefusedSampleInARowReportsOnceAndNeverAgain() {
        startRecording(withMicrophone(true));
        deliver(frame(1.0));
        deliver(microphone(1.0));
        writer()->refuseSamples = 29;
        for (int i = 1; i <= 29; ++i) {
            deliver(microphone(1.0 + i / 100.0));
        }
        QVERIFY(m_sizeWarnings.isEmpty());
        writer()->refuseSamples = 1;
        deliver(microphone(1.30));
        QCOMPARE(m_sizeWarnings,
                 QStringList{QStringLiteral("Microphone audio could not be written to the recording file.")});

        // A success, then thirty more refusals: the report was made once for the recording.
        deliver(microphone(1.31));
        writer()->refuseSamples = 30;
        for (int i = 0; i < 30; ++i) {
            deliver(microphone(1.32 + i / 100.0));
        }
        QCOMPARE(m_sizeWarnings.size(), 1);
    }

    void aSuccessBetweenRefusalsStartsTheCountAgain() {
        startRecording(withMicrophone(true));
        deliver(frame(1.0));
        deliver(microphone(1.0));
        writer()->refuseSamples = 20;
        for (int i = 1; i <= 20; ++i) {
            deliver(microphone(1.0 + i / 100.0));
        }
        deliver(microphone(1.21));
        writer()->refuseSamples = 20;
        for (int i = 0; i < 20; ++i) {
            deliver(microphone(1.22 + i / 100.0));
        }
        QVERIFY(m_sizeWarnings.isEmpty());
    }

    // --- a writer that fails --------------------------------------------------------------------

    void aFailedWriterStopsTheRecordingsSamplesAndStopSaysWhy() {
        startRecording(withMicrophone(false));
        deliver(frame(1.0));
        writer()->fail({28, QStringLiteral("No space left on device")});
        deliver(frame(1.1));
        deliver(frame(1.2));
        QCOMPARE(writer()->frames.size(), 1);
        const std::optional<ScreenRecordingError> failure = failureOf(m_engine->stop());
        QCOMPARE(failure,
                 ScreenRecordingError::writerFailed(QStringLiteral("Recording failed (28): No space left on device")));
        QCOMPARE(failure->errorDescription(),
                 QStringLiteral("Recording failed: Recording failed (28): No space left on device"));
    }

    void aWriterThatEndsWithoutErrorOrFileFailsUnknown() {
        startRecording(withMicrophone(false));
        deliver(frame(1.0));
        writer()->losesTheFile = true;
        const std::optional<ScreenRecordingError> failure = failureOf(m_engine->stop());
        QCOMPARE(failure, ScreenRecordingError::writerFailed(QStringLiteral("Recording failed: Unknown error")));
        QCOMPARE(failure->errorDescription(), QStringLiteral("Recording failed: Recording failed: Unknown error"));
    }

    // --- stop ----------------------------------------------------------------------------------

    void stopBeforeTheFirstFrameFails() {
        startRecording(withMicrophone(false));
        QCOMPARE(failureOf(m_engine->stop()), ScreenRecordingError::writerFailed(noVideoData));
        QCOMPARE(stream().stops, 1);
    }

    void stopEndsTheMovieAndHandsItOver() {
        startRecording(withMicrophone(true));
        deliver(frame(1.0));
        deliver(microphone(1.0));
        tick();
        tick();
        const ScreenRecordingEngine::Recording recording = runTask(m_engine->stop());
        QCOMPARE(recording.url, QUrl::fromLocalFile(writer()->path));
        QCOMPARE(recording.duration, 1.0);
        QCOMPARE(recording.microphoneAudioSaved, true);
        QVERIFY(QFileInfo::exists(writer()->path));
        QVERIFY(writer()->videoFinished);
        QVERIFY(writer()->audioFinished);
        QVERIFY(!m_engine->isRecording());
        QCOMPARE(m_elapsed.size(), 2);
    }

    void aMicrophoneWhoseEverySampleWasRefusedSavesNoSound() {
        startRecording(withMicrophone(true));
        deliver(frame(1.0));
        writer()->refuseSamples = 1000;
        deliver(microphone(1.0));
        deliver(microphone(1.01));
        const ScreenRecordingEngine::Recording recording = runTask(m_engine->stop());
        QCOMPARE(recording.microphoneAudioSaved, false);
        QVERIFY(!writer()->audioFinished);
    }

    void withoutMicrophoneTheSoundCountsAsSaved() {
        startRecording(withMicrophone(false));
        deliver(frame(1.0));
        QCOMPARE(runTask(m_engine->stop()).microphoneAudioSaved, true);
        QVERIFY(!writer()->audio);
    }

    void stopOfAnEngineThatIsNotRecordingIsACancel() {
        makeEngine(withMicrophone(false));
        const std::optional<ScreenRecordingError> failure = failureOf(m_engine->stop());
        QCOMPARE(failure, ScreenRecordingError(ScreenRecordingError::Cancelled{}));
        QCOMPARE(failure->errorDescription(), std::nullopt);
    }

    void stopQuietensEveryCallback() {
        startRecording(withMicrophone(false));
        deliver(frame(1.0));
        runTask(m_engine->stop());
        QVERIFY(!m_engine->onElapsedUpdate);
        QVERIFY(!m_engine->onSizeWarning);
        QVERIFY(!m_engine->onMaxDurationReached);
        QVERIFY(!m_engine->onMicSamplesReceived);
        QVERIFY(!m_engine->onMicConnected);
    }

    void pauseThenStopFailsWhenTheStoppedStreamAnswersWithAnError() {
        startRecording(withMicrophone(false));
        deliver(frame(1.0));
        runTask(m_engine->pause());
        stream().stopOfStoppedStreamFails =
            ScreenRecordingError::writerFailed(QStringLiteral("The stream has stopped."));
        QCOMPARE(failureOf(m_engine->stop()), stream().stopOfStoppedStreamFails);
        QVERIFY(!writer()->videoFinished);
        QVERIFY(!writer()->finished);

        // The recording is then thrown away.
        runTask(m_engine->cancel());
        QVERIFY(writer()->cancelled);
        QVERIFY(m_temporary->fileNames().isEmpty());
    }

    // --- cancel --------------------------------------------------------------------------------

    void cancelLeavesNoFileBehind() {
        startRecording(withMicrophone(false));
        deliver(frame(1.0));
        const QString path = *m_engine->outputPath();
        QFile partial(path);
        QVERIFY(partial.open(QIODevice::WriteOnly));
        partial.write("half a movie");
        partial.close();
        runTask(m_engine->cancel());
        QVERIFY(writer()->cancelled);
        QVERIFY(!QFileInfo::exists(path));
        QVERIFY(!m_engine->outputPath());
        QVERIFY(!m_engine->isRecording());
        QCOMPARE(stream().stops, 1);
        QVERIFY(m_temporary->fileNames().isEmpty());
    }

    void cancelIgnoresAStreamThatFailsToStop() {
        startRecording(withMicrophone(false));
        runTask(m_engine->pause());
        stream().stopOfStoppedStreamFails =
            ScreenRecordingError::writerFailed(QStringLiteral("The stream has stopped."));
        runTask(m_engine->cancel());
        QVERIFY(!m_engine->isRecording());
    }

    // --- time, pauses and the estimate ---------------------------------------------------------

    void theTimerTellsElapsedTimeAndEstimateEveryHalfSecond() {
        startRecording(withMicrophone(true));
        qint64 bytes = 0;
        m_engine->onElapsedUpdate = [&](double seconds, qint64 estimate) {
            m_elapsed.append(seconds);
            bytes = estimate;
        };
        tick();
        tick();
        QCOMPARE(m_elapsed, (QList<double>{0.5, 1.0}));
        QCOMPARE(bytes, 391'000);
        QCOMPARE(m_engine->estimatedFileBytes(), 391'000);
    }

    void whilePausedTimeAndEstimateStandStill() {
        startRecording(withMicrophone(false));
        tick();
        runTask(m_engine->pause());
        QVERIFY(!stream().capturing);
        tick(5);
        tick(5);
        QCOMPARE(m_elapsed, QList<double>{0.5});
        runTask(m_engine->resume());
        QVERIFY(stream().capturing);
        tick();
        QCOMPARE(m_elapsed, (QList<double>{0.5, 1.0}));
    }

    void aMovieWithTenSecondsOfPauseHasADurationTenSecondsShorterThanItsLength() {
        startRecording(withMicrophone(false));
        deliver(frame(100.0));
        for (int i = 0; i < 10; ++i) {
            tick();
        }
        deliver(frame(105.0));
        runTask(m_engine->pause());
        advance(10);
        runTask(m_engine->resume());
        // Capture goes on where the clock is now: the gap stays in the movie.
        deliver(frame(115.0));
        for (int i = 0; i < 10; ++i) {
            tick();
        }
        deliver(frame(120.0));
        const ScreenRecordingEngine::Recording recording = runTask(m_engine->stop());
        const double movieLength = times(writer()->frames).last();
        QCOMPARE(movieLength, 20.0);
        QCOMPARE(recording.duration, 10.0);
    }

    void theSizeWarningStartsAt699_05SecondsWithHd1080AndNoMicrophone() {
        RecordingConfiguration configuration = withMicrophone(false);
        configuration.quality = RecordingQuality::hd1080;
        startRecording(configuration);
        tick(699.050);
        QVERIFY(m_sizeWarnings.isEmpty());
        tick(0.001);
        QCOMPARE(m_sizeWarnings,
                 QStringList{QStringLiteral("Recording is approaching Norvane's 1 GB limit (524.3 MB estimated).")});
        // It says so again at every tick, with the new figure.
        tick(10);
        QCOMPARE(m_sizeWarnings.size(), 2);
        QCOMPARE(m_sizeWarnings.last(),
                 QStringLiteral("Recording is approaching Norvane's 1 GB limit (531.8 MB estimated)."));
    }

    void theSizeWarningStartsAt1340_89SecondsWithHd720AndMicrophone() {
        startRecording(withMicrophone(true));
        tick(1340.890);
        QVERIFY(m_sizeWarnings.isEmpty());
        tick(0.001);
        QCOMPARE(m_sizeWarnings.size(), 1);
    }

    void theMaximumDurationIsWallClockTimeThatAPauseDoesNotExtend() {
        RecordingConfiguration configuration = withMicrophone(false);
        configuration.maxDurationSeconds = 60;
        startRecording(configuration);
        runTask(m_engine->pause());
        runTask(m_engine->resume());
        QCOMPARE(m_rig->waits.held().count(60s), 1);
        m_rig->waits.release(60s);
        QCOMPARE(m_maxDurationReached, 1);
    }

    void stopEndsBothTimers() {
        startRecording(withMicrophone(false));
        deliver(frame(1.0));
        runTask(m_engine->stop());
        m_rig->waits.release(900s);
        m_rig->waits.release(500ms);
        QCOMPARE(m_maxDurationReached, 0);
        QVERIFY(m_elapsed.isEmpty());
        QVERIFY(m_rig->waits.held().isEmpty());
    }

    // --- the camera overlay --------------------------------------------------------------------

    void theOverlaySitsInItsCorner16PixelsFromTheEdges_data() {
        QTest::addColumn<FacecamCorner>("corner");
        QTest::addColumn<QPoint>("inside");
        QTest::addColumn<QPoint>("outside");
        // A 200 × 100 frame; an overlay of 0.2 × 100 = 20 pixels.
        QTest::newRow("top left") << FacecamCorner::topLeft << QPoint(16, 16) << QPoint(15, 15);
        QTest::newRow("top right") << FacecamCorner::topRight << QPoint(164, 16) << QPoint(163, 16);
        QTest::newRow("bottom left") << FacecamCorner::bottomLeft << QPoint(16, 83) << QPoint(15, 84);
        QTest::newRow("bottom right") << FacecamCorner::bottomRight << QPoint(183, 83) << QPoint(184, 84);
    }

    void theOverlaySitsInItsCorner16PixelsFromTheEdges() {
        QFETCH(FacecamCorner, corner);
        QFETCH(QPoint, inside);
        QFETCH(QPoint, outside);
        RecordingConfiguration configuration = withMicrophone(false);
        configuration.facecamStyle.corner = corner;
        configuration.facecamStyle.sizeFraction = 0.2;
        makeEngine(configuration);
        runTask(m_engine->setFacecamEnabled(true));
        runTask(m_engine->start(area({200, 100})));
        deliver(frame(1.0, {200, 100}, Qt::blue));
        const QImage written = writer()->frames.first().pixels;
        QCOMPARE(colourAt(written, inside.x(), inside.y()), QColor(Qt::red));
        QCOMPARE(colourAt(written, outside.x(), outside.y()), QColor(Qt::blue));
        QCOMPARE(colourAt(written, 100, 50), QColor(Qt::blue));
    }

    void aHiddenOrStoppedOverlayLeavesTheFrameAsCaptured() {
        RecordingConfiguration configuration = withMicrophone(false);
        configuration.facecamStyle.isVisible = false;
        makeEngine(configuration);
        runTask(m_engine->setFacecamEnabled(true));
        runTask(m_engine->start(area({200, 100})));
        const VideoFrame captured = frame(1.0, {200, 100}, Qt::blue);
        deliver(captured);
        QCOMPARE(writer()->frames.first().pixels.constBits(), captured.pixels.constBits());

        configuration.facecamStyle.isVisible = true;
        m_engine->updateConfiguration(configuration);
        drain();
        QCOMPARE(facecam().style.isVisible, true);
        runTask(m_engine->setFacecamEnabled(false));
        QCOMPARE(facecam().running, false);
        deliver(frame(1.1, {200, 100}, Qt::blue));
        QCOMPARE(colourAt(writer()->frames.last().pixels, 183, 83), QColor(Qt::blue));
    }

    void enablingTheFacecamAgainKeepsItsCompositorWithTheNewStyle() {
        makeEngine(withMicrophone(false));
        runTask(m_engine->setFacecamEnabled(true));
        RecordingConfiguration configuration = withMicrophone(false);
        configuration.facecamStyle.corner = FacecamCorner::topLeft;
        m_engine->updateConfiguration(configuration);
        drain();
        runTask(m_engine->setFacecamEnabled(true));
        QCOMPARE(m_rig->facecams.made.size(), 1);
        QCOMPARE(facecam().style.corner, FacecamCorner::topLeft);
    }

    void aCameraThatFailsToStartFailsTheToggleAndFramesGoOnPlain() {
        m_rig->facecams.startFails = ScreenRecordingError::writerFailed(QStringLiteral("No camera found."));
        makeEngine(withMicrophone(false));
        QCOMPARE(failureOf(m_engine->setFacecamEnabled(true)), m_rig->facecams.startFails);
        runTask(m_engine->start(area({200, 100})));
        deliver(frame(1.0, {200, 100}, Qt::blue));
        QCOMPARE(colourAt(writer()->frames.first().pixels, 183, 83), QColor(Qt::blue));
    }

    void stopStopsTheFacecam() {
        makeEngine(withMicrophone(false));
        runTask(m_engine->setFacecamEnabled(true));
        runTask(m_engine->start(area({64, 48})));
        deliver(frame(1.0));
        runTask(m_engine->stop());
        QVERIFY(!facecam().running);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(ScreenRecordingEngineTest)
#include "ScreenRecordingEngineTest.moc"
