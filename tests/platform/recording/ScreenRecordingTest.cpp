#include "core/recording/CameraOverlayCompositor.h"
#include "core/recording/ScreenRecordingEngine.h"
#include "platform/linux/GStreamerCameraFeed.h"
#include "platform/linux/GStreamerMovieWriterFactory.h"
#include "platform/linux/GStreamerScreenCapture.h"
#include "platform/linux/PulseMicrophoneAccess.h"
#include "support/EnvironmentOverride.h"
#include "support/MovieProbe.h"
#include "support/RunTask.h"
#include "support/TemporaryFolderTesting.h"
#include "support/TestMain.h"

#include <QFileInfo>
#include <QProcess>
#include <QTest>
#include <csignal>
#include <sys/resource.h>

using namespace std::chrono_literals;

namespace {
// The session's screen (desktop-session's Xvfb), whole.
CaptureTarget wholeScreen() {
    CaptureTarget target;
    target.contentRect = QRectF(0, 0, 1280, 800);
    target.surface = X11CaptureWindow{};
    return target;
}

RecordingConfiguration withMicrophone(bool on) {
    RecordingConfiguration configuration;
    configuration.captureMicrophone = on;
    return configuration;
}

// Makes every file this process writes stop at `bytes`: a write past it fails with EFBIG, as on a
// disk that has filled up.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) {
        getrlimit(RLIMIT_FSIZE, &m_previous);
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{bytes, m_previous.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &m_previous); }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit m_previous{};
};
} // namespace

// Real recordings of the session's screen (Xvfb, 1280 × 800) and microphone (a private PulseAudio
// playing a 440 Hz tone) through the engine and GStreamer, each movie read back by
// gst-discoverer-1.0, ffprobe and ffmpeg's loudness meter.
class ScreenRecordingTest : public QObject {
    Q_OBJECT

    GStreamerScreenCapture m_screens{GStreamerScreenCapture::Screens::x11};
    GStreamerMovieWriterFactory m_writers;
    PulseMicrophoneAccess m_microphone;
    std::unique_ptr<TemporaryFolderOverride> m_temporary;

    std::unique_ptr<ScreenRecordingEngine> makeEngine(const RecordingConfiguration& configuration) {
        return std::make_unique<ScreenRecordingEngine>(configuration, ScreenRecordingEngine::Services{
                                                                          .capture = m_screens,
                                                                          .writers = m_writers,
                                                                          .microphone = m_microphone,
                                                                          .makeFacecam = videoTestCamera,
                                                                      });
    }

    // The camera: videotestsrc in place of one, as no loopback camera can be loaded here.
    static std::unique_ptr<FacecamOverlay> videoTestCamera(const FacecamStyle& style) {
        return std::make_unique<CameraOverlayCompositor>(
            style, std::make_unique<GStreamerCameraFeed>(QStringLiteral("videotestsrc is-live=true pattern=ball")),
            PersonSegmenters::unavailable());
    }

