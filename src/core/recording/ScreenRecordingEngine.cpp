#include "core/recording/ScreenRecordingEngine.h"

#include "core/async/OneShot.h"
#include "core/async/StartTask.h"
#include "core/recording/CaptureDimensions.h"
#include "core/recording/RecordingSizeEstimate.h"
#include "core/recording/ScreenRecordingError.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QUuid>
#include <chrono>

namespace {
constexpr std::chrono::milliseconds timerTick(500);
// Frames handed to the writer's thread and not yet taken up.
constexpr int maxFramesInFlight = 2;

double secondsBetween(const QDateTime& from, const QDateTime& to) {
    return double(from.msecsTo(to)) / 1000.0;
}

QString freshOutputPath() {
    const QString id = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
    return QDir(QDir::tempPath()).filePath(QStringLiteral("norvanebar-rec-%1.mov").arg(id));
}
} // namespace

ScreenRecordingEngine::ScreenRecordingEngine(const RecordingConfiguration& configuration, Services services)
    : m_configuration(configuration)
    , m_services(std::move(services))
    , m_writerQueue(m_services.makeWriterQueue())
    , m_samples(m_services.writers, *m_writerQueue,
                {
                    .micSamplesReceived =
                        [this] {
                            onMainThread([this] {
                                if (onMicSamplesReceived)
                                    onMicSamplesReceived();
                            });
                        },
                    .micConnected =
                        [this] {
                            onMainThread([this] {
                                if (onMicConnected)
                                    onMicConnected();
                            });
                        },
                    .audioWriteFailed =
                        [this](QString message) {
                            onMainThread([this, message] {
                                if (onSizeWarning) {
                                    onSizeWarning(message);
                                }
                            });
                        },
                }) {}

ScreenRecordingEngine::~ScreenRecordingEngine() {
    cancelTimers();
    // The stream's threads end first, then the writer's, so no frame arrives at a half-gone engine.
    m_stream.reset();
    m_writerQueue->stop();
    m_samples.cancelWriting();
    stopFacecam();
}

void ScreenRecordingEngine::updateConfiguration(const RecordingConfiguration& configuration) {
    m_configuration = configuration;
    m_writerQueue->post([this, configuration] { m_samples.setConfiguration(configuration); });
}

QCoro::Task<> ScreenRecordingEngine::setFacecamEnabled(bool enabled) {
    if (!enabled) {
        stopFacecam();
        co_return;
    }
    std::shared_ptr<FacecamOverlay> facecam = m_samples.facecam();
    if (facecam) {
        facecam->setStyle(m_configuration.facecamStyle);
    } else {
        facecam = m_services.makeFacecam(m_configuration.facecamStyle);
        m_samples.setFacecam(facecam);
    }
    QCoro::Task<> starting = facecam->start();
    co_await std::move(starting);
}

namespace {
// How the target is captured for a recording so configured.
CaptureConfiguration captureConfiguration(const CaptureTarget& target, const RecordingConfiguration& configuration) {
    return {
        .size = captureDimensions(target.contentRect.size(), target.pointPixelScale),
        .framesPerSecond = recordingFramesPerSecond,
        .showsCursor = configuration.showCursor,
        .captureMicrophone = configuration.captureMicrophone,
    };
}
} // namespace

void ScreenRecordingEngine::prepareCapture(ScreenCaptureService& capture, const CaptureTarget& target,
                                           const RecordingConfiguration& configuration) {
    capture.prepareStream(target, captureConfiguration(target, configuration));
}

QCoro::Task<> ScreenRecordingEngine::start(CaptureTarget target) {
    if (m_isRecording) {
        co_return;
    }
    if (m_configuration.captureMicrophone) {
        QCoro::Task<> access = ensureMicrophoneAccess();
        co_await std::move(access);
    }
    QCoro::Task<> probe = m_services.capture.checkAccess();
    co_await std::move(probe);

    const CaptureConfiguration capture = captureConfiguration(target, m_configuration);
    const QString outputPath = freshOutputPath();
    QFile::remove(outputPath);
    std::unique_ptr<CaptureStream> stream = m_services.capture.makeStream(target, capture);
    stream->addScreenOutput([this](VideoFrame frame) { receiveVideo(std::move(frame)); });
    if (m_configuration.captureMicrophone) {
        stream->addMicrophoneOutput([this](AudioBuffer buffer) { receiveMicrophone(std::move(buffer)); });
    }

    // Nothing arrives before capture starts, so the writer's side is set here too.
    m_outputPath = outputPath;
    m_stream = std::move(stream);
    m_samples.reset(outputPath, m_configuration);
    m_isPaused = false;
    m_accumulatedPause = 0;
    m_elapsedSeconds = 0;
    m_estimatedFileBytes = 0;
    m_pauseBeganAt.reset();
    m_recordingStartTime = m_services.clock();
    m_isRecording = true;

    // A failure here leaves the engine recording: whoever started it disposes of it with cancel().
    QCoro::Task<> capturing = m_stream->startCapture();
    co_await std::move(capturing);
    scheduleMaxDurationStop();
    startElapsedTimer();
}

