#pragma once

#include "core/platform/MovieWriter.h"
#include "core/recording/FacecamOverlay.h"
#include "core/recording/FramePool.h"
#include "core/recording/RecordingConfiguration.h"
#include "core/recording/ScreenRecordingError.h"

#include <QMutex>
#include <QString>
#include <QUrl>
#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <variant>

class SerialQueue;

// The finished movie of a recording.
struct FinishedRecording {
    QUrl url;
    double duration = 0;
    bool microphoneAudioSaved = false;
};

// The part of a screen recording that decides, frame by frame and sample by sample, what reaches
// the movie: it makes the writer from the first whole frame, holds that frame back until the
// microphone has spoken, starts the movie at it and moves every later time to count from there.
// Everything but the few calls marked otherwise runs on the recording's writer queue.
class RecordingSampleWriter {
public:
    // What the writer tells the recording; called on the writer queue.
    struct Events {
        std::function<void()> micSamplesReceived;
        std::function<void()> micConnected;
        std::function<void(QString)> audioWriteFailed;
    };
    using Outcome = std::variant<FinishedRecording, ScreenRecordingError>;

    RecordingSampleWriter(MovieWriterFactory& writers, SerialQueue& queue, Events events);

    // Before capture starts, from any thread: a new movie at `outputPath`.
    void reset(const QString& outputPath, const RecordingConfiguration& configuration);
    void setConfiguration(const RecordingConfiguration& configuration);
    // From any thread.
    void setFacecam(std::shared_ptr<FacecamOverlay> facecam);
    std::shared_ptr<FacecamOverlay> facecam() const;
    // From any thread: frames and samples are refused from now on.
    void refuseSamples() { m_isStopping = true; }

    void appendVideoSampleBuffer(const VideoFrame& frame);
    void appendMicrophoneSampleBuffer(const AudioBuffer& buffer);
    // Ends the movie and hands over what came of it, on the writer queue.
    void finalizeWriting(double duration, std::function<void(Outcome)> continuation);
    // Drops the movie unfinished.
    void cancelWriting();

private:
    void ensureWriter(const VideoFrame& frame);
    void startSessionAt(const VideoFrame& frame);
    void appendVideoFrame(const VideoFrame& frame);
    std::optional<VideoFrame> composedFrame(const VideoFrame& frame, FacecamOverlay& facecam);
    void appendRebasedVideo(const VideoFrame& frame);
    bool ensureAudioInput(const AudioBuffer& buffer);
    void tryStartSessionIfReady();
    void reportMicSamplesReceivedIfNeeded();
    void countAudioAppend(bool accepted);
    bool writerHasFailed() const;
    void completeWriting(double duration, bool microphoneAudioSaved, const std::function<void(Outcome)>& continuation);
    void cleanupWriterState();

    MovieWriterFactory& m_writers;
    SerialQueue& m_queue;
    const Events m_events;

    RecordingConfiguration m_configuration;
    QString m_outputPath;
    std::unique_ptr<MovieWriter> m_writer;
    bool m_hasAudioInput = false;
    std::atomic<bool> m_isStopping = false;
    bool m_sessionStarted = false;
    std::optional<qint64> m_writerSessionStartPTS;
    std::optional<VideoFrame> m_pendingSessionStartBuffer;
    bool m_micSamplesReceivedReported = false;
    std::unique_ptr<FramePool> m_pixelBufferPool;
    int m_audioSamplesAppended = 0;
    int m_consecutiveAudioAppendFailures = 0;
    bool m_reportedAudioAppendFailure = false;

    mutable QMutex m_facecamLock;
    std::shared_ptr<FacecamOverlay> m_facecam;
};
