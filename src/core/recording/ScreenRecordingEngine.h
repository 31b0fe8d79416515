#pragma once

#include "core/async/Clock.h"
#include "core/async/SerialQueue.h"
#include "core/async/Sleeper.h"
#include "core/platform/CaptureStream.h"
#include "core/platform/MicrophoneAccess.h"
#include "core/platform/MovieWriter.h"
#include "core/recording/FacecamOverlay.h"
#include "core/recording/RecordingConfiguration.h"
#include "core/recording/RecordingSampleWriter.h"

#include <QDateTime>
#include <QObject>
#include <QUrl>
#include <atomic>
#include <functional>
#include <memory>
#include <optional>

// Turns one screen capture and, on request, the microphone and the camera overlay into one
// QuickTime movie in the temporary folder. One engine serves one recording: start, pause and
// resume any number of times, then stop for the movie or cancel to leave nothing behind. The
// callbacks, set before start, run on the thread that made the engine.
class ScreenRecordingEngine : public QObject {
    Q_OBJECT

public:
    // What the engine records through.
    struct Services {
        ScreenCaptureService& capture;
        MovieWriterFactory& writers;
        MicrophoneAccess& microphone;
        std::function<std::unique_ptr<FacecamOverlay>(const FacecamStyle&)> makeFacecam;
        Clock clock = Clocks::system();
        Sleeper sleeper = Sleepers::real();
        // The queue frames and samples are handled on; a thread of its own unless a test says.
        std::function<std::unique_ptr<SerialQueue>()> makeWriterQueue = [] {
            return SerialQueue::onOwnThread(QStringLiteral("com.norvanebar.recording.writer"));
        };
    };
    // The movie of a stopped recording; its duration leaves the pauses out.
    using Recording = FinishedRecording;

    ScreenRecordingEngine(const RecordingConfiguration& configuration, Services services);
    ~ScreenRecordingEngine() override;

    // Lets the capture get ready for a recording of the target so configured, started in a few
    // seconds.
    static void prepareCapture(ScreenCaptureService& capture, const CaptureTarget& target,
                               const RecordingConfiguration& configuration);

    void updateConfiguration(const RecordingConfiguration& configuration);
    QCoro::Task<> setFacecamEnabled(bool enabled);
    QCoro::Task<> start(CaptureTarget target);
    QCoro::Task<> pause();
    QCoro::Task<> resume();
    QCoro::Task<Recording> stop();
    QCoro::Task<> cancel();

    bool isRecording() const { return m_isRecording; }
    bool isPaused() const { return m_isPaused; }
    double elapsedSeconds() const { return m_elapsedSeconds; }
    qint64 estimatedFileBytes() const { return m_estimatedFileBytes; }
    // The camera of the recording while it has one, started or starting.
    std::shared_ptr<FacecamOverlay> facecam() const { return m_samples.facecam(); }
    // The movie being written, while there is one.
    std::optional<QString> outputPath() const { return m_outputPath; }

    // Recording time without the pauses, and the file size it suggests, every half second.
    std::function<void(double seconds, qint64 bytes)> onElapsedUpdate;
    // The size warning, and also the news that the microphone's sound can't be written.
    std::function<void(QString)> onSizeWarning;
    std::function<void()> onMaxDurationReached;
    // The microphone's first sample arrived once the movie had a writer.
    std::function<void()> onMicSamplesReceived;
    // The movie took the microphone's first sample.
    std::function<void()> onMicConnected;

private:
    QCoro::Task<> ensureMicrophoneAccess();
    void receiveVideo(VideoFrame frame);
    void receiveMicrophone(AudioBuffer buffer);
    void onMainThread(std::function<void()> job);
    template <typename T> QCoro::Task<T> onWriterQueue(std::function<void(std::function<void(T)>)> job);
    void cancelTimers();
    void scheduleMaxDurationStop();
    void startElapsedTimer();
    QCoro::Task<> runMaxDurationStop(std::shared_ptr<std::atomic<bool>> cancelled);
    QCoro::Task<> runElapsedTimer(std::shared_ptr<std::atomic<bool>> cancelled);
    void tick();
    void stopFacecam();

    RecordingConfiguration m_configuration;
    Services m_services;
    std::unique_ptr<SerialQueue> m_writerQueue;
    RecordingSampleWriter m_samples;
    std::unique_ptr<CaptureStream> m_stream;
    std::optional<QString> m_outputPath;

    std::atomic<int> m_framesInFlight = 0;
    std::atomic<bool> m_isRecording = false;
    std::atomic<bool> m_isPaused = false;
    std::optional<QDateTime> m_recordingStartTime;
    double m_accumulatedPause = 0;
    std::optional<QDateTime> m_pauseBeganAt;
    double m_elapsedSeconds = 0;
    qint64 m_estimatedFileBytes = 0;
    // Set to end the running timers; each timer holds its own.
    std::shared_ptr<std::atomic<bool>> m_maxDurationCancelled;
    std::shared_ptr<std::atomic<bool>> m_elapsedTimerCancelled;
};
