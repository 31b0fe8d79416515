#include "platform/linux/GStreamerMovieWriterFactory.h"
#include "platform/linux/GStreamerScreenCapture.h"
#include "support/CaptureTesting.h"
#include "support/MovieProbe.h"
#include "support/RunTask.h"
#include "support/TestMain.h"

#include <QTemporaryDir>
#include <QTest>
#include <atomic>
#include <mutex>

namespace {
const CaptureTarget wholeScreen{QRectF(), 1.0, CaptureTarget::X11Window{}};

CaptureConfiguration withMicrophone(QSize size) {
    CaptureConfiguration configuration;
    configuration.size = size;
    configuration.captureMicrophone = true;
    return configuration;
}

std::unique_ptr<CaptureStream> makeStream(ScreenCaptureService& capture, QSize size) {
    return capture.makeStream(wholeScreen, withMicrophone(size));
}

// The left channel of runs of interleaved signed 16-bit stereo samples, one after the other.
std::vector<qint16> leftChannel(const std::vector<CaptureLog::Sound>& sounds) {
    std::vector<qint16> samples;
    for (const CaptureLog::Sound& sound : sounds) {
        const auto* data = reinterpret_cast<const qint16*>(sound.data.constData());
        for (qsizetype i = 0; i + 1 < sound.data.size() / qsizetype(sizeof(qint16)); i += 2) {
            samples.push_back(data[i]);
        }
    }
    return samples;
}

// Writes what a capture stream delivers into a movie, as the recording engine does in short: the
// first frame, once the microphone's format is known, starts the movie; frames and sound go in
// while the writer takes them. The two streaming threads take turns.
class MovieRecorder {
public:
    explicit MovieRecorder(MovieWriter& writer)
        : m_writer(writer) {}

    void onFrame(const VideoFrame& frame) {
        const std::lock_guard lock(m_mutex);
        if (!m_started) {
            if (!m_format || !m_writer.addVideoInput({frame.pixels.size(), 3'000'000}) ||
                !m_writer.addAudioInput(*m_format) || !m_writer.startWriting()) {
                return;
            }
            m_writer.startSession(*frame.timing.presentation);
            m_start = *frame.timing.presentation;
            m_started = true;
        }
        if (m_writer.isReadyForMoreVideo() && m_writer.appendVideo(frame)) {
            ++frames;
            m_last = *frame.timing.presentation;
        }
    }

    void onSound(const AudioBuffer& buffer) {
        const std::lock_guard lock(m_mutex);
        if (!m_format) {
            m_format = buffer.format;
        }
        if (m_started && m_writer.isReadyForMoreAudio() && m_writer.appendAudio(buffer)) {
            ++sounds;
        }
    }

    double seconds() const {
        const std::lock_guard lock(m_mutex);
        return double(m_last - m_start) / oneSecond;
    }

    std::atomic<int> frames = 0;
    std::atomic<int> sounds = 0;

private:
    MovieWriter& m_writer;
    mutable std::mutex m_mutex;
    std::optional<AudioFormat> m_format;
    bool m_started = false;
    qint64 m_start = 0;
    qint64 m_last = 0;
};
} // namespace

// The microphone beside the screen, in a session with a private PulseAudio whose default source
// plays a 440 Hz tone (`desktop-session --microphone`): its samples, their times on the frames'
// clock, and a movie written from both.
class MicrophoneCaptureTest : public QObject {
    Q_OBJECT

