#include "core/shell/ScreenRecordingCoordinator.h"

#include "core/async/LoadGuard.h"
#include "core/async/StartTask.h"
#include "core/compose/AttachmentSizeLimits.h"
#include "core/compose/AttachmentStaging.h"
#include "core/recording/RecordingCountdown.h"
#include "core/support/Overloaded.h"

#include <QFile>
#include <QTimer>

namespace {
QString noMicrophoneSignal() {
    return ScreenRecordingCoordinator::tr(
        "No microphone signal from system. Check that a microphone is connected and not muted in the sound settings.");
}

// A failure of the workflow as the person is told of it: a recording's own failure as it is,
// anything else as a failed writer.
ScreenRecordingError recordingErrorOf(std::exception_ptr failure) {
    try {
        std::rethrow_exception(failure);
    } catch (const ScreenRecordingError& error) {
        return error;
    } catch (const std::exception& error) {
        return ScreenRecordingError::writerFailed(QString::fromUtf8(error.what()));
    } catch (...) {
        return ScreenRecordingError::writerFailed(ScreenRecordingCoordinator::tr("Unknown error."));
    }
}

// What a failure that doesn't end the recording says in the controls.
QString descriptionOf(std::exception_ptr failure) {
    return recordingErrorOf(std::move(failure)).errorDescription().value_or(QString());
}

void removeMovie(const QUrl& movie) {
    QFile::remove(movie.toLocalFile());
}
} // namespace

ScreenRecordingCoordinator::ScreenRecordingCoordinator(Services services, QObject* parent)
    : QObject(parent)
    , m_services(std::move(services)) {}

ScreenRecordingCoordinator::~ScreenRecordingCoordinator() {
    cancelMicWatchdog();
    tearDownPicker();
}

void ScreenRecordingCoordinator::setConfiguration(const RecordingConfiguration& configuration) {
    if (m_configuration != configuration) {
        m_configuration = configuration;
        emit changed();
    }
}

void ScreenRecordingCoordinator::setStartMode(const ScreenRecordingStartMode& mode) {
    if (m_startMode != mode) {
        m_startMode = mode;
        emit changed();
    }
}

// Picker

void ScreenRecordingCoordinator::presentPicker() {
    m_awaitingPickerSelection = true;
    if (!m_pickerObserverRegistered) {
        m_services.picker.addObserver(this);
        m_pickerObserverRegistered = true;
    }
    m_services.picker.setActive(true);
    m_services.picker.present(m_configuration.showCursor);
}

void ScreenRecordingCoordinator::contentPickerDidSelect(const CaptureTarget& target) {
    if (!std::exchange(m_awaitingPickerSelection, false)) {
        return;
    }
    // The picker stays active while recording, so that its later events are ignored.
    startCountdownThenRecord(target);
}

void ScreenRecordingCoordinator::contentPickerDidCancel() {
    if (!std::exchange(m_awaitingPickerSelection, false)) {
        return;
    }
    tearDownPicker();
    if (!m_pendingPreview) {
        finishWith(ScreenRecordingError(ScreenRecordingError::Cancelled{}));
    }
}

void ScreenRecordingCoordinator::contentPickerStartDidFail(const QString& description) {
    if (!std::exchange(m_awaitingPickerSelection, false)) {
        return;
    }
    tearDownPicker();
    finishWith(ScreenRecordingError::writerFailed(description));
}

void ScreenRecordingCoordinator::tearDownPicker() {
    if (m_pickerObserverRegistered) {
        m_services.picker.removeObserver(this);
        m_services.picker.setActive(false);
        m_pickerObserverRegistered = false;
    }
}

// Countdown and start

void ScreenRecordingCoordinator::startCountdownThenRecord(const CaptureTarget& filter) {
    m_pendingFilter = filter;
    setActive(true);
    m_services.prepareCapture(filter, m_configuration);
    showCountdown(countdownSeconds, [this] {
        if (const std::optional<CaptureTarget> filter = std::exchange(m_pendingFilter, std::nullopt)) {
            startTask(this, startRecording(*filter));
        }
    });
}

void ScreenRecordingCoordinator::showCountdown(int seconds, std::function<void()> onFinished) {
    if (m_countdown) {
        m_services.panels.closeCountdown();
        m_countdown->deleteLater();
    }
    m_countdown = new RecordingCountdown(seconds, m_services.sleeper, this);
    m_services.panels.showCountdown(*m_countdown);
    m_countdown->start([this, onFinished = std::move(onFinished)] {
        m_services.panels.closeCountdown();
        m_countdown->deleteLater();
        m_countdown = nullptr;
        onFinished();
    });
}