    // Records until the engine has counted `seconds`; whether it did in good time.
    static bool recordFor(ScreenRecordingEngine& engine, double seconds) {
        return QTest::qWaitFor([&] { return engine.elapsedSeconds() >= seconds; }, int(seconds * 1000) + 30'000);
    }

    // Runs the task to its end; false, with what went wrong written out, when it failed.
    static bool succeeds(QCoro::Task<> task) {
        try {
            runTask(std::move(task));
            return true;
        } catch (const ScreenRecordingError& error) {
            qWarning("%s", qPrintable(error.errorDescription().value_or(QStringLiteral("cancelled"))));
        }
        return false;
    }

    // The movie of a stop; none, with what went wrong written out, when the stop failed.
    static std::optional<ScreenRecordingEngine::Recording> stopped(ScreenRecordingEngine& engine) {
        try {
            return runTask(engine.stop());
        } catch (const ScreenRecordingError& error) {
            qWarning("%s", qPrintable(error.errorDescription().value_or(QStringLiteral("cancelled"))));
        }
        return std::nullopt;
    }

    static void checkFrames(const MovieFacts& movie, double seconds) {
        // 30 frames a second; a frame the writer couldn't take under load is lost, never queued.
        const int expected = int(seconds * 30);
        QVERIFY2(movie.videoFrames >= expected * 2 / 3 && movie.videoFrames <= expected + 15,
                 qPrintable(QStringLiteral("%1 frames for %2 s\n").arg(movie.videoFrames).arg(seconds) + movie.report));
    }

private slots:
    void init() { m_temporary = std::make_unique<TemporaryFolderOverride>(); }
    void cleanup() { m_temporary.reset(); }

    void tenSecondsWithTheMicrophone() {
        const std::unique_ptr<ScreenRecordingEngine> engine = makeEngine(withMicrophone(true));
        int micConnected = 0;
        engine->onMicConnected = [&] { ++micConnected; };
        runTask(engine->start(wholeScreen()));
        QVERIFY(recordFor(*engine, 10));
        QCOMPARE(micConnected, 1);
        const std::optional<ScreenRecordingEngine::Recording> stop = stopped(*engine);
        QVERIFY(stop);
        const ScreenRecordingEngine::Recording& recording = *stop;

        QVERIFY(recording.microphoneAudioSaved);
        // The time of the last tick, which a loaded machine may bring late.
        QVERIFY2(recording.duration >= 10 && recording.duration < 12, qPrintable(QString::number(recording.duration)));
        const QString path = recording.url.toLocalFile();
        QVERIFY(QFileInfo(path).fileName().startsWith(QStringLiteral("norvanebar-rec-")));
        const MovieFacts movie = probeMovie(path);
        QVERIFY2(movie.playable, qPrintable(movie.report));
        QCOMPARE(movie.videoProfile, QStringLiteral("high"));
        QCOMPARE(QSize(movie.width, movie.height), QSize(1280, 800));
        QVERIFY2(std::abs(movie.seconds - recording.duration) < 2.0, qPrintable(movie.report));
        checkFrames(movie, movie.seconds);
        QVERIFY2(movie.audioCaps.startsWith(QStringLiteral("audio/x-raw")), qPrintable(movie.report));
        const std::optional<double> loudness = meanVolume(path);
        QVERIFY(loudness);
        QVERIFY2(*loudness > -40, qPrintable(QString::number(*loudness)));
    }

    void tenSecondsWithoutTheMicrophoneHaveNoSoundTrack() {
        const std::unique_ptr<ScreenRecordingEngine> engine = makeEngine(withMicrophone(false));
        runTask(engine->start(wholeScreen()));
        QVERIFY(recordFor(*engine, 10));
        const std::optional<ScreenRecordingEngine::Recording> stop = stopped(*engine);
        QVERIFY(stop);
        const ScreenRecordingEngine::Recording& recording = *stop;

        QVERIFY(recording.microphoneAudioSaved);
        const MovieFacts movie = probeMovie(recording.url.toLocalFile());
        QVERIFY2(movie.playable, qPrintable(movie.report));
        QCOMPARE(movie.videoProfile, QStringLiteral("high"));
        QVERIFY2(movie.audioCaps.isEmpty(), qPrintable(movie.report));
        checkFrames(movie, movie.seconds);
        QVERIFY(!meanVolume(recording.url.toLocalFile()));
    }

    void aPauseStaysInTheMovieButNotInTheDuration() {
        const std::unique_ptr<ScreenRecordingEngine> engine = makeEngine(withMicrophone(true));
        runTask(engine->start(wholeScreen()));
        QVERIFY(recordFor(*engine, 4));
        QVERIFY(succeeds(engine->pause()));
        // The pause itself is what is measured: three seconds of the wall clock.
        QTest::qWait(3000);
        QVERIFY(succeeds(engine->resume()));
        QVERIFY(recordFor(*engine, 8));
        const std::optional<ScreenRecordingEngine::Recording> stop = stopped(*engine);
        QVERIFY(stop);
        const ScreenRecordingEngine::Recording& recording = *stop;

        const MovieFacts movie = probeMovie(recording.url.toLocalFile());
        QVERIFY2(movie.playable, qPrintable(movie.report));
        const double gap = movie.seconds - recording.duration;
        QVERIFY2(gap > 2.5 && gap < 5.0,
                 qPrintable(QStringLiteral("movie %1 s, duration %2 s").arg(movie.seconds).arg(recording.duration)));
        // Only the captured time has frames.
        checkFrames(movie, recording.duration);
    }

    void theFacecamRunsBesideTheRecording() {
        RecordingConfiguration configuration = withMicrophone(true);
        configuration.includeFacecam = true;
        configuration.facecamStyle.backgroundKind = FacecamBackgroundKind::blur;
        const std::unique_ptr<ScreenRecordingEngine> engine = makeEngine(configuration);
        runTask(engine->setFacecamEnabled(true));
        runTask(engine->start(wholeScreen()));
        QVERIFY(recordFor(*engine, 10));
        const std::optional<ScreenRecordingEngine::Recording> stop = stopped(*engine);
        QVERIFY(stop);
        const ScreenRecordingEngine::Recording& recording = *stop;

        const MovieFacts movie = probeMovie(recording.url.toLocalFile());
        QVERIFY2(movie.playable, qPrintable(movie.report));
        QCOMPARE(movie.videoProfile, QStringLiteral("high"));
        QVERIFY2(!movie.audioCaps.isEmpty(), qPrintable(movie.report));
        // Asked for an overlay each frame, the camera keeps up with the screen.
        checkFrames(movie, movie.seconds);
    }

    void aWriterThatFailsWhileRecordingFailsTheStop() {
        // Snow on the screen, which no encoder can make small.
        QProcess snow;
        snow.start(QStringLiteral("gst-launch-1.0"),
                   {QStringLiteral("-q"), QStringLiteral("videotestsrc"), QStringLiteral("pattern=snow"),
                    QStringLiteral("!"), QStringLiteral("video/x-raw,width=1280,height=800"), QStringLiteral("!"),
                    QStringLiteral("ximagesink")});
        QVERIFY(snow.waitForStarted());
        const std::unique_ptr<ScreenRecordingEngine> engine = makeEngine(withMicrophone(false));
        std::optional<ScreenRecordingError> failure;
        {
            // The disk fills up after half a megabyte of movie.
            const FileSizeLimit limit(512 * 1024);
            runTask(engine->start(wholeScreen()));
            QVERIFY(recordFor(*engine, 4));
            try {
                runTask(engine->stop());
            } catch (const ScreenRecordingError& error) {
                failure = error;
            }
        }
        snow.kill();
        snow.waitForFinished();
        QVERIFY(failure);
        const QString description = failure->errorDescription().value_or(QString());
        QVERIFY2(description.startsWith(QStringLiteral("Recording failed: Recording failed (")),
                 qPrintable(description));
    }

    void cancelLeavesNoFileBehind() {
        const std::unique_ptr<ScreenRecordingEngine> engine = makeEngine(withMicrophone(true));
        runTask(engine->start(wholeScreen()));
        QVERIFY(recordFor(*engine, 2));
        const QString path = *engine->outputPath();
        QTRY_VERIFY(QFileInfo::exists(path));
        runTask(engine->cancel());
        QVERIFY(!QFileInfo::exists(path));
        QVERIFY(m_temporary->fileNames().isEmpty());
    }

    void withoutASoundServerARecordingWithTheMicrophoneDoesNotStart() {
        const EnvironmentOverride nowhere("PULSE_SERVER", "unix:/nonexistent/pulse/native");
        const std::unique_ptr<ScreenRecordingEngine> engine = makeEngine(withMicrophone(true));
        std::optional<ScreenRecordingError> failure;
        try {
            runTask(engine->start(wholeScreen()));
        } catch (const ScreenRecordingError& error) {
            failure = error;
        }
        QVERIFY(failure);
        QVERIFY(failure->is<ScreenRecordingError::PermissionDenied>());
        QVERIFY(!engine->isRecording());
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(ScreenRecordingTest)
#include "ScreenRecordingTest.moc"
