// Records the whole X11 screen for SECONDS through the recording engine, as the program does: the
// GStreamer capture with the microphone, x264 at the 1080p bit rate, the movie in the temporary
// folder. Run by bench/recording_bench.py beside ffmpeg recording the same screen.
//
//   recording-client SECONDS WIDTH HEIGHT
//
// Prints "name value unit" lines: the frames the capture offered the engine before the stop, VmRSS
// before the recording, its peak during it (VmHWM reset through clear_refs first) and the growth,
// the growth of each kind of resident memory from the start to the stop, the duration
// the engine gave, whether the microphone's sound was saved, and the movie's path (the caller
// removes it).
#include "core/recording/ScreenRecordingEngine.h"
#include "platform/linux/GStreamerMovieWriterFactory.h"
#include "platform/linux/GStreamerScreenCapture.h"
#include "platform/linux/PulseMicrophoneAccess.h"

#include "bench/ProcessStatus.h"
#include "bench/RunToExit.h"

#include <QCoreApplication>
#include <QCoroTimer>
#include <array>
#include <atomic>
#include <cstdio>

namespace {
// A capture stream that counts the frames it hands on.
class CountingStream : public CaptureStream {
public:
    CountingStream(std::unique_ptr<CaptureStream> stream, std::shared_ptr<std::atomic<int>> offered)
        : m_stream(std::move(stream))
        , m_offered(std::move(offered)) {}

    void addScreenOutput(std::function<void(VideoFrame)> output) override {
        m_stream->addScreenOutput([offered = m_offered, output = std::move(output)](VideoFrame frame) {
            ++*offered;
            output(std::move(frame));
        });
    }
    void addMicrophoneOutput(std::function<void(AudioBuffer)> output) override {
        m_stream->addMicrophoneOutput(std::move(output));
    }
    QCoro::Task<> startCapture() override { return m_stream->startCapture(); }
    QCoro::Task<> stopCapture() override { return m_stream->stopCapture(); }

private:
    std::unique_ptr<CaptureStream> m_stream;
    std::shared_ptr<std::atomic<int>> m_offered;
};

class CountingCapture : public ScreenCaptureService {
public:
    explicit CountingCapture(ScreenCaptureService& capture)
        : m_capture(capture) {}

    QCoro::Task<> checkAccess() override { return m_capture.checkAccess(); }
    std::unique_ptr<CaptureStream> makeStream(const CaptureTarget& target,
                                              const CaptureConfiguration& configuration) override {
        return std::make_unique<CountingStream>(m_capture.makeStream(target, configuration), offered);
    }

    std::shared_ptr<std::atomic<int>> offered = std::make_shared<std::atomic<int>>(0);

private:
    ScreenCaptureService& m_capture;
};

// The kinds of resident memory: anonymous (the heap, the encoder's frames), file pages (the
// libraries and plugins loaded) and shared memory (the X server's pictures).
struct ResidentKind {
    const char* field;
    const char* name;
};
constexpr std::array kinds{ResidentKind{"RssAnon", "anonymous"}, ResidentKind{"RssFile", "file"},
                           ResidentKind{"RssShmem", "shared"}};

std::array<qint64, kinds.size()> residentByKind() {
    std::array<qint64, kinds.size()> kiB{};
    for (size_t kind = 0; kind < kinds.size(); ++kind) {
        kiB[kind] = ProcessStatus::kiB(kinds[kind].field);
    }
    return kiB;
}

QCoro::Task<int> record(ScreenRecordingEngine& engine, const CountingCapture& capture, int seconds, QSize screen) {
    CaptureTarget target;
    target.contentRect = QRectF(QPointF(0, 0), screen);
    target.surface = X11CaptureWindow{};
    const qint64 before = ProcessStatus::kiB("VmRSS");
    ProcessStatus::resetPeak();
    const std::array<qint64, kinds.size()> kindsBefore = residentByKind();
    QCoro::Task<> starting = engine.start(target);
    co_await std::move(starting);
    QCoro::Task<> recording = QCoro::sleepFor(std::chrono::seconds(seconds));
    co_await std::move(recording);
    const std::array<qint64, kinds.size()> kindsAtEnd = residentByKind();
    // Frames that come after the stop are not the recording's.
    const int offered = capture.offered->load();
    QCoro::Task<ScreenRecordingEngine::Recording> stopping = engine.stop();
    const ScreenRecordingEngine::Recording movie = co_await std::move(stopping);
    const qint64 peak = ProcessStatus::kiB("VmHWM");
    std::printf("recording_frames_offered %d frames\n", offered);
    std::printf("recording_rss_before %.1f MiB\n", double(before) / 1024);
    std::printf("recording_rss_peak %.1f MiB\n", double(peak) / 1024);
    std::printf("recording_rss_growth %.1f MiB\n", double(peak - before) / 1024);
    for (size_t kind = 0; kind < kinds.size(); ++kind) {
        std::printf("recording_rss_%s_growth %.1f MiB\n", kinds[kind].name,
                    double(kindsAtEnd[kind] - kindsBefore[kind]) / 1024);
    }
    std::printf("recording_duration %.2f s\n", movie.duration);
    std::printf("recording_microphone_saved %d flag\n", movie.microphoneAudioSaved ? 1 : 0);
    std::printf("recording_movie %s path\n", qPrintable(movie.url.toLocalFile()));
    co_return 0;
}
} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.size() != 4) {
        std::fprintf(stderr, "usage: recording-client SECONDS WIDTH HEIGHT\n");
        return 2;
    }
    GStreamerScreenCapture screens(GStreamerScreenCapture::Screens::x11);
    CountingCapture capture(screens);
    GStreamerMovieWriterFactory writers;
    PulseMicrophoneAccess microphone;
    RecordingConfiguration configuration;
    configuration.quality = RecordingQuality::hd1080;
    configuration.captureMicrophone = true;
    ScreenRecordingEngine engine(configuration, {
                                                    .capture = capture,
                                                    .writers = writers,
                                                    .microphone = microphone,
                                                    .makeFacecam = nullptr,
                                                });
    const QSize screen(arguments[2].toInt(), arguments[3].toInt());
    return runToExit(application, record(engine, capture, arguments[1].toInt(), screen));
}
