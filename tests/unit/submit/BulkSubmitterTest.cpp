#include "core/submit/BulkSubmitter.h"
#include "support/TestMain.h"

#include "support/HierarchyTesting.h"
#include "support/RunTask.h"
#include "support/SubmitTesting.h"

#include <QTest>

using HierarchyTesting::FakeClient;
using namespace SubmitTesting;

namespace {
const QString createPath = QStringLiteral("list/L1/task");
const QByteArray created = R"({"id":"T1","name":"Line"})";
const QByteArray refused = R"({"err":"Name is taken","ECODE":"ITEM_001"})";

BulkSubmitJobPayload lines(const QStringList& names) {
    return BulkSubmitJobPayload{QStringLiteral("L1"), names, CreateTaskRequest{}};
}
} // namespace

class BulkSubmitterTest : public QObject {
    Q_OBJECT

    std::optional<FakeClient> m_fake;

private slots:
    void init() { m_fake.emplace(); }
    void cleanup() { m_fake.reset(); }

    void noLinesFailWithCouldntCreateTasksAndSendNothing() {
        const BulkSubmitResult result = runTask(BulkSubmitter(m_fake->client).runBulkJob(lines({}), {}));
        QCOMPARE(result.error, QStringLiteral("Couldn't create tasks."));
        QVERIFY(result.created.isEmpty() && result.failures.isEmpty());
        QVERIFY(m_fake->service.paths.isEmpty());
    }

    void threeLinesWithTheSecondRefusedCreateTwoAndFailOne() {
        m_fake->service.answerNext(createPath, created);
        m_fake->service.answerNext(createPath, 400, refused);
        m_fake->service.answerNext(createPath, created);
        PhaseRecorder phases;
        const BulkSubmitResult result =
            runTask(BulkSubmitter(m_fake->client).runBulkJob(lines({"One", "Two", "Three"}), phases.handler()));
        QCOMPARE(result.created.size(), 2);
        QCOMPARE(result.failures.size(), 1);
        QCOMPARE(result.failures[0].line, QStringLiteral("Two"));
        QVERIFY(result.failures[0].message.contains(QStringLiteral("Name is taken")));
        QVERIFY(!result.error);
        QCOMPARE(phases.described(),
                 (QStringList{QStringLiteral("bulkCreating 1/3"), QStringLiteral("bulkCreating 2/3"),
                              QStringLiteral("bulkCreating 3/3")}));
    }

    void allLinesRefusedGiveTheFirstFailuresMessage() {
        m_fake->service.answerNext(createPath, 400, refused);
        m_fake->service.answerNext(createPath, 500, R"({"err":"Other","ECODE":"X"})");
        const BulkSubmitResult result = runTask(BulkSubmitter(m_fake->client).runBulkJob(lines({"One", "Two"}), {}));
        QVERIFY(result.created.isEmpty());
        QCOMPARE(result.failures.size(), 2);
        QCOMPARE(result.error, result.failures[0].message);
        QVERIFY(result.error->contains(QStringLiteral("Name is taken")));
        QVERIFY(result.failures[0].id != result.failures[1].id);
    }

    void duplicateLinesMakeDuplicateTasks() {
        m_fake->service.answer(createPath, created);
        const BulkSubmitResult result =
            runTask(BulkSubmitter(m_fake->client).runBulkJob(lines({"Same", "Same", "Same"}), {}));
        QCOMPARE(result.created.size(), 3);
        QCOMPARE(m_fake->service.paths.size(), 3);
    }

    void aLineOfALostAnswerIsLookedForOnceAndCreatedOnlyWhenAbsent() {
        m_fake->service.answer(QStringLiteral("team/W1/task"),
                               R"({"tasks":[{"id":"T9","name":"Found"},{"id":"T8","name":"Other"}],"last_page":true})");
        m_fake->service.answer(createPath, created);
        BulkSubmitJobPayload payload = lines({"Found", "Absent", "Fresh"});
        payload.workspaceID = QStringLiteral("W1");
        payload.lostAnswerLines = {QStringLiteral("Found"), QStringLiteral("Absent")};
        const BulkSubmitResult result = runTask(BulkSubmitter(m_fake->client).runBulkJob(payload, {}));
        QCOMPARE(result.created.size(), 2);
        QCOMPARE(result.failures.size(), 1);
        QCOMPARE(result.failures[0].line, QStringLiteral("Found"));
        QCOMPARE(result.failures[0].failure, CreateFailure::taskFound);
        QCOMPARE(m_fake->service.paths, (QStringList{QStringLiteral("team/W1/task"), createPath, createPath}));
        QVERIFY(m_fake->service.queries.first().contains(QStringLiteral("list_ids[]=L1")));
    }

    void whenTheListCantBeReadTheLinesOfLostAnswersWaitAndTheOthersAreCreated() {
        m_fake->service.answer(QStringLiteral("team/W1/task"), 500, R"({"err":"Search is down"})");
        m_fake->service.answer(createPath, created);
        BulkSubmitJobPayload payload = lines({"Lost", "Fresh"});
        payload.workspaceID = QStringLiteral("W1");
        payload.lostAnswerLines = {QStringLiteral("Lost")};
        const BulkSubmitResult result = runTask(BulkSubmitter(m_fake->client).runBulkJob(payload, {}));
        QCOMPARE(result.created.size(), 1);
        QCOMPARE(result.failures.size(), 1);
        QCOMPARE(result.failures[0].line, QStringLiteral("Lost"));
        QCOMPARE(result.failures[0].failure, CreateFailure::answerLost);
        QVERIFY(
            result.failures[0].message.startsWith(QStringLiteral("Search is down\nThe task may have been created")));
        QCOMPARE(m_fake->service.paths.count(createPath), 1);
    }

    void anUnreadableAnswerToALineIsALostAnswer() {
        m_fake->service.answer(createPath, R"({"name":"no id"})");
        const BulkSubmitResult result = runTask(BulkSubmitter(m_fake->client).runBulkJob(lines({"One"}), {}));
        QCOMPARE(result.failures.size(), 1);
        QCOMPARE(result.failures[0].failure, CreateFailure::answerLost);
        QVERIFY(result.failures[0].message.contains(QStringLiteral("The task may have been created")));
    }

    void theLinesGoOutOneAtATime() {
        m_fake->service.answer(createPath, created);
        runTask(BulkSubmitter(m_fake->client).runBulkJob(lines({"One", "Two", "Three", "Four"}), {}));
        QCOMPARE(m_fake->service.maxInFlight, 1);
        QCOMPARE(m_fake->service.paths.size(), 4);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(BulkSubmitterTest)
#include "BulkSubmitterTest.moc"
