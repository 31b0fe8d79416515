#include "core/shell/ScreenRecordingFlow.h"
#include "core/compose/AttachmentStaging.h"
#include "support/AppStateFixture.h"
#include "support/ScriptedRecordingWorkflow.h"
#include "support/TemporaryFolderTesting.h"
#include "support/TestMain.h"

#include <QFileInfo>
#include <QTest>

using namespace ScriptedRecording;

// The way into a recording and of its movie into the draft, over the draft, settings and templates
// of the central state as the app builds it, and a coordinator with a scripted picker, noted panels
// and the real engine between scripted capture and writer.
class ScreenRecordingFlowTest : public QObject {
    Q_OBJECT

    std::unique_ptr<TemporaryFolderOverride> m_temporary;
    std::unique_ptr<AppStateFixture> m_fixture;
    std::unique_ptr<Workflow> m_workflow;
    std::unique_ptr<TemplateActions> m_templates;
    std::unique_ptr<ScreenRecordingFlow> m_flow;
    // What the popover was asked to do, in order: "show" or "close".
    QStringList m_popover;
    int m_composeTabShown = 0;

    AppState& app() const { return m_fixture->app(); }

    // A draft the person was writing, with a file attached and a reminder lead of 5.
    void writeADraft() {
        app().settings().modify([](AppSettings& changed) { changed.defaultReminderLeadMinutes = 30; });
        app().draft().setName(QStringLiteral("Half written"));
        app().draft().setReminderLeadMinutes(5);
        app().draft().setAttachments({*AttachmentStaging::stage(
            QUrl::fromLocalFile(m_temporary->writeOutside(QStringLiteral("notes.txt"), QByteArray("notes"))))});
    }
    // The person picks the screen after confirming the sheet, the countdown runs out, a little is
    // recorded with sound, and the recording is stopped: the review shows.
    void recordToReview(ScreenRecordingStartMode mode) {
        m_flow->startScreenRecording(std::move(mode));
        m_flow->confirmScreenRecordingSetup(app().settings().settings().recordingConfiguration());
        m_workflow->chooseScreenAndCountDown();
        m_workflow->speakAndStop();
    }

private slots:
    void init() {
        m_temporary = std::make_unique<TemporaryFolderOverride>();
        m_fixture = std::make_unique<AppStateFixture>();
        m_fixture->start();
        m_workflow = std::make_unique<Workflow>();
        m_templates =
            std::make_unique<TemplateActions>(app().settings(), app().hierarchy(), app().location(), app().draft());
        m_flow = std::make_unique<ScreenRecordingFlow>(*m_workflow->coordinator, app().settings(), *m_templates,
                                                       app().draft(), [this] { ++m_composeTabShown; });
        m_popover.clear();
        m_composeTabShown = 0;
        connect(m_flow.get(), &ScreenRecordingFlow::popoverShowRequested, this,
                [this] { m_popover.append(QStringLiteral("show")); });
        connect(m_flow.get(), &ScreenRecordingFlow::popoverCloseRequested, this,
                [this] { m_popover.append(QStringLiteral("close")); });
    }

    void cleanup() {
        m_flow.reset();
        m_workflow.reset();
        m_templates.reset();
        m_fixture.reset();
        m_temporary.reset();
    }

    void aSecondStartWhileChoosingRecordingOrReviewingDoesNothing() {
        m_flow->startScreenRecording(ScreenRecordingStartModes::ReplaceDraft{});
        m_flow->confirmScreenRecordingSetup(app().settings().settings().recordingConfiguration());
        m_popover.clear();
        m_flow->startScreenRecording(ScreenRecordingStartModes::AppendToDraft{});
        QVERIFY(m_popover.isEmpty());
        QVERIFY(!m_flow->showScreenRecordingSetup());
        m_workflow->chooseScreenAndCountDown();
        m_popover.clear();
        m_flow->startScreenRecording(ScreenRecordingStartModes::AppendToDraft{});
        QVERIFY(m_popover.isEmpty());
        QVERIFY(!m_flow->showScreenRecordingSetup());
        m_workflow->speakAndStop();
        QVERIFY(m_workflow->coordinator->pendingPreview());
        m_flow->startScreenRecording(ScreenRecordingStartModes::AppendToDraft{});
        QVERIFY(!m_flow->showScreenRecordingSetup());
        // The movie still goes in as the first start asked: the draft starts afresh.
        app().draft().setName(QStringLiteral("Half written"));
        m_workflow->panels.attach();
        Workflow::drain();
        QCOMPARE(app().draft().name(), QString());
        QCOMPARE(app().draft().attachments().size(), 1);
    }

