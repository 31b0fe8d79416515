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
    std::unique_ptr<Workflow> m_workflow;
    QList<ScreenRecordingCoordinator::Outcome> m_outcomes;
    QList<std::optional<ScreenRecordingError>> m_previewCancels;
    int m_previewsReady = 0;

    // Notes how the recording ends, as the one who started it would.
    void watchTheEnd() {
        m_workflow->coordinator->completion = [this](ScreenRecordingCoordinator::Outcome outcome) {
            m_outcomes.append(outcome);
        };
        m_workflow->coordinator->previewCancelledCompletion = [this](std::optional<ScreenRecordingError> failure) {
            m_previewCancels.append(failure);
        };
        m_workflow->coordinator->onPreviewReady = [this] { ++m_previewsReady; };
    }

    // The person picks the screen and the countdown runs out.
    void record(const RecordingConfiguration& chosen) {
        m_workflow->coordinator->setConfiguration(chosen);
        m_workflow->coordinator->presentPicker();
        m_workflow->chooseScreenAndCountDown();
    }
    WriterRecord& writer() const { return *m_workflow->rig.writers.writers.last(); }
    // Records a short movie with sound and stops it: the review opens.
    void recordAndStop(const RecordingConfiguration& chosen = configuration(true)) {
        record(chosen);
        m_workflow->speakAndStop();
    }

