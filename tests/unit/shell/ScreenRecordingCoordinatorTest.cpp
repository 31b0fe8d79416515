#include "core/shell/ScreenRecordingCoordinator.h"
#include "core/compose/AttachmentSizeLimits.h"
#include "support/RunTask.h"
#include "support/ScriptedRecording.h"
#include "support/ScriptedRecordingWorkflow.h"
#include "support/TemporaryFolderTesting.h"
#include "support/TestMain.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QTest>

using namespace ScriptedRecording;
using namespace std::chrono_literals;

namespace {
const QString noMicrophoneSignal = QStringLiteral(
    "No microphone signal from system. Check that a microphone is connected and not muted in the sound settings.");
const QString microphoneNotWritten = QStringLiteral("Microphone audio could not be written to the recording file.");
const QString noAudioSaved = QStringLiteral("Microphone was enabled but no audio was saved.");
const QString noVideoFrames =
    QStringLiteral("No video frames were captured. Check that screen sharing is allowed in the desktop's settings.");

CaptureTarget screen() {
    CaptureTarget target;
    target.contentRect = QRectF(0, 0, 64, 48);
    return target;
}

RecordingConfiguration configuration(bool microphone, double maxDurationSeconds = 900) {
    RecordingConfiguration chosen;
    chosen.captureMicrophone = microphone;
    chosen.maxDurationSeconds = maxDurationSeconds;
    return chosen;
}

template <typename Case> bool failedWith(const ScreenRecordingCoordinator::Outcome& outcome) {
    const auto* failure = std::get_if<ScreenRecordingError>(&outcome);
    return failure && failure->is<Case>();
}
} // namespace

// A recording from the picker to the staged movie, on the test's own clock and waits: a scripted
// picker, panels that note what they show, and the real engine between a scripted capture stream
// and a scripted movie writer that leaves a real file.
class ScreenRecordingCoordinatorTest : public QObject {
    Q_OBJECT

    std::unique_ptr<TemporaryFolderOverride> m_temporary;
    std::unique_ptr<Rig> m_rig;
    std::unique_ptr<ContentPicker> m_picker;
    std::unique_ptr<Panels> m_panels;
    std::unique_ptr<ScreenRecordingCoordinator> m_coordinator;
    QList<ScreenRecordingCoordinator::Outcome> m_outcomes;
    QList<std::optional<ScreenRecordingError>> m_previewCancels;
    int m_previewsReady = 0;

    void makeCoordinator() {
        m_coordinator = std::make_unique<ScreenRecordingCoordinator>(ScreenRecordingCoordinator::Services{
            .makeEngine =
                [this](const RecordingConfiguration& chosen) {
                    return std::make_unique<ScreenRecordingEngine>(chosen, m_rig->engineServices());
                },
            .picker = *m_picker,
            .panels = *m_panels,
            .sleeper = m_rig->waits.sleeper(),
        });
        watchTheEnd();
    }

    // Notes how the recording ends, as the one who started it would.
    void watchTheEnd() {
        m_coordinator->completion = [this](ScreenRecordingCoordinator::Outcome outcome) { m_outcomes.append(outcome); };
        m_coordinator->previewCancelledCompletion = [this](std::optional<ScreenRecordingError> failure) {
            m_previewCancels.append(failure);
        };
        m_coordinator->onPreviewReady = [this] { ++m_previewsReady; };
    }

