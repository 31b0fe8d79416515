// Creations whose answer is lost, against norvane-sandbox: the service creates the task and the
// connection drops before the answer, or the answer can't be read. The page says that the task may
// exist; a retry looks for it in the list first and creates nothing when it is there, offering it
// instead; only "Create Anyway" makes a second one. A failure that certainly created nothing is
// retried as before.
#include "core/storage/StorageProviderRegistry.h"
#include "support/AppStateFixture.h"
#include "support/SandboxDemo.h"
#include "support/SubmitControllerFixture.h"
#include "support/SyncHttpClient.h"
#include "support/TestMain.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QTest>

using namespace SubmitTesting;
using namespace ForegroundSubmitPhases;

namespace {
const QString createPattern = QStringLiteral("/api/v2/list/*/task");
const QString searchPattern = QStringLiteral("/api/v2/team/*/task");
const QString mayExist = QStringLiteral("The task may have been created");
const QString alreadyInTheList = QStringLiteral("An open task of this name is already in the list");

SandboxFault onCreation(SandboxFault fault) {
    fault.method = QStringLiteral("POST");
    return fault;
}

// The task is created, and the connection drops in place of the answer. A body that can't be sent
// twice makes one drop enough.
SandboxFault lostAnswer() {
    return onCreation(SandboxFault::dropAnswer(createPattern, 1));
}

// The connection drops once the whole request has arrived, before the task is created.
SandboxFault droppedBeforeCreating() {
    return onCreation(SandboxFault::dropConnection(createPattern, 1));
}

// The first creation goes through untouched, so that the next rule meets the second.
SandboxFault passingFirstCreation() {
    return onCreation(SandboxFault::delay(createPattern, 1));
}
} // namespace

class LostAnswerSandboxTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    SyncHttpClient m_http;
    std::unique_ptr<AppStateFixture> m_fixture;
    StorageProviderRegistry m_providers;
    std::optional<SubmitControllerFixture> m_submission;

    AppState& app() { return m_fixture->app(); }
    SubmitController& controller() { return m_submission->controller; }
    BackgroundSubmitQueue& queue() { return m_submission->pipeline.queue; }
    RecordingNotifier& notifier() { return m_submission->pipeline.notifier; }
    template <typename Phase> const Phase* shownPhase() { return m_submission->shownPhase<Phase>(); }

    void waitForJobs() { QTRY_COMPARE_WITH_TIMEOUT(queue().pendingCount(), 0, 20'000); }

    void submit(const QString& name) {
        app().draft().setName(name);
        controller().submitDraft();
        QVERIFY(controller().foregroundSubmit());
    }

    void submitBulk(const QString& lines) {
        controller().setBulkMode(true);
        controller().setBulkLines(lines);
        controller().submitDraft();
        QVERIFY(controller().foregroundSubmit());
    }

    // Submits `name` under `fault` and waits for the failed page; its retry id.
    QUuid failedUnder(const SandboxFault& fault, const QString& name) {
        if (!m_sandbox.addFault(fault)) {
            return {};
        }
        submit(name);
        if (!QTest::qWaitFor([this] { return shownPhase<Failed>() != nullptr; }, 20'000)) {
            return {};
        }
        return shownPhase<Failed>()->retryJobID.value_or(QUuid());
    }

    // Retries on the page and waits for the next result.
    void retry(const QUuid& retryJobID) {
        m_submission->shown.clear();
        controller().retryForegroundSubmit(retryJobID);
        waitForJobs();
    }

    // The open tasks of the list, by id, and how many are named so.
    QHash<QString, QString> supportTasks() { return SandboxDemo::openTaskNames(m_http, m_sandbox, listID()); }
    int tasksNamed(const QString& name) {
        const QHash<QString, QString> tasks = supportTasks();
        return static_cast<int>(std::count(tasks.cbegin(), tasks.cend(), name));
    }

    static QString listID() { return SandboxDemo::supportListID; }

    // The requests since the log was last cleared: creations, and searches of the list's tasks.
    QJsonArray creations() { return postsEndingWith(m_sandbox.requests(), QStringLiteral("/task")); }
    int searches() {
        int count = 0;
        for (const QJsonValue& entry : m_sandbox.requests()) {
            count += entry[QStringLiteral("method")].toString() == QStringLiteral("GET") &&
                             entry[QStringLiteral("path")].toString().startsWith(QStringLiteral("/api/v2/team/"))
                         ? 1
                         : 0;
        }
        return count;
    }

    const FailedSubmitJob* kept(const QUuid& retryJobID) {
        const auto found = queue().failedJobs().constFind(retryJobID);
        return found == queue().failedJobs().cend() ? nullptr : &*found;
    }

private slots:
    void initTestCase() { QVERIFY2(m_sandbox.start(), qPrintable(m_sandbox.errorString())); }

    void init() {
        m_fixture = AppStateFixture::withFirstUser(m_sandbox);
        QVERIFY(m_fixture);
        m_fixture->writeSettings({{"activeAccountID", SandboxDemo::firstUserID}});
        m_fixture->startSignedIn();
        QVERIFY(m_fixture->chooseNorthwindList(listID()));
        m_submission.emplace(app(), m_providers);
    }

    void cleanup() {
        m_submission.reset();
        m_fixture.reset();
    }

    // The failed page.

    void aLostAnswerFailsSayingThatTheTaskMayHaveBeenCreated() {
        const QUuid retryID = failedUnder(lostAnswer(), QStringLiteral("Answer lost"));
        QVERIFY(!retryID.isNull());
        const Failed* failed = shownPhase<Failed>();
        QCOMPARE(failed->failure, CreateFailure::answerLost);
        QVERIFY2(
            failed->message.startsWith(QStringLiteral("Couldn't reach Norvane. Check your connection.\n") + mayExist),
            qPrintable(failed->message));
        QCOMPARE(tasksNamed(QStringLiteral("Answer lost")), 1);
        const FailedSubmitJob* job = kept(retryID);
        QVERIFY(job && std::holds_alternative<FailedSubmitJobs::CreateTask>(*job));
        QCOMPARE(std::get<FailedSubmitJobs::CreateTask>(*job).failure, CreateFailure::answerLost);
        QCOMPARE(std::get<FailedSubmitJobs::CreateTask>(*job).payload.workspaceID, SandboxDemo::northwindID);
    }

    void anUnreadableAnswerToACreationIsALostAnswerToo() {
        const QUuid retryID =
            failedUnder(onCreation(SandboxFault::garbleAnswer(createPattern)), QStringLiteral("Answer garbled"));
        QVERIFY(!retryID.isNull());
        const Failed* failed = shownPhase<Failed>();
        QCOMPARE(failed->failure, CreateFailure::answerLost);
        QVERIFY2(failed->message.startsWith(QStringLiteral("Unexpected response from Norvane.\n") + mayExist),
                 qPrintable(failed->message));
        QCOMPARE(tasksNamed(QStringLiteral("Answer garbled")), 1);
    }

    void aServerErrorCreatedNothingAndItsRetryCreatesAtOnce() {
        const QUuid retryID =
            failedUnder(onCreation(SandboxFault::answer(createPattern, 503)), QStringLiteral("Refused by a 503"));
        QVERIFY(!retryID.isNull());
        QCOMPARE(shownPhase<Failed>()->failure, CreateFailure::notCreated);
        QCOMPARE(shownPhase<Failed>()->message, QStringLiteral("Sandbox fault: HTTP 503"));
        QVERIFY(m_sandbox.clearRequests());
        retry(retryID);
        QVERIFY(shownPhase<Done>());
        QCOMPARE(m_submission->shown, (QStringList{QStringLiteral("creating"), QStringLiteral("done 0 failed")}));
        QCOMPARE(searches(), 0);
        QCOMPARE(creations().size(), 1);
        QCOMPARE(tasksNamed(QStringLiteral("Refused by a 503")), 1);
    }

    // The retry.

    void theRetryOfALostAnswerFindsTheTaskAndCreatesNothing() {
        const QString name = QStringLiteral("Found on retry");
        const QUuid retryID = failedUnder(lostAnswer(), name);
        QVERIFY(!retryID.isNull());
        const QString createdID = supportTasks().key(name);
        QVERIFY(!createdID.isEmpty());
        QVERIFY(m_sandbox.clearRequests());

        retry(retryID);
        const FoundExisting* found = shownPhase<FoundExisting>();
        QVERIFY(found);
        QCOMPARE(m_submission->shown, (QStringList{QStringLiteral("creating"), QStringLiteral("found ") + name}));
        QCOMPARE(found->task.id, createdID);
        QCOMPARE(found->task.name, name);
        QVERIFY(found->task.url && found->task.url->endsWith(createdID));
        QVERIFY(searches() > 0);
        QCOMPARE(creations().size(), 0);
        QCOMPARE(tasksNamed(name), 1);
        QVERIFY(!kept(retryID));
        const FailedSubmitJob* job = kept(found->retryJobID);
        QVERIFY(job && std::holds_alternative<FailedSubmitJobs::CreateTask>(*job));
        QCOMPARE(std::get<FailedSubmitJobs::CreateTask>(*job).failure, CreateFailure::taskFound);
        QCOMPARE(notifier().notificationCount(), 0);
    }

    void createAnywayCreatesExactlyOneMoreTask() {
        const QString name = QStringLiteral("Created anyway");
        const QUuid retryID = failedUnder(lostAnswer(), name);
        QVERIFY(!retryID.isNull());
        retry(retryID);
        QVERIFY(shownPhase<FoundExisting>());
        const QUuid createAnywayID = shownPhase<FoundExisting>()->retryJobID;
        QVERIFY(m_sandbox.clearRequests());

        retry(createAnywayID);
        QVERIFY(shownPhase<Done>());
        QCOMPARE(searches(), 0);
        QCOMPARE(creations().size(), 1);
        QCOMPARE(tasksNamed(name), 2);
        QVERIFY(queue().failedJobs().isEmpty());

        // The choice is spent: the same id again creates nothing.
        retry(createAnywayID);
        QCOMPARE(creations().size(), 1);
        QCOMPARE(tasksNamed(name), 2);
    }

    void aLostAnswerWhoseTaskIsNotThereIsCreatedByTheRetry() {
        const QString name = QStringLiteral("Never arrived");
        const QUuid retryID = failedUnder(droppedBeforeCreating(), name);
        QVERIFY(!retryID.isNull());
        QCOMPARE(shownPhase<Failed>()->failure, CreateFailure::answerLost);
        QCOMPARE(tasksNamed(name), 0);
        QVERIFY(m_sandbox.clearRequests());

        retry(retryID);
        QVERIFY(shownPhase<Done>());
        QVERIFY(searches() > 0);
        QCOMPARE(creations().size(), 1);
        QCOMPARE(tasksNamed(name), 1);
    }

    void aLookThatFailsCreatesNothingAndTheNextRetryLooksAgain() {
        const QString name = QStringLiteral("Looked for twice");
        const QUuid retryID = failedUnder(lostAnswer(), name);
        QVERIFY(!retryID.isNull());
        QVERIFY(m_sandbox.addFault(SandboxFault::answer(searchPattern, 500).forMethod(QStringLiteral("GET"))));
        QVERIFY(m_sandbox.clearRequests());

        retry(retryID);
        const Failed* failed = shownPhase<Failed>();
        QVERIFY(failed && failed->retryJobID);
        QCOMPARE(failed->failure, CreateFailure::answerLost);
        QVERIFY2(failed->message.contains(mayExist), qPrintable(failed->message));
        QCOMPARE(creations().size(), 0);

        retry(*failed->retryJobID);
        QVERIFY(shownPhase<FoundExisting>());
        QCOMPARE(creations().size(), 0);
        QCOMPARE(tasksNamed(name), 1);
    }

    // In the background.

    void inTheBackgroundTheNotificationSaysSoAndItsRetryCreatesOnlyWhenAskedAgain() {
        const QString name = QStringLiteral("Lost in the background");
        SandboxFault slowLoss = lostAnswer();
        slowLoss.delayMs = 300;
        QVERIFY(m_sandbox.addFault(slowLoss));
        submit(name);
        controller().backgroundActiveSubmit();
        waitForJobs();
        QCOMPARE(notifier().createFailed.size(), 1);
        QCOMPARE(notifier().createFailed[0].taskName, name);
        QVERIFY2(notifier().createFailed[0].error.contains(mayExist), qPrintable(notifier().createFailed[0].error));

        // "Retry" on the notification: the task is found, and the notification offers another retry.
        queue().retry(notifier().createFailed[0].retryJobID, app().client(), {}, true);
        waitForJobs();
        QCOMPARE(notifier().createFailed.size(), 2);
        QVERIFY2(notifier().createFailed[1].error.startsWith(alreadyInTheList),
                 qPrintable(notifier().createFailed[1].error));
        QCOMPARE(tasksNamed(name), 1);

        queue().retry(notifier().createFailed[1].retryJobID, app().client(), {}, true);
        waitForJobs();
        QCOMPARE(notifier().created.size(), 1);
        QCOMPARE(tasksNamed(name), 2);
    }

    // Bulk.

    void aBulkLineWhoseAnswerWasLostIsFoundAndNotCreatedAgain() {
        QVERIFY(m_sandbox.addFault(passingFirstCreation()));
        QVERIFY(m_sandbox.addFault(lostAnswer()));
        submitBulk(QStringLiteral("Bulk one\nBulk two\nBulk three"));
        QTRY_VERIFY_WITH_TIMEOUT(shownPhase<BulkDone>(), 20'000);
        const BulkDone* done = shownPhase<BulkDone>();
        QCOMPARE(done->created.size(), 2);
        QCOMPARE(done->failures.size(), 1);
        QCOMPARE(done->failures[0].line, QStringLiteral("Bulk two"));
        QCOMPARE(done->failures[0].failure, CreateFailure::answerLost);
        QVERIFY2(done->failures[0].message.contains(mayExist), qPrintable(done->failures[0].message));
        const FailedSubmitJob* job = kept(*done->retryJobID);
        QVERIFY(job);
        const BulkSubmitJobPayload& remaining = std::get<FailedSubmitJobs::BulkCreate>(*job).payload;
        QCOMPARE(remaining.taskNames, QList<QString>{QStringLiteral("Bulk two")});
        QCOMPARE(remaining.lostAnswerLines, QList<QString>{QStringLiteral("Bulk two")});
        QCOMPARE(tasksNamed(QStringLiteral("Bulk two")), 1);
        QVERIFY(m_sandbox.clearRequests());

        // Found: nothing is created, and the line is kept for a retry that creates it anyway.
        retry(*done->retryJobID);
        const Failed* failed = shownPhase<Failed>();
        QVERIFY(failed && failed->retryJobID);
        QCOMPARE(failed->failure, CreateFailure::taskFound);
        QVERIFY2(failed->message.startsWith(alreadyInTheList), qPrintable(failed->message));
        QCOMPARE(creations().size(), 0);
        QCOMPARE(tasksNamed(QStringLiteral("Bulk two")), 1);
        const FailedSubmitJob* again = kept(*failed->retryJobID);
        QVERIFY(again);
        QVERIFY(std::get<FailedSubmitJobs::BulkCreate>(*again).payload.lostAnswerLines.isEmpty());

        retry(*failed->retryJobID);
        QVERIFY(shownPhase<BulkDone>());
        QCOMPARE(shownPhase<BulkDone>()->created.size(), 1);
        QCOMPARE(creations().size(), 1);
        QCOMPARE(tasksNamed(QStringLiteral("Bulk two")), 2);
    }

    void aBulkLineWhoseAnswerWasLostBeforeItsTaskWasMadeIsCreatedByTheRetry() {
        QVERIFY(m_sandbox.addFault(passingFirstCreation()));
        QVERIFY(m_sandbox.addFault(droppedBeforeCreating()));
        submitBulk(QStringLiteral("Dropped one\nDropped two"));
        QTRY_VERIFY_WITH_TIMEOUT(shownPhase<BulkDone>(), 20'000);
        QCOMPARE(shownPhase<BulkDone>()->failures.size(), 1);
        QCOMPARE(shownPhase<BulkDone>()->failures[0].failure, CreateFailure::answerLost);
        QCOMPARE(tasksNamed(QStringLiteral("Dropped two")), 0);

        retry(*shownPhase<BulkDone>()->retryJobID);
        QVERIFY(shownPhase<BulkDone>());
        QCOMPARE(shownPhase<BulkDone>()->created.size(), 1);
        QCOMPARE(tasksNamed(QStringLiteral("Dropped two")), 1);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(LostAnswerSandboxTest)
#include "LostAnswerSandboxTest.moc"