QCoro::Task<> ScreenRecordingEngine::ensureMicrophoneAccess() {
    QCoro::Task<MicrophoneAccess::Status> asking = m_services.microphone.authorizationStatus();
    const MicrophoneAccess::Status status = co_await std::move(asking);
    bool allowed = status == MicrophoneAccess::Status::authorized;
    if (status == MicrophoneAccess::Status::notDetermined) {
        QCoro::Task<bool> request = m_services.microphone.requestAccess();
        allowed = co_await std::move(request);
    }
    if (!allowed) {
        throw ScreenRecordingError(ScreenRecordingError::PermissionDenied{QCoreApplication::translate(
            "ScreenRecordingEngine", "Microphone access is required for voice in screen recordings. Check that a "
                                     "microphone is connected and not muted in the sound settings.")});
    }
}

void ScreenRecordingEngine::receiveVideo(VideoFrame frame) {
    if (!frame.dataReady) {
        return;
    }
    // Real time: a frame that finds the writer's thread still busy with earlier ones is lost here,
    // rather than waiting with the capture's memory held.
    if (m_framesInFlight >= maxFramesInFlight) {
        return;
    }
    ++m_framesInFlight;
    // The engine outlives its stream and its queue (see the destructor), so `this` holds here.
    m_writerQueue->post([this, frame = std::move(frame)] {
        if (!m_isPaused) {
            m_samples.appendVideoSampleBuffer(frame);
        }
        --m_framesInFlight;
    });
}

void ScreenRecordingEngine::receiveMicrophone(AudioBuffer buffer) {
    if (!buffer.dataReady) {
        return;
    }
    m_writerQueue->post([this, buffer = std::move(buffer)] {
        if (!m_isPaused) {
            m_samples.appendMicrophoneSampleBuffer(buffer);
        }
    });
}

void ScreenRecordingEngine::onMainThread(std::function<void()> job) {
    QMetaObject::invokeMethod(this, std::move(job), Qt::QueuedConnection);
}

template <typename T>
QCoro::Task<T> ScreenRecordingEngine::onWriterQueue(std::function<void(std::function<void(T)>)> job) {
    const OneShot<T> done;
    m_writerQueue->post([this, job = std::move(job), done] {
        job([this, done](T value) { onMainThread([done, value = std::move(value)] { done.fulfil(value); }); });
    });
    co_return co_await done;
}

QCoro::Task<> ScreenRecordingEngine::pause() {
    if (!m_isRecording || m_isPaused || !m_stream) {
        co_return;
    }
    m_isPaused = true;
    m_pauseBeganAt = m_services.clock();
    QCoro::Task<> stopping = m_stream->stopCapture();
    co_await std::move(stopping);
}

QCoro::Task<> ScreenRecordingEngine::resume() {
    if (!m_isRecording || !m_isPaused || !m_stream) {
        co_return;
    }
    if (m_pauseBeganAt) {
        m_accumulatedPause += secondsBetween(*m_pauseBeganAt, m_services.clock());
    }
    m_pauseBeganAt.reset();
    m_isPaused = false;
    QCoro::Task<> capturing = m_stream->startCapture();
    co_await std::move(capturing);
}

