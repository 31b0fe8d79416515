#include "support/ScriptedRecording.h"

#include <QFile>

namespace ScriptedRecording {

namespace {
class Stream : public CaptureStream {
public:
    explicit Stream(std::shared_ptr<StreamRecord> record)
        : m_record(std::move(record)) {}

    void addScreenOutput(std::function<void(VideoFrame)> output) override { m_record->screen = std::move(output); }
    void addMicrophoneOutput(std::function<void(AudioBuffer)> output) override {
        m_record->microphone = std::move(output);
    }

    QCoro::Task<> startCapture() override {
        ++m_record->starts;
        if (m_record->startFails) {
            throw *m_record->startFails;
        }
        m_record->capturing = true;
        co_return;
    }

    QCoro::Task<> stopCapture() override {
        ++m_record->stops;
        if (!m_record->capturing && m_record->stopOfStoppedStreamFails) {
            throw *m_record->stopOfStoppedStreamFails;
        }
        m_record->capturing = false;
        co_return;
    }

private:
    std::shared_ptr<StreamRecord> m_record;
};

class Writer : public MovieWriter {
public:
    explicit Writer(std::shared_ptr<WriterRecord> record)
        : m_record(std::move(record)) {}

    bool addVideoInput(const VideoSettings& settings) override {
        m_record->video = settings;
        return true;
    }
    bool addAudioInput(const AudioFormat& sourceFormat) override {
        if (m_record->status != Status::unknown) {
            return false;
        }
        m_record->audio = sourceFormat;
        return true;
    }
    bool startWriting() override {
        m_record->status = Status::writing;
        return true;
    }
    void startSession(qint64 sourceTime) override { m_record->sessionStarts.append(sourceTime); }
    bool isReadyForMoreVideo() const override { return m_record->videoReady; }
    bool isReadyForMoreAudio() const override { return m_record->audioReady; }
    bool appendVideo(const VideoFrame& frame) override {
        if (m_record->status != Status::writing) {
            return false;
        }
        m_record->frames.append(frame);
        return true;
    }
    bool appendAudio(const AudioBuffer& buffer) override {
        if (m_record->status != Status::writing || m_record->refuseSamples > 0) {
            m_record->refuseSamples = std::max(0, m_record->refuseSamples - 1);
            return false;
        }
        m_record->samples.append(buffer);
        return true;
    }
    void markVideoFinished() override { m_record->videoFinished = true; }
    void markAudioFinished() override { m_record->audioFinished = true; }
    void finishWriting(std::function<void()> completion) override {
        m_record->finished = true;
        if (m_record->status == Status::writing) {
            m_record->status = Status::completed;
            QFile file(m_record->path);
            if (!m_record->losesTheFile && file.open(QIODevice::WriteOnly)) {
                file.write("movie");
                file.resize(m_record->movieBytes);
            }
        }
        completion();
    }
    void cancelWriting() override {
        m_record->cancelled = true;
        m_record->status = Status::cancelled;
    }
    Status status() const override { return m_record->status; }
    std::optional<Error> error() const override { return m_record->error; }

private:
    std::shared_ptr<WriterRecord> m_record;
};

class Facecam : public FacecamOverlay {
public:
    explicit Facecam(std::shared_ptr<FacecamRecord> record)
        : m_record(std::move(record)) {}