QCoro::Task<> ScreenRecordingCoordinator::startRecording(CaptureTarget filter) {
    const LoadGuard guard(this);
    resetMicMonitoring();
    // The controls count the new movie from nothing, not on from the last one.
    m_elapsedSeconds = 0;
    m_estimatedFileBytes = 0;
    emit changed();
    m_engine = m_services.makeEngine(m_configuration);
    ScreenRecordingEngine* engine = m_engine.get();
    connectEngine(*engine);

    if (m_configuration.includeFacecam && m_configuration.facecamStyle.isVisible) {
        QCoro::Task<bool> enabling = awaitGuarded(guard, enableFacecam());
        if (!co_await std::move(enabling)) {
            co_return;
        }
    }

    std::exception_ptr failure;
    try {
        QCoro::Task<> starting = engine->start(std::move(filter));
        co_await std::move(starting);
    } catch (...) {
        failure = std::current_exception();
    }
    if (!guard.holds()) {
        co_return;
    }
    if (failure) {
        m_services.panels.dismissFacecamPreview();
        QCoro::Task<bool> cancelling = awaitGuarded(guard, engine->cancel());
        if (!co_await std::move(cancelling)) {
            co_return;
        }
        m_engine.reset();
        setActive(false);
        finishWith(recordingErrorOf(failure));
        tearDownPicker();
        co_return;
    }
    setRecording(true);
    setPaused(false);
    m_services.panels.showControls();
    m_controlsShown = true;
    startMicWatchdogIfNeeded();
}

void ScreenRecordingCoordinator::connectEngine(ScreenRecordingEngine& engine) {
    engine.onElapsedUpdate = [this](double seconds, qint64 bytes) {
        later([this, seconds, bytes] {
            m_elapsedSeconds = seconds;
            m_estimatedFileBytes = bytes;
            emit changed();
        });
    };
    engine.onSizeWarning = [this](const QString& warning) { later([this, warning] { setSizeWarning(warning); }); };
    engine.onMaxDurationReached = [this] {
        later([this] {
            if (m_engine && !m_isFinishingRecording) {
                startTask(this, finishRecording());
            }
        });
    };
    engine.onMicSamplesReceived = [this] { later([this] { markMicSamplesReceivedFromSystem(); }); };
    engine.onMicConnected = [this] { later([this] { markMicConnected(); }); };
}

void ScreenRecordingCoordinator::later(std::function<void()> job) {
    QMetaObject::invokeMethod(this, std::move(job), Qt::QueuedConnection);
}

// Camera

QCoro::Task<> ScreenRecordingCoordinator::enableFacecam() {
    const LoadGuard guard(this);
    std::exception_ptr failure;
    try {
        QCoro::Task<> enabling = m_engine->setFacecamEnabled(true);
        co_await std::move(enabling);
    } catch (...) {
        failure = std::current_exception();
    }
    if (!guard.holds() || !m_engine) {
        co_return;
    }
    if (failure) {
        // The recording goes on without the camera. Before it starts, the controls say so.
        RecordingConfiguration configuration = m_configuration;
        configuration.includeFacecam = false;
        configuration.facecamStyle.isVisible = false;
        setConfiguration(configuration);
        m_services.panels.dismissFacecamPreview();
        const QString description = descriptionOf(failure);
        setSizeWarning(m_isRecording ? description : tr("Facecam unavailable: ") + description);
        co_return;
    }
    if (const std::shared_ptr<FacecamOverlay> facecam = m_engine->facecam()) {
        m_services.panels.showFacecamPreview(*facecam, m_configuration.facecamStyle);
    }
}

void ScreenRecordingCoordinator::toggleFacecam() {
    if (!m_engine) {
        return;
    }
    RecordingConfiguration configuration = m_configuration;
    const bool visible = !configuration.facecamStyle.isVisible;
    configuration.facecamStyle.isVisible = visible;
    configuration.includeFacecam = visible;
    setConfiguration(configuration);
    m_engine->updateConfiguration(configuration);

    const std::shared_ptr<FacecamOverlay> facecam = m_engine->facecam();
    if (facecam && visible) {
        m_services.panels.showFacecamPreview(*facecam, configuration.facecamStyle);
    } else if (!visible) {
        m_services.panels.dismissFacecamPreview();
    }
    if (visible) {
        startTask(this, enableFacecam());
    } else {
        // The camera's light goes out.
        startTask(this, m_engine->setFacecamEnabled(false));
    }
}

// Pause

void ScreenRecordingCoordinator::pauseOrResume() {
    if (m_engine) {
        startTask(this, switchPause());
    }
}

QCoro::Task<> ScreenRecordingCoordinator::switchPause() {
    const LoadGuard guard(this);
    const bool wasPaused = m_isPaused;
    std::exception_ptr failure;
    try {
        QCoro::Task<> switching = wasPaused ? m_engine->resume() : m_engine->pause();
        co_await std::move(switching);
    } catch (...) {
        failure = std::current_exception();
    }
    if (!guard.holds()) {
        co_return;
    }
    if (failure) {
        setSizeWarning(descriptionOf(failure));
    } else {
        setPaused(!wasPaused);
    }
}