QCoro::Task<ScreenRecordingEngine::Recording> ScreenRecordingEngine::stop() {
    cancelTimers();
    if (!m_isRecording) {
        throw ScreenRecordingError(ScreenRecordingError::Cancelled{});
    }
    m_isRecording = false;
    m_samples.refuseSamples();
    onElapsedUpdate = nullptr;
    onSizeWarning = nullptr;
    onMaxDurationReached = nullptr;
    onMicSamplesReceived = nullptr;
    onMicConnected = nullptr;
    // Up to one tick old.
    const double duration = m_elapsedSeconds;
    if (m_stream) {
        // A failure leaves the writer as it is; the recording is then cancelled.
        QCoro::Task<> stopping = m_stream->stopCapture();
        co_await std::move(stopping);
    }
    stopFacecam();
    QCoro::Task<RecordingSampleWriter::Outcome> finishing = onWriterQueue<RecordingSampleWriter::Outcome>(
        [this, duration](std::function<void(RecordingSampleWriter::Outcome)> continuation) {
            m_samples.finalizeWriting(duration, std::move(continuation));
        });
    const RecordingSampleWriter::Outcome outcome = co_await std::move(finishing);
    m_stream.reset();
    if (const auto* failure = std::get_if<ScreenRecordingError>(&outcome)) {
        throw *failure;
    }
    co_return std::get<FinishedRecording>(outcome);
}

QCoro::Task<> ScreenRecordingEngine::cancel() {
    cancelTimers();
    m_samples.refuseSamples();
    m_isRecording = false;
    if (m_stream) {
        try {
            QCoro::Task<> stopping = m_stream->stopCapture();
            co_await std::move(stopping);
        } catch (const std::exception&) {
            // The recording is thrown away either way.
        }
    }
    stopFacecam();
    QCoro::Task<bool> dropping = onWriterQueue<bool>([this](std::function<void(bool)> done) {
        m_samples.cancelWriting();
        done(true);
    });
    co_await std::move(dropping);
    m_stream.reset();
    if (m_outputPath) {
        QFile::remove(*m_outputPath);
        m_outputPath.reset();
    }
}

void ScreenRecordingEngine::stopFacecam() {
    if (const std::shared_ptr<FacecamOverlay> facecam = m_samples.facecam()) {
        facecam->stop();
    }
    m_samples.setFacecam(nullptr);
}

void ScreenRecordingEngine::cancelTimers() {
    for (std::shared_ptr<std::atomic<bool>>* cancelled : {&m_maxDurationCancelled, &m_elapsedTimerCancelled}) {
        if (*cancelled) {
            **cancelled = true;
            cancelled->reset();
        }
    }
}

void ScreenRecordingEngine::scheduleMaxDurationStop() {
    if (m_maxDurationCancelled) {
        *m_maxDurationCancelled = true;
    }
    m_maxDurationCancelled = std::make_shared<std::atomic<bool>>(false);
    startTask(this, runMaxDurationStop(m_maxDurationCancelled));
}

void ScreenRecordingEngine::startElapsedTimer() {
    if (m_elapsedTimerCancelled) {
        *m_elapsedTimerCancelled = true;
    }
    m_elapsedTimerCancelled = std::make_shared<std::atomic<bool>>(false);
    startTask(this, runElapsedTimer(m_elapsedTimerCancelled));
}

QCoro::Task<> ScreenRecordingEngine::runMaxDurationStop(std::shared_ptr<std::atomic<bool>> cancelled) {
    // Wall-clock time: a pause doesn't extend it.
    const auto limit = std::chrono::milliseconds(qint64(m_configuration.maxDurationSeconds * 1000.0));
    QCoro::Task<> sleeping = m_services.sleeper(limit);
    co_await std::move(sleeping);
    if (!*cancelled && onMaxDurationReached) {
        onMaxDurationReached();
    }
}

QCoro::Task<> ScreenRecordingEngine::runElapsedTimer(std::shared_ptr<std::atomic<bool>> cancelled) {
    while (true) {
        QCoro::Task<> sleeping = m_services.sleeper(timerTick);
        co_await std::move(sleeping);
        if (*cancelled) {
            co_return;
        }
        tick();
    }
}

void ScreenRecordingEngine::tick() {
    // While paused time and estimate stand still.
    if (!m_isRecording || m_isPaused) {
        return;
    }
    if (m_recordingStartTime) {
        m_elapsedSeconds = secondsBetween(*m_recordingStartTime, m_services.clock()) - m_accumulatedPause;
    }
    const qint64 bytes = RecordingSizeEstimate::estimatedFileBytes(m_configuration, m_elapsedSeconds);
    m_estimatedFileBytes = bytes;
    if (onElapsedUpdate) {
        onElapsedUpdate(m_elapsedSeconds, bytes);
    }
    // Not once only: every tick above the line says it again, with the new figure.
    if (const std::optional<QString> warning = RecordingSizeEstimate::sizeWarning(bytes); warning && onSizeWarning) {
        onSizeWarning(*warning);
    }
}