    // Lets the posted work run: the writer queue's, what it hands back, and the hops to the main
    // thread.
    static void drain() {
        for (int round = 0; round < 6; ++round) {
            QCoreApplication::processEvents();
        }
    }
    void release(std::chrono::milliseconds length) {
        m_rig->waits.release(length);
        drain();
    }
    void countDown() {
        for (int second = 0; second < ScreenRecordingCoordinator::countdownSeconds; ++second) {
            release(1s);
        }
    }
    // The person picks the screen and the countdown runs out.
    void record(const RecordingConfiguration& chosen) {
        m_coordinator->setConfiguration(chosen);
        m_coordinator->presentPicker();
        m_picker->select(screen());
        countDown();
    }
    StreamRecord& stream() const { return *m_rig->capture.streams.last(); }
    WriterRecord& writer() const { return *m_rig->writers.writers.last(); }
    // Frames and, with `withSound`, the microphone from `from` for a tenth of a second.
    void speak(double from, bool withSound = true) {
        for (int step = 0; step < 3; ++step) {
            const double at = from + step / 30.0;
            if (withSound) {
                stream().deliver(microphone(at));
            }
            stream().deliver(frame(at));
            drain();
        }
    }
    void advance(double seconds) { m_rig->advance(seconds); }
    // One half-second tick of the engine's clock, the clock moved on first.
    void tick(double seconds = 0.5) {
        advance(seconds);
        release(500ms);
    }
    // Records a short movie with sound and stops it: the review opens.
    void recordAndStop(const RecordingConfiguration& chosen = configuration(true)) {
        record(chosen);
        speak(0.0);
        tick(2.0);
        m_coordinator->stopRecording();
        drain();
    }

private slots:
    void init() {
        m_temporary = std::make_unique<TemporaryFolderOverride>();
        m_rig = std::make_unique<Rig>();
        m_picker = std::make_unique<ContentPicker>();
        m_panels = std::make_unique<Panels>();
        m_outcomes.clear();
        m_previewCancels.clear();
        m_previewsReady = 0;
        makeCoordinator();
    }

    void cleanup() {
        m_coordinator.reset();
        m_rig->waits.releaseAll();
        drain();
        m_temporary.reset();
    }

    void theCountdownShowsFiveSecondsBeforeRecordingStarts() {
        RecordingConfiguration chosen = configuration(false);
        chosen.showCursor = false;
        m_coordinator->setConfiguration(chosen);
        m_coordinator->presentPicker();
        QCOMPARE(m_picker->presented, 1);
        QCOMPARE(m_picker->showedCursor, false);
        QVERIFY(m_picker->active);
        QVERIFY(m_coordinator->awaitingPickerSelection());
        m_picker->select(screen());
        QVERIFY(m_coordinator->isActive());
        QCOMPARE(m_panels->countdownsShown, QList<int>{5});
        for (int remaining = 4; remaining >= 1; --remaining) {
            release(1s);
            QVERIFY(m_panels->countdown);
            QCOMPARE(m_panels->countdown->remaining(), remaining);
            QVERIFY(m_rig->capture.streams.isEmpty());
        }
        release(1s);
        QVERIFY(!m_panels->countdown);
        QCOMPARE(m_panels->countdownsClosed, 1);
        QCOMPARE(m_rig->capture.streams.size(), 1);
        QCOMPARE(stream().starts, 1);
        QVERIFY(m_coordinator->isRecording());
        QVERIFY(!m_coordinator->isPaused());
        QVERIFY(m_panels->controlsShown);
        // The picker stays active while recording, and a second choice of it is ignored.
        QVERIFY(m_picker->active);
        m_picker->select(screen());
        QCOMPARE(m_panels->countdownsShown.size(), 1);
    }

    void cancellingTheFirstPickerEndsAsCancelled() {
        m_coordinator->presentPicker();
        m_picker->cancel();
        QCOMPARE(m_outcomes.size(), 1);
        QVERIFY(failedWith<ScreenRecordingError::Cancelled>(m_outcomes.first()));
        QVERIFY(!m_picker->active);
        QVERIFY(m_picker->observers.isEmpty());
        // Later answers of the picker are not this workflow's.
        m_picker->cancel();
        QCOMPARE(m_outcomes.size(), 1);
    }

    void aPickerThatFailsToStartEndsAsAFailedWriter() {
        m_coordinator->presentPicker();
        m_picker->failToStart(QStringLiteral("The portal went away."));
        QCOMPARE(m_outcomes.size(), 1);
        const auto* failure = std::get_if<ScreenRecordingError>(&m_outcomes.first());
        QVERIFY(failure);
        QCOMPARE(*failure, ScreenRecordingError::writerFailed(QStringLiteral("The portal went away.")));
        QVERIFY(!m_picker->active);
    }

    void aSecondStopDoesNothing() {
        record(configuration(true));
        speak(0.0);
        tick(2.0);
        m_coordinator->stopRecording();
        m_coordinator->stopRecording();
        drain();
        QCOMPARE(m_panels->reviewsShown, 1);
        QVERIFY(m_outcomes.isEmpty());
        QVERIFY(m_coordinator->pendingPreview());
        m_coordinator->stopRecording();
        drain();
        QCOMPARE(m_panels->reviewsShown, 1);
        QCOMPARE(m_rig->writers.writers.size(), 1);
    }