    GStreamerScreenCapture m_capture{GStreamerScreenCapture::Screens::x11};

private slots:
    void soundComesWithItsFormatBesideTheFrames() {
        const std::unique_ptr<CaptureStream> stream = makeStream(m_capture, {320, 200});
        CaptureLog log(*stream);
        QVERIFY(log.capture(5, 50));

        const std::vector<CaptureLog::Sound> sounds = log.sounds();
        for (size_t i = 0; i < sounds.size(); ++i) {
            const CaptureLog::Sound& sound = sounds[i];
            QVERIFY(sound.format);
            QVERIFY2(sound.format->description.startsWith(QStringLiteral("audio/x-raw, format=(string)S16LE")),
                     qPrintable(sound.format->description));
            QCOMPARE(sound.format->sampleRate, 48000);
            QCOMPARE(sound.format->channels, 2);
            QVERIFY(sound.native);
            QVERIFY(sound.data.size() > 0 && sound.data.size() % 4 == 0);
            QVERIFY(sound.duration);
            QVERIFY(std::abs(*sound.duration - sound.data.size() / 4 * oneSecond / 48000) < oneMillisecond);
            // On the frames' clock: the monotonic one.
            // (pulsesrc's times, kept in step with the clock, may lead it by a few milliseconds.)
            QVERIFY(sound.presentation && *sound.presentation <= sound.arrival + 20 * oneMillisecond);
            QVERIFY2(sound.arrival - *sound.presentation < mostLateness,
                     qPrintable(QString::number(sound.arrival - *sound.presentation)));
            QVERIFY(i == 0 || *sound.presentation > *sounds[i - 1].presentation);
        }
        for (const CaptureLog::Frame& frame : log.frames()) {
            QVERIFY(frame.presentation && *frame.presentation <= frame.arrival);
            QVERIFY2(frame.arrival - *frame.presentation < mostLateness,
                     qPrintable(QString::number(frame.arrival - *frame.presentation)));
        }

        // The tone of the session's microphone: a sine crosses zero upwards once a period. (Under load
        // its player may leave gaps of silence, which the median passes over.)
        const std::vector<qint16> samples = leftChannel(sounds);
        QVERIFY(*std::max_element(samples.begin(), samples.end()) > 1000);
        std::vector<size_t> periods;
        size_t lastRising = 0;
        for (size_t i = 1; i < samples.size(); ++i) {
            if (samples[i - 1] < 0 && samples[i] >= 0) {
                if (lastRising > 0) {
                    periods.push_back(i - lastRising);
                }
                lastRising = i;
            }
        }
        QVERIFY(periods.size() > 100);
        std::nth_element(periods.begin(), periods.begin() + periods.size() / 2, periods.end());
        const double frequency = 48000.0 / double(periods[periods.size() / 2]);
        QVERIFY2(std::abs(frequency - 440) < 10, qPrintable(QString::number(frequency)));
    }

    void framesBeginOnceTheMicrophoneHasSettled() {
        const std::unique_ptr<CaptureStream> stream = makeStream(m_capture, {320, 200});
        CaptureLog log(*stream);
        QVERIFY(log.capture(5, 5));
        const std::vector<CaptureLog::Sound> sounds = log.sounds();
        const std::vector<CaptureLog::Frame> frames = log.frames();
        QVERIFY(sounds.front().presentation && frames.front().presentation);
        // Frames from before, which the movie would lose while its first one stood still, never come.
        const qint64 lead = *frames.front().presentation - *sounds.front().presentation;
        QVERIFY2(lead >= 100 * oneMillisecond, qPrintable(QString::number(lead)));
    }

    void aPreparedStreamStartsWithItsFirstFrameAsTheMicrophoneHasSettledMeanwhile() {
        m_capture.prepareStream(wholeScreen, withMicrophone({320, 200}));
        QVERIFY(m_capture.holdsPreparedStream());
        // Longer than the microphone takes to settle, which a prepared stream waits out unseen.
        QTest::qWait(1500);
        const std::unique_ptr<CaptureStream> stream = makeStream(m_capture, {320, 200});
        QVERIFY(!m_capture.holdsPreparedStream());
        CaptureLog log(*stream);
        const qint64 started = monotonicNow();
        QVERIFY(log.capture(5, 5));
        const std::vector<CaptureLog::Sound> sounds = log.sounds();
        const std::vector<CaptureLog::Frame> frames = log.frames();
        QVERIFY(sounds.front().presentation && frames.front().presentation);
        // Nothing from before the start; and the first frame is not held back for the microphone.
        QVERIFY(*frames.front().presentation > started - 40 * oneMillisecond);
        QVERIFY(*sounds.front().presentation > started - 40 * oneMillisecond);
        const qint64 lead = *frames.front().presentation - *sounds.front().presentation;
        QVERIFY2(lead < 100 * oneMillisecond, qPrintable(QString::number(lead)));
    }