private slots:
    void init() {
        m_temporary = std::make_unique<TemporaryFolderOverride>();
        m_workflow = std::make_unique<Workflow>();
        m_outcomes.clear();
        m_previewCancels.clear();
        m_previewsReady = 0;
        watchTheEnd();
    }

    void cleanup() {
        m_workflow.reset();
        m_temporary.reset();
    }

    void theCountdownShowsFiveSecondsBeforeRecordingStarts() {
        RecordingConfiguration chosen = configuration(false);
        chosen.showCursor = false;
        m_workflow->coordinator->setConfiguration(chosen);
        m_workflow->coordinator->presentPicker();
        QCOMPARE(m_workflow->picker.presented, 1);
        QCOMPARE(m_workflow->picker.showedCursor, false);
        QVERIFY(m_workflow->picker.active);
        QVERIFY(m_workflow->coordinator->awaitingPickerSelection());
        m_workflow->picker.select(screen());
        QVERIFY(m_workflow->coordinator->isActive());
        QCOMPARE(m_workflow->panels.countdownsShown, QList<int>{5});
        // The capture gets ready meanwhile, for the screen at its size, without the pointer.
        QCOMPARE(m_workflow->rig.capture.prepared.size(), 1);
        QCOMPARE(m_workflow->rig.capture.prepared.first().first, screen());
        QCOMPARE(m_workflow->rig.capture.prepared.first().second.size, QSize(64, 48));
        QCOMPARE(m_workflow->rig.capture.prepared.first().second.showsCursor, false);
        for (int remaining = 4; remaining >= 1; --remaining) {
            m_workflow->release(1s);
            QVERIFY(m_workflow->panels.countdown);
            QCOMPARE(m_workflow->panels.countdown->remaining(), remaining);
            QVERIFY(m_workflow->rig.capture.streams.isEmpty());
        }
        m_workflow->release(1s);
        QVERIFY(!m_workflow->panels.countdown);
        QCOMPARE(m_workflow->panels.countdownsClosed, 1);
        QCOMPARE(m_workflow->rig.capture.streams.size(), 1);
        QCOMPARE(m_workflow->stream().starts, 1);
        QVERIFY(m_workflow->stream().configuration == m_workflow->rig.capture.prepared.first().second);
        QVERIFY(m_workflow->coordinator->isRecording());
        QVERIFY(!m_workflow->coordinator->isPaused());
        QVERIFY(m_workflow->panels.controlsShown);
        // The picker stays active while recording, and a second choice of it is ignored.
        QVERIFY(m_workflow->picker.active);
        m_workflow->picker.select(screen());
        QCOMPARE(m_workflow->panels.countdownsShown.size(), 1);
    }

    void cancellingTheFirstPickerEndsAsCancelled() {
        m_workflow->coordinator->presentPicker();
        m_workflow->picker.cancel();
        QCOMPARE(m_outcomes.size(), 1);
        QVERIFY(failedWith<ScreenRecordingError::Cancelled>(m_outcomes.first()));
        QVERIFY(!m_workflow->picker.active);
        QVERIFY(m_workflow->picker.observers.isEmpty());
        // Later answers of the picker are not this workflow's.
        m_workflow->picker.cancel();
        QCOMPARE(m_outcomes.size(), 1);
    }

    void aPickerThatFailsToStartEndsAsAFailedWriter() {
        m_workflow->coordinator->presentPicker();
        m_workflow->picker.failToStart(QStringLiteral("The portal went away."));
        QCOMPARE(m_outcomes.size(), 1);
        const auto* failure = std::get_if<ScreenRecordingError>(&m_outcomes.first());
        QVERIFY(failure);
        QCOMPARE(*failure, ScreenRecordingError::writerFailed(QStringLiteral("The portal went away.")));
        QVERIFY(!m_workflow->picker.active);
    }

    void aSecondStopDoesNothing() {
        record(configuration(true));
        m_workflow->speak(0.0);
        m_workflow->tick(2.0);
        m_workflow->coordinator->stopRecording();
        m_workflow->coordinator->stopRecording();
        Workflow::drain();
        QCOMPARE(m_workflow->panels.reviewsShown, 1);
        QVERIFY(m_outcomes.isEmpty());
        QVERIFY(m_workflow->coordinator->pendingPreview());
        m_workflow->coordinator->stopRecording();
        Workflow::drain();
        QCOMPARE(m_workflow->panels.reviewsShown, 1);
        QCOMPARE(m_workflow->rig.writers.writers.size(), 1);
    }

    void theMaximumDurationDuringAFinishDoesNothing() {
        record(configuration(true, 60));
        m_workflow->speak(0.0);
        m_workflow->tick(2.0);
        m_workflow->coordinator->stopRecording();
        m_workflow->rig.waits.release(60s);
        Workflow::drain();
        QCOMPARE(m_workflow->panels.reviewsShown, 1);
        QVERIFY(m_outcomes.isEmpty());
    }

    void theMaximumDurationIsWallClockTimeAndPausesCount() {
        record(configuration(true, 900));
        m_workflow->speak(0.0);
        m_workflow->tick(150);
        m_workflow->coordinator->pauseOrResume();
        Workflow::drain();
        QVERIFY(m_workflow->coordinator->isPaused());
        m_workflow->tick(600);
        m_workflow->coordinator->pauseOrResume();
        Workflow::drain();
        QVERIFY(!m_workflow->coordinator->isPaused());
        m_workflow->speak(750.0);
        m_workflow->tick(150);
        m_workflow->rig.waits.release(900s);
        Workflow::drain();
        QVERIFY(!m_workflow->coordinator->isRecording());
        QCOMPARE(m_workflow->panels.reviewsShown, 1);
        QVERIFY(m_workflow->panels.review);
        QCOMPARE(m_workflow->panels.review->duration, 300.0);
    }

    void aCameraThatFailsBeforeRecordingLeavesTheRecordingWithoutIt() {
        const ScreenRecordingError cameraFailure =
            ScreenRecordingError(ScreenRecordingError::PermissionDenied{QStringLiteral("Camera failed to start.")});
        m_workflow->rig.facecams.startFails = cameraFailure;
        RecordingConfiguration chosen = configuration(false);
        chosen.includeFacecam = true;
        chosen.facecamStyle.isVisible = true;
        record(chosen);
        QVERIFY(m_workflow->coordinator->isRecording());
        QVERIFY(m_workflow->panels.controlsShown);
        QCOMPARE(m_workflow->coordinator->sizeWarning(),
                 QStringLiteral("Facecam unavailable: Camera failed to start."));
        QVERIFY(!m_workflow->coordinator->configuration().includeFacecam);
        QVERIFY(!m_workflow->coordinator->configuration().facecamStyle.isVisible);
        QVERIFY(!m_workflow->panels.previewStyle);
    }

    void theCameraShowsWhileRecordingAndGoesOutWhenHidden() {
        RecordingConfiguration chosen = configuration(false);
        chosen.includeFacecam = true;
        chosen.facecamStyle.isVisible = true;
        record(chosen);
        QVERIFY(m_workflow->panels.previewStyle);
        QVERIFY(m_workflow->rig.facecams.made.first()->running);

        m_workflow->coordinator->toggleFacecam();
        Workflow::drain();
        QVERIFY(!m_workflow->panels.previewStyle);
        QVERIFY(!m_workflow->rig.facecams.made.first()->running);
        QVERIFY(!m_workflow->coordinator->configuration().includeFacecam);

        m_workflow->coordinator->toggleFacecam();
        Workflow::drain();
        QCOMPARE(m_workflow->rig.facecams.made.size(), 2);
        QVERIFY(m_workflow->rig.facecams.made.last()->running);
        QVERIFY(m_workflow->panels.previewStyle);
        QVERIFY(m_workflow->coordinator->configuration().facecamStyle.isVisible);
    }

    void withNoMicrophoneSignalTheWatchdogSpeaksAndTheStopFails() {
        record(configuration(true));
        m_workflow->speak(0.0, false);
        QVERIFY(!m_workflow->coordinator->micInputWarning());
        m_workflow->release(ScreenRecordingCoordinator::micWatchdogInterval);
        QCOMPARE(m_workflow->coordinator->micInputWarning(), noMicrophoneSignal);
        m_workflow->coordinator->stopRecording();
        Workflow::drain();
        QCOMPARE(m_outcomes.size(), 1);
        const auto* failure = std::get_if<ScreenRecordingError>(&m_outcomes.first());
        QVERIFY(failure);
        QCOMPARE(*failure, ScreenRecordingError::writerFailed(noVideoFrames));
        QVERIFY(!m_workflow->panels.controlsShown);
        QVERIFY(!m_workflow->coordinator->isActive());
        QVERIFY(!m_workflow->coordinator->isRecording());
        QCOMPARE(m_workflow->panels.reviewsShown, 0);
    }

    void soundThatComesButIsNotWrittenGetsTheSecondMessage() {
        m_workflow->rig.writers.prepare = [](WriterRecord& record) { record.refuseSamples = 1000; };
        record(configuration(true));
        m_workflow->release(ScreenRecordingCoordinator::micWatchdogInterval);
        QCOMPARE(m_workflow->coordinator->micInputWarning(), noMicrophoneSignal);
        m_workflow->speak(0.0);
        QVERIFY(m_workflow->coordinator->micSamplesReceivedFromSystem());
        QVERIFY(!m_workflow->coordinator->micIsReceiving());
        m_workflow->release(ScreenRecordingCoordinator::micWatchdogInterval);
        QCOMPARE(m_workflow->coordinator->micInputWarning(), microphoneNotWritten);
    }

    void soundWrittenClearsTheWatchdogsMessage() {
        record(configuration(true));
        m_workflow->release(ScreenRecordingCoordinator::micWatchdogInterval);
        QCOMPARE(m_workflow->coordinator->micInputWarning(), noMicrophoneSignal);
        m_workflow->speak(0.0);
        QVERIFY(m_workflow->coordinator->micIsReceiving());
        QVERIFY(!m_workflow->coordinator->micInputWarning());
        m_workflow->release(ScreenRecordingCoordinator::micWatchdogInterval);
        QVERIFY(!m_workflow->coordinator->micInputWarning());
    }

    void aRecordingOverTheLimitNeverReachesReview() {
        m_workflow->rig.writers.prepare = [](WriterRecord& record) {
            record.movieBytes = AttachmentSizeLimits::hardLimit + 1;
        };
        recordAndStop();
        QCOMPARE(m_workflow->panels.reviewsShown, 0);
        QVERIFY(!m_workflow->coordinator->pendingPreview());
        QCOMPARE(m_outcomes.size(), 1);
        const auto* failure = std::get_if<ScreenRecordingError>(&m_outcomes.first());
        QVERIFY(failure);
        const auto rejection = std::get<AttachmentSizeLimits::Rejected>(
            AttachmentSizeLimits::validate(AttachmentSizeLimits::hardLimit + 1));
        QCOMPARE(*failure, ScreenRecordingError(ScreenRecordingError::FileTooLarge{rejection.message}));
        QVERIFY(!QFileInfo::exists(writer().path));
    }

    void aSizeWarningAndASilentMicrophoneShowBothTexts() {
        m_workflow->rig.writers.prepare = [](WriterRecord& record) {
            record.movieBytes = AttachmentSizeLimits::warningThreshold + 1;
            record.refuseSamples = 1000;
        };
        recordAndStop();
        const auto warning = std::get<AttachmentSizeLimits::Warning>(
            AttachmentSizeLimits::validate(AttachmentSizeLimits::warningThreshold + 1));
        const QString both = warning.message + QStringLiteral("\n\n") + noAudioSaved;
        QCOMPARE(m_workflow->coordinator->sizeWarning(), both);
        QCOMPARE(m_workflow->panels.reviewsShown, 1);
        QCOMPARE(m_workflow->panels.review->sizeWarning, both);
    }

    void theReviewOpensOnTheNextTurnOfTheLoop() {
        record(configuration(true));
        m_workflow->speak(0.0);
        m_workflow->tick(2.0);
        m_workflow->coordinator->stopRecording();
        // Through the writer's queue and back, one turn at a time.
        for (int turn = 0; turn < 20 && !m_workflow->coordinator->pendingPreview(); ++turn) {
            QCoreApplication::processEvents();
        }
        QVERIFY(m_workflow->coordinator->pendingPreview());
        QCOMPARE(m_workflow->panels.reviewsShown, 0);
        QCoreApplication::processEvents();
        QCOMPARE(m_workflow->panels.reviewsShown, 1);
        QVERIFY(!m_workflow->panels.controlsShown);
        QVERIFY(!m_workflow->coordinator->isActive());
        QVERIFY(!m_workflow->picker.active);
    }

    void attachingStagesTheMovie() {
        recordAndStop();
        const QString movie = m_workflow->coordinator->pendingPreview()->url.toLocalFile();
        m_workflow->panels.attach();
        QCOMPARE(m_outcomes.size(), 1);
        const auto* staged = std::get_if<StagedAttachment>(&m_outcomes.first());
        QVERIFY(staged);
        QVERIFY(staged->isVideo);
        QCOMPARE(staged->durationSeconds, m_workflow->panels.review ? m_workflow->panels.review->duration : 2.0);
        QVERIFY(QFileInfo::exists(staged->fileURL.toLocalFile()));
        QVERIFY(!QFileInfo::exists(movie));
        QVERIFY(!m_workflow->coordinator->pendingPreview());
        QVERIFY(!m_workflow->panels.review);
        QCOMPARE(m_previewsReady, 1);
        QVERIFY(!m_workflow->coordinator->completion);
        QVERIFY(!m_workflow->coordinator->previewCancelledCompletion);
    }

    void attachingAMovieThatWentAwayTellsItsSizeCannotBeRead() {
        recordAndStop();
        QFile::remove(m_workflow->coordinator->pendingPreview()->url.toLocalFile());
        m_workflow->panels.attach();
        QCOMPARE(m_outcomes.size(), 1);
        const auto* failure = std::get_if<ScreenRecordingError>(&m_outcomes.first());
        QVERIFY(failure);
        QCOMPARE(*failure,
                 ScreenRecordingError(ScreenRecordingError::FileTooLarge{QStringLiteral("Could not read file size.")}));
        QCOMPARE(m_previewsReady, 1);
        QVERIFY(!m_workflow->panels.review);
    }

    void discardingRemovesTheMovie() {
        recordAndStop();
        const QString movie = m_workflow->coordinator->pendingPreview()->url.toLocalFile();
        QVERIFY(QFileInfo::exists(movie));
        m_workflow->panels.discard();
        QVERIFY(!QFileInfo::exists(movie));
        QVERIFY(!m_workflow->coordinator->pendingPreview());
        QVERIFY(!m_workflow->panels.review);
        QCOMPARE(m_previewCancels.size(), 1);
        QVERIFY(m_previewCancels.first() && m_previewCancels.first()->is<ScreenRecordingError::Cancelled>());
        QVERIFY(m_outcomes.isEmpty());
        QVERIFY(!m_workflow->coordinator->completion);
    }

    void recordingAgainOpensThePickerAndACancelThenEndsAsCancelled() {
        m_workflow->coordinator->setStartMode(ScreenRecordingStartModes::ReplaceDraft{QUuid::createUuid()});
        const ScreenRecordingStartMode mode = m_workflow->coordinator->startMode();
        recordAndStop();
        const QString movie = m_workflow->coordinator->pendingPreview()->url.toLocalFile();
        m_workflow->coordinator->setStartMode(ScreenRecordingStartModes::AppendToDraft{});
        m_workflow->panels.reRecord();
        QVERIFY(!QFileInfo::exists(movie));
        QVERIFY(!m_workflow->coordinator->pendingPreview());
        QVERIFY(!m_workflow->panels.review);
        QCOMPARE(m_workflow->picker.presented, 2);
        QVERIFY(m_workflow->picker.active);
        QCOMPARE(m_workflow->coordinator->startMode(), mode);
        QVERIFY(m_workflow->coordinator->completion);
        m_workflow->picker.cancel();
        QCOMPARE(m_outcomes.size(), 1);
        QVERIFY(failedWith<ScreenRecordingError::Cancelled>(m_outcomes.first()));
        QVERIFY(m_previewCancels.isEmpty());
    }

    void anEngineThatFailsToStartEndsTheWorkflow() {
        const ScreenRecordingError refusal =
            ScreenRecordingError(ScreenRecordingError::PermissionDenied{QStringLiteral("No screen for you.")});
        m_workflow->rig.capture.accessFails = refusal;
        record(configuration(false));
        QCOMPARE(m_outcomes.size(), 1);
        QCOMPARE(std::get<ScreenRecordingError>(m_outcomes.first()), refusal);
        QVERIFY(!m_workflow->coordinator->isActive());
        QVERIFY(!m_workflow->coordinator->isRecording());
        QVERIFY(!m_workflow->panels.controlsShown);
        QVERIFY(!m_workflow->picker.active);
        QVERIFY(m_workflow->picker.observers.isEmpty());
    }

    void pauseAndResumeStopAndStartTheCapture() {
        record(configuration(false));
        m_workflow->coordinator->pauseOrResume();
        Workflow::drain();
        QVERIFY(m_workflow->coordinator->isPaused());
        QCOMPARE(m_workflow->stream().stops, 1);
        m_workflow->coordinator->pauseOrResume();
        Workflow::drain();
        QVERIFY(!m_workflow->coordinator->isPaused());
        QCOMPARE(m_workflow->stream().starts, 2);
    }

    void aFailedResumeKeepsThePauseAndSaysWhy() {
        record(configuration(false));
        m_workflow->coordinator->pauseOrResume();
        Workflow::drain();
        m_workflow->stream().startFails = ScreenRecordingError::writerFailed(QStringLiteral("The screen went away."));
        m_workflow->coordinator->pauseOrResume();
        Workflow::drain();
        QVERIFY(m_workflow->coordinator->isPaused());
        QVERIFY(m_workflow->coordinator->isRecording());
        QCOMPARE(m_workflow->coordinator->sizeWarning(), QStringLiteral("Recording failed: The screen went away."));
    }

    void theElapsedTimeAndSizeComeFromTheEngine() {
        record(configuration(true));
        m_workflow->speak(0.0);
        m_workflow->tick(1.0);
        QCOMPARE(m_workflow->coordinator->elapsedSeconds(), 1.0);
        QVERIFY(m_workflow->coordinator->estimatedFileBytes() > 0);
    }

    void theNextRecordingCountsFromNothing() {
        recordAndStop();
        QVERIFY(m_workflow->coordinator->elapsedSeconds() > 0);
        m_workflow->panels.discard();
        record(configuration(true));
        QCOMPARE(m_workflow->coordinator->elapsedSeconds(), 0.0);
        QCOMPARE(m_workflow->coordinator->estimatedFileBytes(), 0);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(ScreenRecordingCoordinatorTest)
#include "ScreenRecordingCoordinatorTest.moc"
