#pragma once

#include "core/async/Sleeper.h"
#include "core/compose/StagedAttachment.h"
#include "core/platform/ScreenContentPicker.h"
#include "core/recording/PendingRecordingPreview.h"
#include "core/recording/RecordingConfiguration.h"
#include "core/recording/RecordingPanels.h"
#include "core/recording/ScreenRecordingEngine.h"
#include "core/recording/ScreenRecordingError.h"
#include "core/recording/ScreenRecordingStartMode.h"

#include <QObject>
#include <QPointer>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <variant>

class RecordingCountdown;

// Runs one recording from the choice of what to record to a staged attachment: the picker, the
// countdown, the recording with its floating controls, the review, and the decision to attach,
// record again or discard. The panels read its state and call its operations; whoever starts a
// recording learns its end through `completion`, or `previewCancelledCompletion` when the person
// discards the movie under review. Main thread only.
class ScreenRecordingCoordinator : public QObject, private ScreenContentPickerObserver {
    Q_OBJECT
    Q_PROPERTY(bool isActive READ isActive NOTIFY changed)
    Q_PROPERTY(bool isRecording READ isRecording NOTIFY changed)
    Q_PROPERTY(bool isPaused READ isPaused NOTIFY changed)
    Q_PROPERTY(double elapsedSeconds READ elapsedSeconds NOTIFY changed)
    Q_PROPERTY(qint64 estimatedFileBytes READ estimatedFileBytes NOTIFY changed)
    Q_PROPERTY(bool micIsReceiving READ micIsReceiving NOTIFY changed)
    Q_PROPERTY(bool micSamplesReceivedFromSystem READ micSamplesReceivedFromSystem NOTIFY changed)

public:
    static constexpr int countdownSeconds = 5;
    // The microphone watchdog looks this long after recording began, and once more after that.
    static constexpr std::chrono::milliseconds micWatchdogInterval{2500};

    using Outcome = std::variant<StagedAttachment, ScreenRecordingError>;

    struct Services {
        std::function<std::unique_ptr<ScreenRecordingEngine>(const RecordingConfiguration&)> makeEngine;
        ScreenContentPicker& picker;
        RecordingPanels& panels;
        // Tells the capture what the countdown will end in, so that it can be ready by then.
        std::function<void(const CaptureTarget&, const RecordingConfiguration&)> prepareCapture =
            [](const CaptureTarget&, const RecordingConfiguration&) {};
        // The countdown's seconds and the watchdog's waits.
        Sleeper sleeper = Sleepers::real();
    };

    explicit ScreenRecordingCoordinator(Services services, QObject* parent = nullptr);
    ~ScreenRecordingCoordinator() override;

    bool isActive() const { return m_isActive; }
    bool isRecording() const { return m_isRecording; }
    bool isPaused() const { return m_isPaused; }
    double elapsedSeconds() const { return m_elapsedSeconds; }
    qint64 estimatedFileBytes() const { return m_estimatedFileBytes; }
    // The size warning, and the other news of a recording that doesn't end it.
    const std::optional<QString>& sizeWarning() const { return m_sizeWarning; }
    bool micIsReceiving() const { return m_micIsReceiving; }
    bool micSamplesReceivedFromSystem() const { return m_micSamplesReceivedFromSystem; }
    const std::optional<QString>& micInputWarning() const { return m_micInputWarning; }
    const RecordingConfiguration& configuration() const { return m_configuration; }
    void setConfiguration(const RecordingConfiguration& configuration);
    const std::optional<PendingRecordingPreview>& pendingPreview() const { return m_pendingPreview; }
    const ScreenRecordingStartMode& startMode() const { return m_startMode; }
    void setStartMode(const ScreenRecordingStartMode& mode);
    ScreenContentPicker& picker() const { return m_services.picker; }
    // Whether a picker this coordinator opened is waiting for the person's choice.
    bool awaitingPickerSelection() const { return m_awaitingPickerSelection; }

    // The end of the recording: the staged movie or why there is none.
    std::function<void(Outcome)> completion;
    // The person discarded the movie under review.
    std::function<void(std::optional<ScreenRecordingError>)> previewCancelledCompletion;
    // Runs after the review's attach button has done its work, whatever came of it.
    std::function<void()> onPreviewReady;

    // Opens the picker for this workflow.
    void presentPicker();
    void startCountdownThenRecord(const CaptureTarget& filter);
    QCoro::Task<> startRecording(CaptureTarget filter);
    // The controls' buttons.
    void stopRecording();
    void pauseOrResume();
    void toggleFacecam();
    // The review's buttons.
    void attachPreview();
    void reRecordPreview();
    void discardPreview();

signals:
    void changed();

private:
    void contentPickerDidSelect(const CaptureTarget& target) override;
    void contentPickerDidCancel() override;
    void contentPickerStartDidFail(const QString& description) override;
    void tearDownPicker();

    void showCountdown(int seconds, std::function<void()> onFinished);
    void connectEngine(ScreenRecordingEngine& engine);
    QCoro::Task<> enableFacecam();
    QCoro::Task<> switchPause();
    QCoro::Task<> finishRecording();
    QCoro::Task<> failFinish(std::exception_ptr failure);
    void openReview(const FinishedRecording& recording);
    void refuseRecording(const QUrl& movie, const QString& reason);
    void dismissControls();
    void finishWith(Outcome outcome);
    // Runs `job` on a later turn of the main thread's loop, while this object lives.
    void later(std::function<void()> job);

    void resetMicMonitoring();
    void markMicSamplesReceivedFromSystem();
    void markMicConnected();
    void startMicWatchdogIfNeeded();
    void cancelMicWatchdog();
    QCoro::Task<> runMicWatchdog(std::shared_ptr<bool> cancelled);

    // Setters of the observed state; each tells of a change.
    void setActive(bool active);
    void setRecording(bool recording);
    void setPaused(bool paused);
    void setSizeWarning(std::optional<QString> warning);
    void setMicInputWarning(std::optional<QString> warning);
    void setPendingPreview(std::optional<PendingRecordingPreview> preview);

    Services m_services;
    bool m_isActive = false;
    bool m_isRecording = false;
    bool m_isPaused = false;
    double m_elapsedSeconds = 0;
    qint64 m_estimatedFileBytes = 0;
    std::optional<QString> m_sizeWarning;
    bool m_micIsReceiving = false;
    bool m_micSamplesReceivedFromSystem = false;
    std::optional<QString> m_micInputWarning;
    RecordingConfiguration m_configuration;
    std::optional<PendingRecordingPreview> m_pendingPreview;
    ScreenRecordingStartMode m_startMode = ScreenRecordingStartModes::AppendToDraft{};
    std::unique_ptr<ScreenRecordingEngine> m_engine;
    bool m_controlsShown = false;
    QPointer<RecordingCountdown> m_countdown;
    // What the person chose, kept through the countdown.
    std::optional<CaptureTarget> m_pendingFilter;
    bool m_pickerObserverRegistered = false;
    bool m_awaitingPickerSelection = false;
    bool m_isFinishingRecording = false;
    // Set to end the running watchdog.
    std::shared_ptr<bool> m_micWatchdogCancelled;
};
