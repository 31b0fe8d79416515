#include "core/recording/RecordingSampleWriter.h"

#include "core/async/SerialQueue.h"
#include "core/recording/FacecamPlacement.h"
#include "core/recording/SampleRebasing.h"

#include <QCoreApplication>
#include <QFile>
#include <QMutexLocker>

namespace {
// Refused microphone samples in a row before the person hears of it.
constexpr int maxConsecutiveAudioAppendFailures = 30;

// The context lupdate gives the texts of this class's functions.
QString tr(const char* text) {
    return QCoreApplication::translate("RecordingSampleWriter", text);
}

int even(int pixels) {
    return pixels & ~1;
}
} // namespace

RecordingSampleWriter::RecordingSampleWriter(MovieWriterFactory& writers, SerialQueue& queue, Events events)
    : m_writers(writers)
    , m_queue(queue)
    , m_events(std::move(events)) {}

void RecordingSampleWriter::reset(const QString& outputPath, const RecordingConfiguration& configuration) {
    m_configuration = configuration;
    m_outputPath = outputPath;
    m_writer.reset();
    m_hasAudioInput = false;
    m_isStopping = false;
    m_sessionStarted = false;
    m_writerSessionStartPTS.reset();
    m_pendingSessionStartBuffer.reset();
    m_micSamplesReceivedReported = false;
    m_pixelBufferPool.reset();
    m_audioSamplesAppended = 0;
    m_consecutiveAudioAppendFailures = 0;
    m_reportedAudioAppendFailure = false;
}

void RecordingSampleWriter::setConfiguration(const RecordingConfiguration& configuration) {
    m_configuration = configuration;
    if (const std::shared_ptr<FacecamOverlay> overlay = facecam()) {
        overlay->setStyle(configuration.facecamStyle);
    }
}

void RecordingSampleWriter::setFacecam(std::shared_ptr<FacecamOverlay> facecam) {
    const QMutexLocker locker(&m_facecamLock);
    m_facecam = std::move(facecam);
}

std::shared_ptr<FacecamOverlay> RecordingSampleWriter::facecam() const {
    const QMutexLocker locker(&m_facecamLock);
    return m_facecam;
}

void RecordingSampleWriter::appendVideoSampleBuffer(const VideoFrame& frame) {
    if (m_isStopping || !isCompleteVideoFrame(frame)) {
        return;
    }
    if (!m_writer) {
        try {
            ensureWriter(frame);
        } catch (const ScreenRecordingError&) {
            // The next frame tries again.
            return;
        }
    }
    if (!m_writer || writerHasFailed()) {
        return;
    }
    if (m_configuration.captureMicrophone && !m_hasAudioInput) {
        // A writer takes no new input once it has started, so the movie waits for the microphone's
        // first sample; only the first frame survives the wait.
        if (!m_pendingSessionStartBuffer) {
            m_pendingSessionStartBuffer = frame;
        }
        return;
    }
    if (!m_sessionStarted) {
        startSessionAt(frame);
    }
    appendVideoFrame(frame);
}

void RecordingSampleWriter::ensureWriter(const VideoFrame& frame) {
    if (m_writer || m_outputPath.isEmpty()) {
        return;
    }
    if (frame.pixels.isNull()) {
        throw ScreenRecordingError::writerFailed(tr("Missing video frame data."));
    }
    std::unique_ptr<MovieWriter> writer = m_writers.makeWriter(m_outputPath);
    const QSize size(even(frame.pixels.width()), even(frame.pixels.height()));
    if (!writer->addVideoInput({size, averageBitRate(m_configuration.quality), recordingFramesPerSecond})) {
        throw ScreenRecordingError::writerFailed(tr("Could not configure video writer."));
    }
    m_writer = std::move(writer);
    if (!m_pixelBufferPool) {
        m_pixelBufferPool = FramePool::create(frame.pixels.size());
    }
}

void RecordingSampleWriter::startSessionAt(const VideoFrame& frame) {
    m_writer->startWriting();
    m_writer->startSession(0);
    m_writerSessionStartPTS = frame.timing.presentation;
    m_sessionStarted = true;
}