    void theMaximumDurationDuringAFinishDoesNothing() {
        record(configuration(true, 60));
        speak(0.0);
        tick(2.0);
        m_coordinator->stopRecording();
        m_rig->waits.release(60s);
        drain();
        QCOMPARE(m_panels->reviewsShown, 1);
        QVERIFY(m_outcomes.isEmpty());
    }

    void theMaximumDurationIsWallClockTimeAndPausesCount() {
        record(configuration(true, 900));
        speak(0.0);
        tick(150);
        m_coordinator->pauseOrResume();
        drain();
        QVERIFY(m_coordinator->isPaused());
        tick(600);
        m_coordinator->pauseOrResume();
        drain();
        QVERIFY(!m_coordinator->isPaused());
        speak(750.0);
        tick(150);
        m_rig->waits.release(900s);
        drain();
        QVERIFY(!m_coordinator->isRecording());
        QCOMPARE(m_panels->reviewsShown, 1);
        QVERIFY(m_panels->review);
        QCOMPARE(m_panels->review->duration, 300.0);
    }

    void aCameraThatFailsBeforeRecordingLeavesTheRecordingWithoutIt() {
        const ScreenRecordingError cameraFailure =
            ScreenRecordingError(ScreenRecordingError::PermissionDenied{QStringLiteral("Camera failed to start.")});
        m_rig->facecams.startFails = cameraFailure;
        RecordingConfiguration chosen = configuration(false);
        chosen.includeFacecam = true;
        chosen.facecamStyle.isVisible = true;
        record(chosen);
        QVERIFY(m_coordinator->isRecording());
        QVERIFY(m_panels->controlsShown);
        QCOMPARE(m_coordinator->sizeWarning(), QStringLiteral("Facecam unavailable: Camera failed to start."));
        QVERIFY(!m_coordinator->configuration().includeFacecam);
        QVERIFY(!m_coordinator->configuration().facecamStyle.isVisible);
        QVERIFY(!m_panels->previewStyle);
    }

    void theCameraShowsWhileRecordingAndGoesOutWhenHidden() {
        RecordingConfiguration chosen = configuration(false);
        chosen.includeFacecam = true;
        chosen.facecamStyle.isVisible = true;
        record(chosen);
        QVERIFY(m_panels->previewStyle);
        QVERIFY(m_rig->facecams.made.first()->running);

        m_coordinator->toggleFacecam();
        drain();
        QVERIFY(!m_panels->previewStyle);
        QVERIFY(!m_rig->facecams.made.first()->running);
        QVERIFY(!m_coordinator->configuration().includeFacecam);

        m_coordinator->toggleFacecam();
        drain();
        QCOMPARE(m_rig->facecams.made.size(), 2);
        QVERIFY(m_rig->facecams.made.last()->running);
        QVERIFY(m_panels->previewStyle);
        QVERIFY(m_coordinator->configuration().facecamStyle.isVisible);
    }

    void withNoMicrophoneSignalTheWatchdogSpeaksAndTheStopFails() {
        record(configuration(true));
        speak(0.0, false);
        QVERIFY(!m_coordinator->micInputWarning());
        release(ScreenRecordingCoordinator::micWatchdogInterval);
        QCOMPARE(m_coordinator->micInputWarning(), noMicrophoneSignal);
        m_coordinator->stopRecording();
        drain();
        QCOMPARE(m_outcomes.size(), 1);
        const auto* failure = std::get_if<ScreenRecordingError>(&m_outcomes.first());
        QVERIFY(failure);
        QCOMPARE(*failure, ScreenRecordingError::writerFailed(noVideoFrames));
        QVERIFY(!m_panels->controlsShown);
        QVERIFY(!m_coordinator->isActive());
        QVERIFY(!m_coordinator->isRecording());
        QCOMPARE(m_panels->reviewsShown, 0);
    }

    void soundThatComesButIsNotWrittenGetsTheSecondMessage() {
        m_rig->writers.prepare = [](WriterRecord& record) { record.refuseSamples = 1000; };
        record(configuration(true));
        release(ScreenRecordingCoordinator::micWatchdogInterval);
        QCOMPARE(m_coordinator->micInputWarning(), noMicrophoneSignal);
        speak(0.0);
        QVERIFY(m_coordinator->micSamplesReceivedFromSystem());
        QVERIFY(!m_coordinator->micIsReceiving());
        release(ScreenRecordingCoordinator::micWatchdogInterval);
        QCOMPARE(m_coordinator->micInputWarning(), microphoneNotWritten);
    }