    void aStreamOfAnotherTargetEndsThePreparedOne() {
        m_capture.prepareStream(wholeScreen, withMicrophone({320, 200}));
        const std::unique_ptr<CaptureStream> stream = makeStream(m_capture, {160, 100});
        QVERIFY(!m_capture.holdsPreparedStream());
        CaptureLog log(*stream);
        QVERIFY(log.capture(3, 1));
        QCOMPARE(log.frames().front().size, QSize(160, 100));
    }

    void aPreparedStreamNobodyTakesEnds() {
        GStreamerScreenCapture capture(GStreamerScreenCapture::Screens::x11, std::chrono::milliseconds(50));
        capture.prepareStream(wholeScreen, withMicrophone({320, 200}));
        QVERIFY(capture.holdsPreparedStream());
        QTRY_VERIFY(!capture.holdsPreparedStream());
    }

    void soundTimesGoOnAcrossAStopAndAStart() {
        const std::unique_ptr<CaptureStream> stream = makeStream(m_capture, {320, 200});
        CaptureLog log(*stream);
        QVERIFY(log.capture(0, 10));
        // Stopped already: nothing happens.
        runTask(stream->stopCapture());
        const size_t before = log.sounds().size();
        const qint64 stoppedAt = monotonicNow();
        QVERIFY(log.capture(0, 10));
        // (pulsesrc's times may lead the clock by a few milliseconds.)
        QVERIFY(*log.sounds()[before].presentation > stoppedAt - 20 * oneMillisecond);
    }

    void capturedFramesAndSoundMakeAMovie() {
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("captured.mov"));
        GStreamerMovieWriterFactory factory;
        const std::unique_ptr<MovieWriter> writer = factory.makeWriter(path);
        MovieRecorder recorder(*writer);
        const std::unique_ptr<CaptureStream> stream = makeStream(m_capture, {640, 400});
        stream->addScreenOutput([&recorder](const VideoFrame& frame) { recorder.onFrame(frame); });
        stream->addMicrophoneOutput([&recorder](const AudioBuffer& buffer) { recorder.onSound(buffer); });
        runTask(stream->startCapture());
        QVERIFY(QTest::qWaitFor([&] { return recorder.frames >= 60 && recorder.sounds >= 100; }, 30'000));
        runTask(stream->stopCapture());

        std::atomic<bool> finished = false;
        writer->finishWriting([&finished] { finished = true; });
        QVERIFY(QTest::qWaitFor([&] { return finished.load(); }, 30'000));
        QCOMPARE(writer->status(), MovieWriter::Status::completed);

        const MovieFacts movie = probeMovie(path);
        QVERIFY2(movie.playable, qPrintable(movie.report));
        QCOMPARE(movie.videoProfile, QStringLiteral("high"));
        QCOMPARE(QSize(movie.width, movie.height), QSize(640, 400));
        QCOMPARE(movie.videoFrames, recorder.frames.load());
        QVERIFY2(movie.audioCaps.startsWith(QStringLiteral("audio/x-raw, format=(string)S16LE")),
                 qPrintable(movie.report));
        QVERIFY2(std::abs(movie.seconds - recorder.seconds()) < 0.3,
                 qPrintable(QStringLiteral("%1 against %2").arg(movie.seconds).arg(recorder.seconds())));
    }
};

NORVANEBAR_TEST_MAIN(MicrophoneCaptureTest)
#include "MicrophoneCaptureTest.moc"
