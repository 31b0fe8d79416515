#include "core/recording/ScreenRecordingError.h"
#include "platform/linux/GStreamerMovieWriter.h"
#include "platform/linux/GStreamerMovieWriterFactory.h"
#include "support/CaptureTesting.h"
#include "support/MovieProbe.h"
#include "support/TestMain.h"

#include <QPainter>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <atomic>
#include <cmath>
#include <gst/gst.h>
#include <sys/resource.h>

namespace {
constexpr int framesPerSecond = 30;
constexpr int sampleRate = 48000;
constexpr int channels = 2;
// Where the capture's clock stood when the movie started: its times are counted from there.
constexpr qint64 sessionStart = 5 * oneSecond;

const AudioFormat pcm{QStringLiteral("audio/x-raw, format=(string)S16LE, layout=(string)interleaved, "
                                     "rate=(int)48000, channels=(int)2, channel-mask=(bitmask)0x3"),
                      sampleRate, channels};

qint64 frameTime(int frame) {
    return sessionStart + frame * oneSecond / framesPerSecond;
}

// Frame `index` of a picture that changes from frame to frame: a colour wash and a moving square.
VideoFrame syntheticFrame(int index, QSize size) {
    QImage pixels(size, QImage::Format_RGB32);
    pixels.fill(QColor::fromHsv(index % 360, 160, 200));
    QPainter painter(&pixels);
    painter.fillRect((index * 8) % size.width(), size.height() / 3, size.height() / 3, size.height() / 3, Qt::white);
    painter.end();
    VideoFrame frame;
    frame.timing.presentation = frameTime(index);
    frame.timing.duration = oneSecond / framesPerSecond;
    frame.pixels = pixels;
    return frame;
}

// The sound of frame `index`'s time span: a 440 Hz tone.
AudioBuffer syntheticSound(int index) {
    const int count = sampleRate / framesPerSecond;
    QByteArray data(count * channels * qsizetype(sizeof(qint16)), Qt::Uninitialized);
    auto* samples = reinterpret_cast<qint16*>(data.data());
    for (int i = 0; i < count; ++i) {
        const double t = double(index * count + i) / sampleRate;
        const auto value = static_cast<qint16>(8000 * std::sin(2 * M_PI * 440 * t));
        samples[i * channels] = value;
        samples[i * channels + 1] = value;
    }
    AudioBuffer buffer;
    buffer.timing.presentation = frameTime(index);
    buffer.timing.duration = oneSecond / framesPerSecond;
    buffer.format = pcm;
    buffer.data = data;
    return buffer;
}

double cpuSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return double(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           double(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

// A finish's completion, and the thread it ran on.
struct Completion {
    std::atomic<bool> called = false;
    std::atomic<QThread*> thread = nullptr;

    std::function<void()> callback() {
        return [this] {
            thread = QThread::currentThread();
            called = true;
        };
    }
    bool wait() const {
        return QTest::qWaitFor([this] { return called.load(); }, 60'000);
    }
};
} // namespace

// QuickTime movies written through GStreamer from frames and sound made by the test, read back by
// gst-discoverer-1.0 and ffprobe.
class MovieWriterTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;
    GStreamerMovieWriterFactory m_factory;

    QString moviePath(const QString& name) const { return m_folder.filePath(name + QStringLiteral(".mov")); }

    std::unique_ptr<GStreamerMovieWriter> makeWriter(const QString& path) {
        std::unique_ptr<MovieWriter> writer = m_factory.makeWriter(path);
        return std::unique_ptr<GStreamerMovieWriter>(dynamic_cast<GStreamerMovieWriter*>(writer.release()));
    }

    // Writes `frames` frames (and as much sound with `sound`), each as soon as the writer takes it,
    // then finishes the movie.
    void writeMovie(MovieWriter& writer, QSize size, int frames, bool sound) {
        QVERIFY(writer.addVideoInput({size, 3'000'000}));
        if (sound) {
            QVERIFY(writer.addAudioInput(pcm));
        }
        QVERIFY(writer.startWriting());
        QCOMPARE(writer.status(), MovieWriter::Status::writing);
        writer.startSession(sessionStart);
        for (int index = 0; index < frames; ++index) {
            QVERIFY(QTest::qWaitFor([&] { return writer.isReadyForMoreVideo(); }, 30'000));
            QVERIFY(writer.appendVideo(syntheticFrame(index, size)));
            if (sound) {
                QVERIFY(QTest::qWaitFor([&] { return writer.isReadyForMoreAudio(); }, 30'000));
                QVERIFY(writer.appendAudio(syntheticSound(index)));
            }
        }
        Completion done;
        const QThread* caller = QThread::currentThread();
        writer.finishWriting(done.callback());
        QVERIFY(done.wait());
        // The end of the stream is waited for off the caller's thread.
        QVERIFY(done.thread.load() != caller);
        QCOMPARE(writer.status(), MovieWriter::Status::completed);
        QVERIFY(!writer.error());
    }

private slots:
    void initTestCase() { QVERIFY(m_folder.isValid()); }

    void writesTenSecondsOfVideoAndSound() {
        const QString path = moviePath(QStringLiteral("sound"));
        const std::unique_ptr<GStreamerMovieWriter> writer = makeWriter(path);
        QCOMPARE(writer->encoder(), QStringLiteral("x264enc"));
        const double cpuBefore = cpuSeconds();
        QElapsedTimer wall;
        wall.start();
        writeMovie(*writer, {1280, 720}, 10 * framesPerSecond, true);
        if (QTest::currentTestFailed()) {
            return;
        }
        qInfo("10 s of 1280x720 with sound written in %.2f s, %.2f s of CPU (making the frames included)",
              double(wall.elapsed()) / 1000, cpuSeconds() - cpuBefore);
        QCOMPARE(writer->profile(), QStringLiteral("high"));

        const MovieFacts movie = probeMovie(path);
        QVERIFY2(movie.playable, qPrintable(movie.report));
        QCOMPARE(movie.videoProfile, QStringLiteral("high"));
        QCOMPARE(QSize(movie.width, movie.height), QSize(1280, 720));
        QCOMPARE(movie.videoFrames, 10 * framesPerSecond);
        QVERIFY2(std::abs(movie.seconds - 10) < 0.2, qPrintable(QString::number(movie.seconds)));
        // The sound as it came, not encoded.
        QVERIFY2(movie.audioCaps.startsWith(QStringLiteral("audio/x-raw, format=(string)S16LE")),
                 qPrintable(movie.report));
        QVERIFY(movie.audioCaps.contains(QStringLiteral("rate=(int)48000, channels=(int)2")));
    }

    void writesTenSecondsOfVideoAlone() {
        const QString path = moviePath(QStringLiteral("silent"));
        const std::unique_ptr<GStreamerMovieWriter> writer = makeWriter(path);
        writeMovie(*writer, {1280, 720}, 10 * framesPerSecond, false);
        if (QTest::currentTestFailed()) {
            return;
        }
        const MovieFacts movie = probeMovie(path);
        QVERIFY2(movie.playable, qPrintable(movie.report));
        QCOMPARE(movie.videoProfile, QStringLiteral("high"));
        QCOMPARE(movie.videoFrames, 10 * framesPerSecond);
        QVERIFY2(std::abs(movie.seconds - 10) < 0.2, qPrintable(QString::number(movie.seconds)));
        QVERIFY2(movie.audioCaps.isEmpty(), qPrintable(movie.report));
    }

    void inputsRefuseWhatTheyCannotTake() {
        const QString path = moviePath(QStringLiteral("refusals"));
        const std::unique_ptr<GStreamerMovieWriter> writer = makeWriter(path);
        QVERIFY(!writer->addVideoInput({{641, 480}, 3'000'000}));
        QVERIFY(!writer->addAudioInput({QStringLiteral("video/x-raw"), 0, 0}));
        QVERIFY(!writer->startWriting());
        QVERIFY(writer->addVideoInput({{640, 480}, 3'000'000}));
        QVERIFY(!writer->addVideoInput({{640, 480}, 3'000'000}));
        QVERIFY(writer->addAudioInput(pcm));
        QVERIFY(!writer->isReadyForMoreVideo());
        QVERIFY(writer->startWriting());
        QVERIFY(!writer->addAudioInput(pcm));

        // Before the session, and before its start.
        QVERIFY(!writer->appendVideo(syntheticFrame(0, {640, 480})));
        writer->startSession(sessionStart);
        VideoFrame early = syntheticFrame(0, {640, 480});
        early.timing.presentation = sessionStart - 1;
        QVERIFY(!writer->appendVideo(early));

        // The muxer waits for the sound, which never comes: once the video's input is full it refuses,
        // and what it refused is not in the movie.
        int accepted = 0;
        int refused = 0;
        for (int index = 0; index < 200; ++index) {
            (writer->appendVideo(syntheticFrame(index, {640, 480})) ? accepted : refused) += 1;
        }
        QVERIFY(refused > 0);
        QCOMPARE(writer->status(), MovieWriter::Status::writing);

        // An input that took no sample still lets the movie end.
        Completion done;
        writer->finishWriting(done.callback());
        QVERIFY(done.wait());
        QCOMPARE(writer->status(), MovieWriter::Status::completed);
        QVERIFY(!writer->appendVideo(syntheticFrame(200, {640, 480})));
        const MovieFacts movie = probeMovie(path);
        QVERIFY2(movie.playable, qPrintable(movie.report));
        QCOMPARE(movie.videoFrames, accepted);
    }

    void aFailedWriteFailsTheMovie() {
        // Every write to the device fails with ENOSPC.
        const QString path = moviePath(QStringLiteral("full"));
        QVERIFY(QFile::link(QStringLiteral("/dev/full"), path));
        const std::unique_ptr<GStreamerMovieWriter> writer = makeWriter(path);
        QVERIFY(writer->addVideoInput({{640, 480}, 3'000'000}));
        QVERIFY(writer->startWriting());
        writer->startSession(sessionStart);
        int index = 0;
        QVERIFY(QTest::qWaitFor(
            [&] {
                if (writer->isReadyForMoreVideo()) {
                    writer->appendVideo(syntheticFrame(index++, {640, 480}));
                }
                return writer->status() == MovieWriter::Status::failed;
            },
            30'000));
        const std::optional<MovieWriter::Error> error = writer->error();
        QVERIFY(error);
        QVERIFY(error->code != 0);
        QVERIFY2(error->description.contains(QStringLiteral("space"), Qt::CaseInsensitive),
                 qPrintable(error->description));
        QVERIFY(!writer->isReadyForMoreVideo());
        QVERIFY(!writer->appendVideo(syntheticFrame(index, {640, 480})));

        Completion done;
        writer->finishWriting(done.callback());
        QVERIFY(done.wait());
        QCOMPARE(writer->status(), MovieWriter::Status::failed);
    }

    void aFolderThatIsNotThereFailsTheStart() {
        const std::unique_ptr<GStreamerMovieWriter> writer =
            makeWriter(m_folder.filePath(QStringLiteral("no such folder/movie.mov")));
        QVERIFY(writer->addVideoInput({{640, 480}, 3'000'000}));
        QVERIFY(!writer->startWriting());
        QCOMPARE(writer->status(), MovieWriter::Status::failed);
        QVERIFY(writer->error());
        QVERIFY2(writer->error()->description.contains(QStringLiteral("no such folder")),
                 qPrintable(writer->error()->description));
    }

    void aCancelStopsWithoutAMovie() {
        const QString path = moviePath(QStringLiteral("cancelled"));
        const std::unique_ptr<GStreamerMovieWriter> writer = makeWriter(path);
        QVERIFY(writer->addVideoInput({{640, 480}, 3'000'000}));
        QVERIFY(writer->startWriting());
        writer->startSession(sessionStart);
        for (int index = 0; index < 30; ++index) {
            QVERIFY(QTest::qWaitFor([&] { return writer->isReadyForMoreVideo(); }, 30'000));
            QVERIFY(writer->appendVideo(syntheticFrame(index, {640, 480})));
        }
        writer->cancelWriting();
        QCOMPARE(writer->status(), MovieWriter::Status::cancelled);
        QVERIFY(!writer->error());
        QVERIFY(!writer->isReadyForMoreVideo());
        QVERIFY(!writer->appendVideo(syntheticFrame(30, {640, 480})));
        // Nothing was finished: the file, if any, is no movie.
        QVERIFY(!probeMovie(path).playable);

        Completion done;
        writer->finishWriting(done.callback());
        QVERIFY(done.wait());
        QCOMPARE(writer->status(), MovieWriter::Status::cancelled);
    }

    void openH264ServesWhereX264IsMissing() {
        GstRegistry* registry = gst_registry_get();
        GstPluginFeature* x264 = gst_registry_lookup_feature(registry, "x264enc");
        QVERIFY(x264);
        gst_registry_remove_feature(registry, x264);
        const auto restore = qScopeGuard([&] {
            gst_registry_add_feature(registry, x264);
            gst_object_unref(x264);
        });

        const QString path = moviePath(QStringLiteral("openh264"));
        const std::unique_ptr<GStreamerMovieWriter> writer = makeWriter(path);
        QCOMPARE(writer->encoder(), QStringLiteral("openh264enc"));
        writeMovie(*writer, {640, 480}, framesPerSecond, false);
        if (QTest::currentTestFailed()) {
            return;
        }
        const MovieFacts movie = probeMovie(path);
        QVERIFY2(movie.playable, qPrintable(movie.report));
        QVERIFY(!writer->profile().isEmpty());
        QCOMPARE(movie.videoProfile, writer->profile());
        QCOMPARE(movie.videoFrames, framesPerSecond);
    }
};

NORVANEBAR_TEST_MAIN(MovieWriterTest)
#include "MovieWriterTest.moc"