    void soundWrittenClearsTheWatchdogsMessage() {
        record(configuration(true));
        release(ScreenRecordingCoordinator::micWatchdogInterval);
        QCOMPARE(m_coordinator->micInputWarning(), noMicrophoneSignal);
        speak(0.0);
        QVERIFY(m_coordinator->micIsReceiving());
        QVERIFY(!m_coordinator->micInputWarning());
        release(ScreenRecordingCoordinator::micWatchdogInterval);
        QVERIFY(!m_coordinator->micInputWarning());
    }

    void aRecordingOverTheLimitNeverReachesReview() {
        m_rig->writers.prepare = [](WriterRecord& record) { record.movieBytes = AttachmentSizeLimits::hardLimit + 1; };
        recordAndStop();
        QCOMPARE(m_panels->reviewsShown, 0);
        QVERIFY(!m_coordinator->pendingPreview());
        QCOMPARE(m_outcomes.size(), 1);
        const auto* failure = std::get_if<ScreenRecordingError>(&m_outcomes.first());
        QVERIFY(failure);
        const auto rejection = std::get<AttachmentSizeLimits::Rejected>(
            AttachmentSizeLimits::validate(AttachmentSizeLimits::hardLimit + 1));
        QCOMPARE(*failure, ScreenRecordingError(ScreenRecordingError::FileTooLarge{rejection.message}));
        QVERIFY(!QFileInfo::exists(writer().path));
    }

    void aSizeWarningAndASilentMicrophoneShowBothTexts() {
        m_rig->writers.prepare = [](WriterRecord& record) {
            record.movieBytes = AttachmentSizeLimits::warningThreshold + 1;
            record.refuseSamples = 1000;
        };
        recordAndStop();
        const auto warning = std::get<AttachmentSizeLimits::Warning>(
            AttachmentSizeLimits::validate(AttachmentSizeLimits::warningThreshold + 1));
        const QString both = warning.message + QStringLiteral("\n\n") + noAudioSaved;
        QCOMPARE(m_coordinator->sizeWarning(), both);
        QCOMPARE(m_panels->reviewsShown, 1);
        QCOMPARE(m_panels->review->sizeWarning, both);
    }

    void theReviewOpensOnTheNextTurnOfTheLoop() {
        record(configuration(true));
        speak(0.0);
        tick(2.0);
        m_coordinator->stopRecording();
        // Through the writer's queue and back, one turn at a time.
        for (int turn = 0; turn < 20 && !m_coordinator->pendingPreview(); ++turn) {
            QCoreApplication::processEvents();
        }
        QVERIFY(m_coordinator->pendingPreview());
        QCOMPARE(m_panels->reviewsShown, 0);
        QCoreApplication::processEvents();
        QCOMPARE(m_panels->reviewsShown, 1);
        QVERIFY(!m_panels->controlsShown);
        QVERIFY(!m_coordinator->isActive());
        QVERIFY(!m_picker->active);
    }

    void attachingStagesTheMovie() {
        recordAndStop();
        const QString movie = m_coordinator->pendingPreview()->url.toLocalFile();
        m_panels->attach();
        QCOMPARE(m_outcomes.size(), 1);
        const auto* staged = std::get_if<StagedAttachment>(&m_outcomes.first());
        QVERIFY(staged);
        QVERIFY(staged->isVideo);
        QCOMPARE(staged->durationSeconds, m_panels->review ? m_panels->review->duration : 2.0);
        QVERIFY(QFileInfo::exists(staged->fileURL.toLocalFile()));
        QVERIFY(!QFileInfo::exists(movie));
        QVERIFY(!m_coordinator->pendingPreview());
        QVERIFY(!m_panels->review);
        QCOMPARE(m_previewsReady, 1);
        QVERIFY(!m_coordinator->completion);
        QVERIFY(!m_coordinator->previewCancelledCompletion);
    }

