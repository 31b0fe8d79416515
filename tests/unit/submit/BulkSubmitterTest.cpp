#include "submit/BulkSubmitter.h"
#include "TestMain.h"

#include "HierarchyTesting.h"
#include "RunTask.h"
#include "SubmitTesting.h"

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

    void theLinesGoOutOneAtATime() {
        m_fake->service.answer(createPath, created);
        runTask(BulkSubmitter(m_fake->client).runBulkJob(lines({"One", "Two", "Three", "Four"}), {}));
        QCOMPARE(m_fake->service.maxInFlight, 1);
        QCOMPARE(m_fake->service.paths.size(), 4);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(BulkSubmitterTest)
#include "BulkSubmitterTest.moc"