    void theShortcutStopsTheRecordingThatRunsAndOtherwiseStartsOne() {
        m_flow->startOrStopScreenRecording(ScreenRecordingStartModes::ReplaceDraft{});
        QVERIFY(m_flow->showScreenRecordingSetup());
        m_flow->confirmScreenRecordingSetup(app().settings().settings().recordingConfiguration());
        // While the picker waits, and through the countdown, it does nothing.
        m_flow->startOrStopScreenRecording(ScreenRecordingStartModes::ReplaceDraft{});
        QVERIFY(!m_flow->showScreenRecordingSetup());
        m_workflow->chooseScreenAndCountDown();
        m_workflow->speak(0.0);
        m_workflow->tick(2.0);
        m_flow->startOrStopScreenRecording(ScreenRecordingStartModes::ReplaceDraft{});
        Workflow::drain();
        QVERIFY(!m_workflow->coordinator->isRecording());
        QVERIFY(m_workflow->coordinator->pendingPreview());
        QCOMPARE(m_workflow->panels.reviewsShown, 1);
        // Under review it does nothing either.
        m_flow->startOrStopScreenRecording(ScreenRecordingStartModes::ReplaceDraft{});
        QVERIFY(!m_flow->showScreenRecordingSetup());
        QVERIFY(m_workflow->coordinator->pendingPreview());
    }

    void startingOpensThePopoverOnTheSetupSheetAndCancelClosesIt() {
        m_flow->startScreenRecording(ScreenRecordingStartModes::AppendToDraft{});
        QCOMPARE(m_popover, QStringList{QStringLiteral("show")});
        QVERIFY(m_flow->showScreenRecordingSetup());
        QVERIFY(m_flow->pendingRecordingMode());
        m_flow->cancelScreenRecordingSetup();
        QVERIFY(!m_flow->showScreenRecordingSetup());
        QVERIFY(!m_flow->pendingRecordingMode());
        QCOMPARE(m_workflow->picker.presented, 0);
    }

    void confirmingClosesThePopoverAndOpensThePicker() {
        m_flow->startScreenRecording(ScreenRecordingStartModes::AppendToDraft{});
        RecordingConfiguration chosen;
        chosen.quality = RecordingQuality::hd1080;
        m_flow->confirmScreenRecordingSetup(chosen);
        QVERIFY(!m_flow->showScreenRecordingSetup());
        QVERIFY(!m_flow->pendingRecordingMode());
        QCOMPARE(m_popover, (QStringList{QStringLiteral("show"), QStringLiteral("close")}));
        QCOMPARE(m_workflow->picker.presented, 1);
        QCOMPARE(m_workflow->coordinator->configuration(), chosen);
    }

    void aRecordingForANewTaskReplacesTheDraftAndAppliesItsTemplate() {
        writeADraft();
        TaskTemplate demo;
        demo.taskName = QStringLiteral("Demo of the bug");
        demo.tags = {QStringLiteral("video")};
        app().settings().modify([&demo](AppSettings& changed) { changed.templates.append(demo); });
        recordToReview(ScreenRecordingStartModes::ReplaceDraft{demo.id});
        QVERIFY(m_workflow->panels.review);
        m_workflow->panels.attach();
        Workflow::drain();
        QCOMPARE(app().draft().name(), QStringLiteral("Demo of the bug"));
        QCOMPARE(app().draft().tags(), QSet<QString>{QStringLiteral("video")});
        QCOMPARE(app().draft().reminderLeadMinutes(), qint64(30));
        QCOMPARE(app().draft().attachments().size(), 1);
        QVERIFY(app().draft().attachments().constFirst().isVideo);
        QCOMPARE(m_composeTabShown, 1);
        QCOMPARE(m_popover.last(), QStringLiteral("show"));
        QVERIFY(!m_flow->screenRecordingError());
    }

