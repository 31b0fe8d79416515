// Submitting from the popover as the central state drives it, against norvane-sandbox: the session
// that mirrors a job's phases, leaving it for the background, retries from the result pages, and the
// banner for an outcome whose notification could not be delivered.
#include "core/compose/AttachmentStaging.h"
#include "core/storage/StorageProviderRegistry.h"
#include "support/AppStateFixture.h"
#include "support/SandboxDemo.h"
#include "support/SubmitControllerFixture.h"
#include "support/TemporaryFolderTesting.h"
#include "support/TestMain.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QSignalSpy>
#include <QTest>

using namespace SubmitTesting;
using namespace ForegroundSubmitPhases;

namespace {
const QString createPattern = QStringLiteral("/api/v2/list/*/task");

SandboxFault refusingCreate(int delayMs = 0) {
    SandboxFault fault = SandboxFault::answer(createPattern, 400);
    fault.method = QStringLiteral("POST");
    if (delayMs > 0) {
        fault.delayMs = delayMs;
    }
    return fault;
}

SandboxFault delaying(const QString& path, int delayMs) {
    SandboxFault fault = SandboxFault::delay(path, delayMs);
    fault.method = QStringLiteral("POST");
    return fault;
}
} // namespace

class SubmitControllerSandboxTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    std::optional<TemporaryFolderOverride> m_temporary;
    std::unique_ptr<AppStateFixture> m_fixture;
    StorageProviderRegistry m_providers;
    std::optional<SubmitControllerFixture> m_submission;

    AppState& app() { return m_fixture->app(); }
    TaskDraft& draft() { return app().draft(); }
    SubmitController& controller() { return m_submission->controller; }
    SubmitPipeline& pipeline() { return m_submission->pipeline; }
    // Every phase the session showed, in order.
    QStringList& shown() { return m_submission->shown; }

    void selectSupportList() { QVERIFY(m_fixture->chooseNorthwindList(SandboxDemo::supportListID)); }

    StagedAttachment stagedFile(const QString& name) {
        return *AttachmentStaging::stage(QUrl::fromLocalFile(m_temporary->writeOutside(name, "bytes")));
    }

    void waitForJobs() { QTRY_COMPARE_WITH_TIMEOUT(pipeline().queue.pendingCount(), 0, 20'000); }

    template <typename Phase> const Phase* shownPhase() { return m_submission->shownPhase<Phase>(); }

    QJsonArray creates() { return postsEndingWith(m_sandbox.requests(), QStringLiteral("/task")); }

private slots:
    void initTestCase() { QVERIFY2(m_sandbox.start(), qPrintable(m_sandbox.errorString())); }

    void init() {
        QVERIFY(m_sandbox.reset());
        m_temporary.emplace();
        m_fixture = std::make_unique<AppStateFixture>(&m_sandbox);
        m_fixture->storeToken(SandboxDemo::firstUserID, m_sandbox.token());
        m_fixture->writeSettings({{"activeAccountID", SandboxDemo::firstUserID}});
        m_fixture->startSignedIn();
        m_submission.emplace(app(), m_providers);
    }

    void cleanup() {
        m_submission.reset();
        m_fixture.reset();
        m_temporary.reset();
    }

    // Whether the composer can submit.

    void canSubmitNeedsAListAndANameThatIsNotBlank() {
        draft().setName(QStringLiteral("Write the report"));
        QVERIFY(!controller().canSubmit());
        selectSupportList();
        QVERIFY(controller().canSubmit());
        draft().setName(QStringLiteral(" \t "));
        QVERIFY(!controller().canSubmit());
    }

    void canSubmitTakesTheNamesThatSubmitDraftTakes() {
        selectSupportList();
        // Spaces and tabs alone are blank to both; newlines are not.
        draft().setName(QStringLiteral(" \t "));
        QVERIFY(!controller().canSubmit());
        controller().submitDraft();
        QVERIFY(!controller().foregroundSubmit());
        draft().setName(QStringLiteral(" \n\t"));
        QVERIFY(controller().canSubmit());
        controller().submitDraft();
        QVERIFY(controller().foregroundSubmit());
        waitForJobs();
    }

    void inBulkModeOneRealLineAmongBlankOnesTurnsSubmittingOn() {
        selectSupportList();
        controller().setBulkMode(true);
        controller().setBulkLines(QStringLiteral("  \n\t\n \n"));
        QVERIFY(!controller().canSubmit());
        controller().setBulkLines(QStringLiteral("  \n real line \n"));
        QVERIFY(controller().canSubmit());
    }

    void canSubmitIsOffWhileASubmissionIsShown() {
        selectSupportList();
        draft().setName(QStringLiteral("Shown"));
        QSignalSpy changes(&controller(), &SubmitController::canSubmitChanged);
        controller().submitDraft();
        QVERIFY(!controller().canSubmit());
        QTRY_VERIFY(shownPhase<Done>());
        QVERIFY(!controller().canSubmit());
        QCOMPARE(changes.size(), 1);
        // Leaving empties the composer, so there is nothing to submit again.
        controller().leaveSubmitResult();
        QVERIFY(!controller().canSubmit());
    }

    // Starting.

    void aSubmissionMirrorsTheJobsPhasesAndLeavesTheDraftAsItWas() {
        selectSupportList();
        draft().setName(QStringLiteral("  Mirrored  "));
        draft().appendAttachments({stagedFile(QStringLiteral("notes.txt"))});
        controller().submitDraft();
        QCOMPARE(controller().foregroundSubmit()->taskName, QStringLiteral("Mirrored"));
        QTRY_VERIFY(shownPhase<Done>());
        QCOMPARE(shown(), (QStringList{QStringLiteral("creating"), QStringLiteral("uploading 1/1"),
                                       QStringLiteral("done 0 failed")}));
        QCOMPARE(draft().name(), QStringLiteral("  Mirrored  "));
        QCOMPARE(draft().attachments().size(), 1);
        QCOMPARE(pipeline().notifier.notificationCount(), 0);
    }

    void aSecondSubmitWhileASessionIsShownDoesNothing() {
        selectSupportList();
        draft().setName(QStringLiteral("Only once"));
        controller().submitDraft();
        const QUuid jobID = controller().foregroundSubmit()->jobID;
        controller().submitDraft();
        QCOMPARE(controller().foregroundSubmit()->jobID, jobID);
        QCOMPARE(pipeline().queue.pendingCount(), 1);
        waitForJobs();
        QCOMPARE(creates().size(), 1);
    }

    void aNameOfSpacesAndTabsStartsNothing() {
        selectSupportList();
        draft().setName(QStringLiteral(" \t "));
        controller().submitDraft();
        QVERIFY(!controller().foregroundSubmit());
        QCOMPARE(pipeline().queue.pendingCount(), 0);
    }

    void withoutAListNothingStarts() {
        draft().setName(QStringLiteral("Nowhere"));
        controller().submitDraft();
        QVERIFY(!controller().foregroundSubmit());
        QCOMPARE(pipeline().queue.pendingCount(), 0);
    }

    // Leaving the page.

    void movingToTheBackgroundWhileUploadingEmptiesTheComposerAndTheJobNotifies() {
        QVERIFY(m_sandbox.addFault(delaying(QStringLiteral("/api/v2/task/*/attachment"), 300)));
        selectSupportList();
        draft().setName(QStringLiteral("Left behind"));
        draft().appendAttachments({stagedFile(QStringLiteral("notes.txt"))});
        controller().submitDraft();
        QTRY_VERIFY(shownPhase<Uploading>());
        const QUuid jobID = controller().foregroundSubmit()->jobID;

        controller().backgroundActiveSubmit();
        QVERIFY(!controller().foregroundSubmit());
        QCOMPARE(draft().name(), QString());
        QVERIFY(draft().attachments().isEmpty());
        QCOMPARE(pipeline().notifier.permissionRequests, 1);
        QCOMPARE(pipeline().queue.backgroundedJobIDs(), QSet<QUuid>{jobID});

        waitForJobs();
        QCOMPARE(pipeline().notifier.created.size(), 1);
        QCOMPARE(pipeline().notifier.created[0].taskName, QStringLiteral("Left behind"));
        QVERIFY(pipeline().queue.backgroundedJobIDs().isEmpty());
        QVERIFY(!controller().foregroundSubmit());
    }

    void movingToTheBackgroundAfterTheJobEndedPostsNoNotification() {
        selectSupportList();
        draft().setName(QStringLiteral("Already done"));
        controller().submitDraft();
        QTRY_VERIFY(shownPhase<Done>());
        controller().backgroundActiveSubmit();
        QVERIFY(!controller().foregroundSubmit());
        QCOMPARE(draft().name(), QString());
        QCOMPARE(pipeline().notifier.notificationCount(), 0);
    }

    void movingToTheBackgroundAfterTheJobEndedLeavesNothingCountedThere() {
        selectSupportList();
        draft().setName(QStringLiteral("Already done"));
        controller().submitDraft();
        QTRY_VERIFY(shownPhase<Done>());
        controller().backgroundActiveSubmit();
        QVERIFY(pipeline().queue.backgroundedJobIDs().isEmpty());

        QVERIFY(m_sandbox.addFault(refusingCreate()));
        draft().setName(QStringLiteral("Already refused"));
        controller().submitDraft();
        QTRY_VERIFY(shownPhase<Failed>());
        controller().backgroundActiveSubmit();
        QVERIFY(pipeline().queue.backgroundedJobIDs().isEmpty());
        QCOMPARE(pipeline().queue.pendingCount(), 0);
    }

    void aPhaseThatArrivesAfterTheSessionEndedIsIgnored() {
        QVERIFY(m_sandbox.addFault(delaying(createPattern, 200)));
        selectSupportList();
        draft().setName(QStringLiteral("Abandoned page"));
        controller().submitDraft();
        controller().leaveSubmitResult();
        waitForJobs();
        QVERIFY(!controller().foregroundSubmit());
        QCOMPARE(shown(), (QStringList{QStringLiteral("creating"), QStringLiteral("none")}));
        QCOMPARE(pipeline().notifier.notificationCount(), 0);
        QCOMPARE(creates().size(), 1);
    }

    void leavingAResultPageEmptiesTheComposerWhateverFailed() {
        QVERIFY(m_sandbox.addFault(refusingCreate()));
        selectSupportList();
        draft().setName(QStringLiteral("Refused"));
        controller().submitDraft();
        QTRY_VERIFY(shownPhase<Failed>());
        controller().leaveSubmitResult();
        QVERIFY(!controller().foregroundSubmit());
        QCOMPARE(draft().name(), QString());
        QCOMPARE(pipeline().queue.failedJobs().size(), 1);
    }

    // Retrying from the result pages.

    void aRetriedCreateFollowsTheSameSessionAndMakesOneTask() {
        QVERIFY(m_sandbox.addFault(refusingCreate()));
        selectSupportList();
        draft().setName(QStringLiteral("Second time lucky"));
        controller().submitDraft();
        QTRY_VERIFY(shownPhase<Failed>());
        const QUuid jobID = controller().foregroundSubmit()->jobID;
        controller().retryForegroundSubmit(*shownPhase<Failed>()->retryJobID);
        QTRY_VERIFY(shownPhase<Done>());
        QCOMPARE(controller().foregroundSubmit()->jobID, jobID);
        QCOMPARE(shown().mid(2), (QStringList{QStringLiteral("creating"), QStringLiteral("done 0 failed")}));
        QCOMPARE(creates().size(), 2);
        QCOMPARE(creates()[1][QStringLiteral("status")].toInt(), 200);
    }

    void aBulkRetryAfterAPartialFailureCountsOnlyTheFailedLines() {
        QVERIFY(m_sandbox.addFault(refusingCreate()));
        selectSupportList();
        controller().setBulkMode(true);
        controller().setBulkLines(QStringLiteral("One\n\nTwo\nThree\n"));
        controller().submitDraft();
        QCOMPARE(controller().foregroundSubmit()->taskName, QStringLiteral("3 tasks"));
        QTRY_VERIFY(shownPhase<BulkDone>());
        QCOMPARE(shownPhase<BulkDone>()->failures.size(), 1);
        shown().clear();
        controller().retryForegroundSubmit(*shownPhase<BulkDone>()->retryJobID);
        QTRY_VERIFY(shownPhase<BulkDone>());
        QCOMPARE(shown(), (QStringList{QStringLiteral("bulkCreating 0/1"), QStringLiteral("bulkCreating 1/1"),
                                       QStringLiteral("bulkDone 1 created 0 failed")}));
        QCOMPARE(creates().last()[QStringLiteral("json")][QStringLiteral("name")].toString(), QStringLiteral("One"));
    }

    void aRetryOfAnIDNoLongerKeptLeavesThePageOnItsRetryPhase() {
        QVERIFY(m_sandbox.addFault(refusingCreate()));
        selectSupportList();
        draft().setName(QStringLiteral("Retried elsewhere"));
        controller().submitDraft();
        QTRY_VERIFY(shownPhase<Failed>());
        const QUuid retryID = *shownPhase<Failed>()->retryJobID;
        pipeline().queue.retry(retryID, app().client(), {}, true);
        waitForJobs();
        controller().retryForegroundSubmit(retryID);
        QVERIFY(shownPhase<Creating>());
        QTest::qWait(50);
        QVERIFY(shownPhase<Creating>());
        QCOMPARE(pipeline().queue.pendingCount(), 0);
    }

    void aSingleTaskNamedWithTasksShowsTheBulkLabelOnRetry() {
        QVERIFY(m_sandbox.addFault(refusingCreate()));
        selectSupportList();
        draft().setName(QStringLiteral("Sort the tasks"));
        controller().submitDraft();
        QTRY_VERIFY(shownPhase<Failed>());
        shown().clear();
        controller().retryForegroundSubmit(*shownPhase<Failed>()->retryJobID);
        QTRY_VERIFY(shownPhase<Done>());
        QCOMPARE(shown(), (QStringList{QStringLiteral("bulkCreating 0/1"), QStringLiteral("creating"),
                                       QStringLiteral("done 0 failed")}));
    }

    // Bulk.

    void theDescriptionTypedInTheComposerIsNotSentOnAnyBulkTask() {
        selectSupportList();
        draft().setDescriptionText(QStringLiteral("Typed in the composer"));
        controller().setBulkMode(true);
        controller().setBulkLines(QStringLiteral("Same\nSame"));
        controller().submitDraft();
        QTRY_VERIFY(shownPhase<BulkDone>());
        QCOMPARE(shownPhase<BulkDone>()->created.size(), 2);
        const QJsonArray sent = creates();
        QCOMPARE(sent.size(), 2);
        for (const QJsonValue& entry : sent) {
            QVERIFY(!entry[QStringLiteral("json")].toObject().contains(QStringLiteral("markdown_description")));
        }
        controller().leaveSubmitResult();
        QVERIFY(!controller().isBulkMode());
        QCOMPARE(controller().bulkLines(), QString());
        QCOMPARE(draft().descriptionText(), QString());
    }

    // The banner.

    void anUndeliveredOutcomeShowsAsTheBannerWhoseRetryNotifies() {
        pipeline().notifier.delivers = false;
        QVERIFY(m_sandbox.addFault(refusingCreate(200)));
        selectSupportList();
        draft().setName(QStringLiteral("Banner"));
        controller().submitDraft();
        controller().backgroundActiveSubmit();
        waitForJobs();
        QTRY_VERIFY(controller().lastBackgroundJobResult());
        const auto* failed =
            std::get_if<BackgroundJobResult::CreateFailed>(&controller().lastBackgroundJobResult()->outcome);
        QVERIFY(failed);
        QCOMPARE(failed->taskName, QStringLiteral("Banner"));
        QVERIFY(pipeline().queue.failedJobs().contains(failed->retryJobID));

        controller().retryBackgroundResult();
        QVERIFY(!controller().lastBackgroundJobResult());
        waitForJobs();
        QCOMPARE(pipeline().notifier.created.size(), 1);
        QVERIFY(pipeline().notifier.created[0].wantsDelivery);
        QCOMPARE(creates().size(), 2);
        // The retry's own outcome was not delivered either, so it stands in the banner now.
        QTRY_VERIFY(controller().lastBackgroundJobResult());
        QCOMPARE(controller().lastBackgroundJobResult()->outcome,
                 BackgroundJobResult::Outcome(
                     BackgroundJobResult::Success{QStringLiteral("Banner"), pipeline().notifier.created[0].taskURL}));
        controller().dismissBackgroundResult();
        QVERIFY(!controller().lastBackgroundJobResult());
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(SubmitControllerSandboxTest)
#include "SubmitControllerSandboxTest.moc"