    void attachingAMovieThatWentAwayTellsItsSizeCannotBeRead() {
        recordAndStop();
        QFile::remove(m_coordinator->pendingPreview()->url.toLocalFile());
        m_panels->attach();
        QCOMPARE(m_outcomes.size(), 1);
        const auto* failure = std::get_if<ScreenRecordingError>(&m_outcomes.first());
        QVERIFY(failure);
        QCOMPARE(*failure,
                 ScreenRecordingError(ScreenRecordingError::FileTooLarge{QStringLiteral("Could not read file size.")}));
        QCOMPARE(m_previewsReady, 1);
        QVERIFY(!m_panels->review);
    }

    void discardingRemovesTheMovie() {
        recordAndStop();
        const QString movie = m_coordinator->pendingPreview()->url.toLocalFile();
        QVERIFY(QFileInfo::exists(movie));
        m_panels->discard();
        QVERIFY(!QFileInfo::exists(movie));
        QVERIFY(!m_coordinator->pendingPreview());
        QVERIFY(!m_panels->review);
        QCOMPARE(m_previewCancels.size(), 1);
        QVERIFY(m_previewCancels.first() && m_previewCancels.first()->is<ScreenRecordingError::Cancelled>());
        QVERIFY(m_outcomes.isEmpty());
        QVERIFY(!m_coordinator->completion);
    }

    void recordingAgainOpensThePickerAndACancelThenEndsAsCancelled() {
        m_coordinator->setStartMode(ScreenRecordingStartModes::ReplaceDraft{QUuid::createUuid()});
        const ScreenRecordingStartMode mode = m_coordinator->startMode();
        recordAndStop();
        const QString movie = m_coordinator->pendingPreview()->url.toLocalFile();
        m_coordinator->setStartMode(ScreenRecordingStartModes::AppendToDraft{});
        m_panels->reRecord();
        QVERIFY(!QFileInfo::exists(movie));
        QVERIFY(!m_coordinator->pendingPreview());
        QVERIFY(!m_panels->review);
        QCOMPARE(m_picker->presented, 2);
        QVERIFY(m_picker->active);
        QCOMPARE(m_coordinator->startMode(), mode);
        QVERIFY(m_coordinator->completion);
        m_picker->cancel();
        QCOMPARE(m_outcomes.size(), 1);
        QVERIFY(failedWith<ScreenRecordingError::Cancelled>(m_outcomes.first()));
        QVERIFY(m_previewCancels.isEmpty());
    }

    void anEngineThatFailsToStartEndsTheWorkflow() {
        const ScreenRecordingError refusal =
            ScreenRecordingError(ScreenRecordingError::PermissionDenied{QStringLiteral("No screen for you.")});
        m_rig->capture.accessFails = refusal;
        record(configuration(false));
        QCOMPARE(m_outcomes.size(), 1);
        QCOMPARE(std::get<ScreenRecordingError>(m_outcomes.first()), refusal);
        QVERIFY(!m_coordinator->isActive());
        QVERIFY(!m_coordinator->isRecording());
        QVERIFY(!m_panels->controlsShown);
        QVERIFY(!m_picker->active);
        QVERIFY(m_picker->observers.isEmpty());
    }

    void pauseAndResumeStopAndStartTheCapture() {
        record(configuration(false));
        m_coordinator->pauseOrResume();
        drain();
        QVERIFY(m_coordinator->isPaused());
        QCOMPARE(stream().stops, 1);
        m_coordinator->pauseOrResume();
        drain();
        QVERIFY(!m_coordinator->isPaused());
        QCOMPARE(stream().starts, 2);
    }

    void aFailedResumeKeepsThePauseAndSaysWhy() {
        record(configuration(false));
        m_coordinator->pauseOrResume();
        drain();
        stream().startFails = ScreenRecordingError::writerFailed(QStringLiteral("The screen went away."));
        m_coordinator->pauseOrResume();
        drain();
        QVERIFY(m_coordinator->isPaused());
        QVERIFY(m_coordinator->isRecording());
        QCOMPARE(m_coordinator->sizeWarning(), QStringLiteral("Recording failed: The screen went away."));
    }

    void theElapsedTimeAndSizeComeFromTheEngine() {
        record(configuration(true));
        speak(0.0);
        tick(1.0);
        QCOMPARE(m_coordinator->elapsedSeconds(), 1.0);
        QVERIFY(m_coordinator->estimatedFileBytes() > 0);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(ScreenRecordingCoordinatorTest)
#include "ScreenRecordingCoordinatorTest.moc"