    void aTemplateIdThatNamesNoTemplateIsIgnored() {
        writeADraft();
        recordToReview(ScreenRecordingStartModes::ReplaceDraft{QUuid::createUuid()});
        m_workflow->panels.attach();
        Workflow::drain();
        QCOMPARE(app().draft().name(), QString());
        QCOMPARE(app().draft().attachments().size(), 1);
        QVERIFY(app().draft().attachments().constFirst().isVideo);
    }

    void theComposersRecordingJoinsTheDraft() {
        writeADraft();
        recordToReview(ScreenRecordingStartModes::AppendToDraft{});
        m_workflow->panels.attach();
        Workflow::drain();
        QCOMPARE(app().draft().name(), QStringLiteral("Half written"));
        QCOMPARE(app().draft().reminderLeadMinutes(), qint64(5));
        QCOMPARE(app().draft().attachments().size(), 2);
        QCOMPARE(app().draft().attachments().constFirst().filename, QStringLiteral("notes.txt"));
        QVERIFY(app().draft().attachments().constLast().isVideo);
        QCOMPARE(m_composeTabShown, 0);
    }

    void aSuccessClearsAnOldMessage() {
        m_flow->setScreenRecordingError(QStringLiteral("An old failure"));
        recordToReview(ScreenRecordingStartModes::AppendToDraft{});
        m_workflow->panels.attach();
        QVERIFY(!m_flow->screenRecordingError());
    }

    void aFailedRecordingForANewTaskBringsThePopoverBackWithItsMessage() {
        m_flow->startScreenRecording(ScreenRecordingStartModes::ReplaceDraft{});
        m_flow->confirmScreenRecordingSetup(RecordingConfiguration{});
        m_workflow->picker.failToStart(QStringLiteral("The portal went away."));
        QCOMPARE(m_flow->screenRecordingError(), QStringLiteral("Recording failed: The portal went away."));
        QCOMPARE(m_popover, (QStringList{QStringLiteral("show"), QStringLiteral("close"), QStringLiteral("show")}));
    }

    void aFailedRecordingForTheComposerLeavesThePopoverClosed() {
        m_flow->startScreenRecording(ScreenRecordingStartModes::AppendToDraft{});
        m_flow->confirmScreenRecordingSetup(RecordingConfiguration{});
        m_workflow->picker.failToStart(QStringLiteral("The portal went away."));
        QCOMPARE(m_flow->screenRecordingError(), QStringLiteral("Recording failed: The portal went away."));
        QCOMPARE(m_popover, (QStringList{QStringLiteral("show"), QStringLiteral("close")}));
    }

    void aCancelledPickerShowsNoMessage() {
        m_flow->setScreenRecordingError(QStringLiteral("An old failure"));
        m_flow->startScreenRecording(ScreenRecordingStartModes::ReplaceDraft{});
        m_flow->confirmScreenRecordingSetup(RecordingConfiguration{});
        m_workflow->picker.cancel();
        QCOMPARE(m_flow->screenRecordingError(), QStringLiteral("An old failure"));
        QCOMPARE(m_popover.last(), QStringLiteral("show"));
    }

    void discardingTheReviewBringsBackThePopoverOnlyForANewTask() {
        recordToReview(ScreenRecordingStartModes::ReplaceDraft{});
        m_workflow->panels.discard();
        QCOMPARE(m_popover, (QStringList{QStringLiteral("show"), QStringLiteral("close"), QStringLiteral("show")}));
        QVERIFY(!m_workflow->coordinator->onPreviewReady);

        m_popover.clear();
        recordToReview(ScreenRecordingStartModes::AppendToDraft{});
        m_workflow->panels.discard();
        QCOMPARE(m_popover, (QStringList{QStringLiteral("show"), QStringLiteral("close")}));
        QCOMPARE(app().draft().attachments().size(), 0);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(ScreenRecordingFlowTest)
#include "ScreenRecordingFlowTest.moc"