// Finish

void ScreenRecordingCoordinator::stopRecording() {
    if (m_engine) {
        startTask(this, finishRecording());
    }
}

QCoro::Task<> ScreenRecordingCoordinator::finishRecording() {
    if (m_isFinishingRecording || !m_engine) {
        co_return;
    }
    m_isFinishingRecording = true;
    cancelMicWatchdog();
    const LoadGuard guard(this);
    std::optional<FinishedRecording> recording;
    std::exception_ptr failure;
    try {
        QCoro::Task<FinishedRecording> stopping = m_engine->stop();
        recording = co_await std::move(stopping);
    } catch (...) {
        failure = std::current_exception();
    }
    if (!guard.holds()) {
        if (recording) {
            removeMovie(recording->url);
        }
        co_return;
    }
    if (failure) {
        QCoro::Task<> failing = failFinish(failure);
        co_await std::move(failing);
        co_return;
    }
    m_engine.reset();
    dismissControls();
    m_services.panels.dismissFacecamPreview();
    setRecording(false);
    setPaused(false);
    setActive(false);
    tearDownPicker();
    openReview(*recording);
}

void ScreenRecordingCoordinator::openReview(const FinishedRecording& recording) {
    const std::optional<qint64> size = AttachmentSizeLimits::fileSize(recording.url);
    if (!size) {
        refuseRecording(recording.url, tr("Could not read file size."));
        return;
    }
    std::optional<QString> text;
    const AttachmentSizeLimits::ValidationResult validation = AttachmentSizeLimits::validate(*size);
    if (const auto* rejected = std::get_if<AttachmentSizeLimits::Rejected>(&validation)) {
        refuseRecording(recording.url, rejected->message);
        return;
    }
    if (const auto* warning = std::get_if<AttachmentSizeLimits::Warning>(&validation)) {
        text = warning->message;
    }
    if (m_configuration.captureMicrophone && !recording.microphoneAudioSaved) {
        const QString silent = tr("Microphone was enabled but no audio was saved.");
        text = text ? *text + QStringLiteral("\n\n") + silent : silent;
    }
    setSizeWarning(text);
    setPendingPreview(PendingRecordingPreview{recording.url, recording.duration, m_startMode, text});
    later([this] {
        if (!m_pendingPreview) {
            return;
        }
        m_services.panels.showReview(
            *m_pendingPreview,
            [this] {
                attachPreview();
                if (onPreviewReady) {
                    onPreviewReady();
                }
            },
            [this] { reRecordPreview(); }, [this] { discardPreview(); });
    });
    m_isFinishingRecording = false;
}

void ScreenRecordingCoordinator::refuseRecording(const QUrl& movie, const QString& reason) {
    removeMovie(movie);
    finishWith(ScreenRecordingError(ScreenRecordingError::FileTooLarge{reason}));
    m_isFinishingRecording = false;
}

QCoro::Task<> ScreenRecordingCoordinator::failFinish(std::exception_ptr failure) {
    const LoadGuard guard(this);
    m_services.panels.dismissFacecamPreview();
    m_services.panels.dismissReview();
    QCoro::Task<bool> cancelling = awaitGuarded(guard, m_engine->cancel());
    if (!co_await std::move(cancelling)) {
        co_return;
    }
    m_engine.reset();
    dismissControls();
    setRecording(false);
    setPaused(false);
    setActive(false);
    tearDownPicker();
    finishWith(recordingErrorOf(failure));
    m_isFinishingRecording = false;
}

void ScreenRecordingCoordinator::dismissControls() {
    if (std::exchange(m_controlsShown, false)) {
        m_services.panels.hideControls();
    }
    cancelMicWatchdog();
}

void ScreenRecordingCoordinator::finishWith(Outcome outcome) {
    if (const std::function<void(Outcome)> done = std::exchange(completion, nullptr)) {
        done(std::move(outcome));
    }
}

// Review