void RecordingSampleWriter::appendVideoFrame(const VideoFrame& frame) {
    // Capture is real time: a frame the writer can't take now is lost, never waited for.
    if (!m_writer || writerHasFailed() || !m_writer->isReadyForMoreVideo() || !m_sessionStarted ||
        !m_writerSessionStartPTS || frame.pixels.isNull()) {
        return;
    }
    const std::shared_ptr<FacecamOverlay> overlay = facecam();
    if (overlay && overlay->isRunning() && m_configuration.facecamStyle.isVisible && m_pixelBufferPool) {
        if (const std::optional<VideoFrame> composed = composedFrame(frame, *overlay)) {
            appendRebasedVideo(*composed);
            return;
        }
    }
    appendRebasedVideo(frame);
}

std::optional<VideoFrame> RecordingSampleWriter::composedFrame(const VideoFrame& frame, FacecamOverlay& overlay) {
    std::optional<QImage> target = m_pixelBufferPool->take();
    if (!target || target->size() != frame.pixels.size()) {
        return std::nullopt;
    }
    const QSize size = frame.pixels.size();
    const std::optional<PlacedImage> pip = overlay.makePipImage(size);
    if (!pip) {
        return std::nullopt;
    }
    const double side = m_configuration.facecamStyle.sizeFraction * std::min(size.width(), size.height());
    const QPointF origin = FacecamPlacement::overlayOrigin(m_configuration.facecamStyle.corner, size, side);
    FacecamPlacement::composeOverlay(*target, frame.pixels, *pip, origin);
    VideoFrame composed;
    composed.timing = frame.timing;
    composed.pixels = *target;
    return composed;
}

void RecordingSampleWriter::appendRebasedVideo(const VideoFrame& frame) {
    const std::optional<VideoFrame> rebased = rebasedSampleBuffer(frame, *m_writerSessionStartPTS);
    if (rebased && !m_writer->appendVideo(*rebased) && writerHasFailed()) {
        m_isStopping = true;
    }
}

void RecordingSampleWriter::appendMicrophoneSampleBuffer(const AudioBuffer& buffer) {
    // A sample before the first frame finds no writer: it is lost and says nothing.
    if (m_isStopping || !m_configuration.captureMicrophone || !buffer.dataReady || !m_writer) {
        return;
    }
    reportMicSamplesReceivedIfNeeded();
    if (!m_hasAudioInput && !m_sessionStarted && !ensureAudioInput(buffer)) {
        return;
    }
    if (!m_sessionStarted) {
        tryStartSessionIfReady();
        if (!m_sessionStarted) {
            return;
        }
    }
    if (!m_writerSessionStartPTS || !m_hasAudioInput || writerHasFailed() || !m_writer->isReadyForMoreAudio()) {
        return;
    }
    // A sample older than the first frame moves below zero, and the writer is the judge of it.
    const std::optional<AudioBuffer> rebased = rebasedSampleBuffer(buffer, *m_writerSessionStartPTS);
    if (!rebased) {
        return;
    }
    countAudioAppend(m_writer->appendAudio(*rebased));
}

bool RecordingSampleWriter::ensureAudioInput(const AudioBuffer& buffer) {
    try {
        if (!buffer.format) {
            throw ScreenRecordingError::writerFailed(tr("Missing microphone format."));
        }
        if (!m_writer->addAudioInput(*buffer.format)) {
            throw ScreenRecordingError::writerFailed(tr("Could not configure audio writer."));
        }
    } catch (const ScreenRecordingError&) {
        // The sample is lost; the next one tries again.
        return false;
    }
    m_hasAudioInput = true;
    return true;
}

void RecordingSampleWriter::tryStartSessionIfReady() {
    if (m_sessionStarted || !m_configuration.captureMicrophone || !m_hasAudioInput || !m_pendingSessionStartBuffer) {
        return;
    }
    const VideoFrame pending = *std::exchange(m_pendingSessionStartBuffer, std::nullopt);
    if (m_writer) {
        startSessionAt(pending);
    }
    appendVideoFrame(pending);
}