    QCoro::Task<> start() override {
        if (m_record->startFails) {
            throw *m_record->startFails;
        }
        m_record->running = true;
        co_return;
    }
    void stop() override { m_record->running = false; }
    bool isRunning() const override { return m_record->running; }
    void setStyle(const FacecamStyle& style) override { m_record->style = style; }
    std::optional<PlacedImage> makePipImage(QSize frameSize) override {
        const int side = int(std::min(frameSize.width(), frameSize.height()) * m_record->style.sizeFraction);
        QImage square(side, side, QImage::Format_ARGB32_Premultiplied);
        square.fill(m_record->colour);
        return PlacedImage{square, QRectF(0, 0, side, side)};
    }
    QImage latestCameraFrame() const override {
        QImage frame(64, 48, QImage::Format_RGB32);
        frame.fill(m_record->colour);
        return frame;
    }

private:
    std::shared_ptr<FacecamRecord> m_record;
};
} // namespace

qint64 nanoseconds(double seconds) {
    return qRound64(seconds * 1e9);
}

VideoFrame frame(double seconds, QSize size, QColor colour) {
    VideoFrame frame;
    frame.timing = {nanoseconds(seconds), std::nullopt, nanoseconds(1.0 / 30)};
    frame.pixels = QImage(size, QImage::Format_RGB32);
    frame.pixels.fill(colour);
    return frame;
}

AudioBuffer microphone(double seconds) {
    AudioBuffer buffer;
    buffer.timing = {nanoseconds(seconds), std::nullopt, nanoseconds(0.01)};
    buffer.format = AudioFormat{QStringLiteral("audio/x-raw, format=S16LE, rate=48000, channels=2"), 48000, 2};
    buffer.data = QByteArray(480 * 4, '\0');
    return buffer;
}

QCoro::Task<> CaptureService::checkAccess() {
    if (accessFails) {
        throw *accessFails;
    }
    co_return;
}

std::unique_ptr<CaptureStream> CaptureService::makeStream(const CaptureTarget&,
                                                          const CaptureConfiguration& configuration) {
    auto record = std::make_shared<StreamRecord>();
    record->configuration = configuration;
    record->startFails = streamsFailToStart;
    streams.append(record);
    return std::make_unique<Stream>(record);
}

std::unique_ptr<MovieWriter> WriterFactory::makeWriter(const QString& path) {
    auto record = std::make_shared<WriterRecord>();
    record->path = path;
    if (prepare) {
        prepare(*record);
    }
    writers.append(record);
    return std::make_unique<Writer>(record);
}

QCoro::Task<MicrophoneAccess::Status> Microphone::authorizationStatus() {
    co_return status;
}

QCoro::Task<bool> Microphone::requestAccess() {
    ++requests;
    co_return allowsWhenAsked;
}

std::unique_ptr<FacecamOverlay> Facecams::make(const FacecamStyle& style) {
    auto record = std::make_shared<FacecamRecord>();
    record->style = style;
    record->startFails = startFails;
    made.append(record);
    return std::make_unique<Facecam>(record);
}

Sleeper Waits::sleeper() const {
    return [waits = m_waits](std::chrono::milliseconds length) { return wait(waits, length); };
}

QList<std::chrono::milliseconds> Waits::held() const {
    QList<std::chrono::milliseconds> lengths;
    for (const Wait& wait : *m_waits) {
        lengths.append(wait.length);
    }
    return lengths;
}

void Waits::release(std::chrono::milliseconds length) {
    QList<Wait> ending;
    for (qsizetype i = m_waits->size() - 1; i >= 0; --i) {
        if ((*m_waits)[i].length == length) {
            ending.prepend(m_waits->takeAt(i));
        }
    }
    for (const Wait& wait : ending) {
        wait.ended.fulfil(true);
    }
}

void Waits::releaseAll() {
    const QList<Wait> ending = std::exchange(*m_waits, {});
    for (const Wait& wait : ending) {
        wait.ended.fulfil(true);
    }
}

QCoro::Task<> Waits::wait(std::shared_ptr<QList<Wait>> waits, std::chrono::milliseconds length) {
    const OneShot<bool> ended;
    waits->append({length, ended});
    co_await ended;
}

ScreenRecordingEngine::Services Rig::engineServices() {
    return ScreenRecordingEngine::Services{
        .capture = capture,
        .writers = writers,
        .microphone = microphone,
        .makeFacecam = [this](const FacecamStyle& style) { return facecams.make(style); },
        .clock = [this] { return now; },
        .sleeper = waits.sleeper(),
        .makeWriterQueue = [] { return SerialQueue::onCurrentThread(); },
    };
}

} // namespace ScriptedRecording