void ScreenRecordingCoordinator::attachPreview() {
    if (!m_pendingPreview) {
        return;
    }
    const PendingRecordingPreview preview = *m_pendingPreview;
    const std::optional<qint64> size = AttachmentSizeLimits::fileSize(preview.url);
    std::optional<QString> refusal;
    if (!size) {
        refusal = tr("Could not read file size.");
    } else if (const AttachmentSizeLimits::ValidationResult validation = AttachmentSizeLimits::validate(*size);
               const auto* rejected = std::get_if<AttachmentSizeLimits::Rejected>(&validation)) {
        refusal = rejected->message;
    }
    if (refusal) {
        removeMovie(preview.url);
        finishWith(ScreenRecordingError(ScreenRecordingError::FileTooLarge{*refusal}));
    } else if (const std::optional<StagedAttachment> staged =
                   AttachmentStaging::stage(preview.url, preview.duration, true)) {
        finishWith(*staged);
    } else {
        removeMovie(preview.url);
        finishWith(ScreenRecordingError(ScreenRecordingError::StagingFailed{}));
    }
    setPendingPreview(std::nullopt);
    previewCancelledCompletion = nullptr;
    m_services.panels.dismissReview();
}

void ScreenRecordingCoordinator::reRecordPreview() {
    if (!m_pendingPreview) {
        return;
    }
    const PendingRecordingPreview preview = *m_pendingPreview;
    removeMovie(preview.url);
    setPendingPreview(std::nullopt);
    m_services.panels.dismissReview();
    presentPicker();
    setStartMode(preview.mode);
}

void ScreenRecordingCoordinator::discardPreview() {
    if (m_pendingPreview) {
        removeMovie(m_pendingPreview->url);
    }
    setPendingPreview(std::nullopt);
    m_services.panels.dismissReview();
    if (const auto cancelled = std::exchange(previewCancelledCompletion, nullptr)) {
        cancelled(ScreenRecordingError(ScreenRecordingError::Cancelled{}));
    }
    completion = nullptr;
}

// Microphone

void ScreenRecordingCoordinator::resetMicMonitoring() {
    m_micIsReceiving = false;
    m_micSamplesReceivedFromSystem = false;
    m_micInputWarning.reset();
    cancelMicWatchdog();
    emit changed();
}

void ScreenRecordingCoordinator::markMicSamplesReceivedFromSystem() {
    if (m_configuration.captureMicrophone && m_isRecording && !m_micSamplesReceivedFromSystem) {
        m_micSamplesReceivedFromSystem = true;
        emit changed();
    }
}

void ScreenRecordingCoordinator::markMicConnected() {
    if (m_configuration.captureMicrophone && m_isRecording) {
        m_micIsReceiving = true;
        m_micInputWarning.reset();
        emit changed();
    }
}

void ScreenRecordingCoordinator::startMicWatchdogIfNeeded() {
    if (!m_configuration.captureMicrophone) {
        return;
    }
    cancelMicWatchdog();
    m_micWatchdogCancelled = std::make_shared<bool>(false);
    startTask(this, runMicWatchdog(m_micWatchdogCancelled));
}

void ScreenRecordingCoordinator::cancelMicWatchdog() {
    if (m_micWatchdogCancelled) {
        *m_micWatchdogCancelled = true;
        m_micWatchdogCancelled.reset();
    }
}

QCoro::Task<> ScreenRecordingCoordinator::runMicWatchdog(std::shared_ptr<bool> cancelled) {
    const LoadGuard guard = LoadGuard(this).also([cancelled] { return !*cancelled; });
    QCoro::Task<bool> firstWait = awaitGuarded(guard, m_services.sleeper(micWatchdogInterval));
    if (!co_await std::move(firstWait) || !m_isRecording || m_micSamplesReceivedFromSystem || m_micIsReceiving) {
        co_return;
    }
    setMicInputWarning(noMicrophoneSignal());
    QCoro::Task<bool> secondWait = awaitGuarded(guard, m_services.sleeper(micWatchdogInterval));
    if (co_await std::move(secondWait) && m_isRecording && m_micSamplesReceivedFromSystem && !m_micIsReceiving) {
        setMicInputWarning(tr("Microphone audio could not be written to the recording file."));
    }
}

// State

void ScreenRecordingCoordinator::setActive(bool active) {
    if (std::exchange(m_isActive, active) != active) {
        emit changed();
    }
}

void ScreenRecordingCoordinator::setRecording(bool recording) {
    if (std::exchange(m_isRecording, recording) != recording) {
        emit changed();
    }
}

void ScreenRecordingCoordinator::setPaused(bool paused) {
    if (std::exchange(m_isPaused, paused) != paused) {
        emit changed();
    }
}

void ScreenRecordingCoordinator::setSizeWarning(std::optional<QString> warning) {
    if (m_sizeWarning != warning) {
        m_sizeWarning = std::move(warning);
        emit changed();
    }
}

void ScreenRecordingCoordinator::setMicInputWarning(std::optional<QString> warning) {
    if (m_micInputWarning != warning) {
        m_micInputWarning = std::move(warning);
        emit changed();
    }
}

void ScreenRecordingCoordinator::setPendingPreview(std::optional<PendingRecordingPreview> preview) {
    if (m_pendingPreview != preview) {
        m_pendingPreview = std::move(preview);
        emit changed();
    }
}