void RecordingSampleWriter::reportMicSamplesReceivedIfNeeded() {
    if (!m_micSamplesReceivedReported) {
        m_micSamplesReceivedReported = true;
        m_events.micSamplesReceived();
    }
}

void RecordingSampleWriter::countAudioAppend(bool accepted) {
    if (accepted) {
        m_consecutiveAudioAppendFailures = 0;
        if (++m_audioSamplesAppended == 1) {
            m_events.micConnected();
        }
        return;
    }
    if (writerHasFailed()) {
        m_isStopping = true;
        return;
    }
    // Told once per recording, on the size warning's way, even after samples got through again.
    if (++m_consecutiveAudioAppendFailures == maxConsecutiveAudioAppendFailures && !m_reportedAudioAppendFailure) {
        m_reportedAudioAppendFailure = true;
        m_events.audioWriteFailed(tr("Microphone audio could not be written to the recording file."));
    }
}

bool RecordingSampleWriter::writerHasFailed() const {
    return m_writer->status() == MovieWriter::Status::failed;
}

void RecordingSampleWriter::finalizeWriting(double duration, std::function<void(Outcome)> continuation) {
    if (!m_writer || m_outputPath.isEmpty()) {
        continuation(ScreenRecordingError::writerFailed(
            tr("No video data was captured. Try recording for at least a few seconds.")));
        return;
    }
    if (!m_sessionStarted) {
        m_writer->cancelWriting();
        cleanupWriterState();
        continuation(ScreenRecordingError::writerFailed(
            tr("No video frames were captured. Check that screen sharing is allowed in the desktop's settings.")));
        return;
    }
    m_writer->markVideoFinished();
    bool microphoneAudioSaved = true;
    if (!m_configuration.captureMicrophone) {
        if (m_hasAudioInput) {
            m_writer->markAudioFinished();
        }
    } else if (!m_hasAudioInput) {
        microphoneAudioSaved = m_audioSamplesAppended > 0;
    } else if (m_audioSamplesAppended > 0) {
        m_writer->markAudioFinished();
    } else {
        m_hasAudioInput = false;
        microphoneAudioSaved = false;
    }
    m_writer->finishWriting([this, duration, microphoneAudioSaved, continuation = std::move(continuation)] {
        m_queue.post([this, duration, microphoneAudioSaved, continuation] {
            completeWriting(duration, microphoneAudioSaved, continuation);
        });
    });
}

void RecordingSampleWriter::completeWriting(double duration, bool microphoneAudioSaved,
                                            const std::function<void(Outcome)>& continuation) {
    const QString path = m_outputPath;
    const MovieWriter::Status status = m_writer->status();
    const std::optional<MovieWriter::Error> error = m_writer->error();
    cleanupWriterState();
    if (status == MovieWriter::Status::completed && QFile::exists(path)) {
        continuation(FinishedRecording{QUrl::fromLocalFile(path), duration, microphoneAudioSaved});
        return;
    }
    // The person reads "Recording failed" twice, as the error's description adds its own.
    const QString reason = error ? tr("Recording failed (%1): %2").arg(error->code).arg(error->description)
                                 : tr("Recording failed: %1").arg(tr("Unknown error"));
    continuation(ScreenRecordingError::writerFailed(reason));
}

void RecordingSampleWriter::cancelWriting() {
    if (m_writer) {
        m_writer->cancelWriting();
    }
    cleanupWriterState();
}

void RecordingSampleWriter::cleanupWriterState() {
    m_writer.reset();
    m_hasAudioInput = false;
    m_pixelBufferPool.reset();
    m_pendingSessionStartBuffer.reset();
    m_writerSessionStartPTS.reset();
    m_micSamplesReceivedReported = false;
    m_audioSamplesAppended = 0;
    m_sessionStarted = false;
    m_isStopping = false;
}
