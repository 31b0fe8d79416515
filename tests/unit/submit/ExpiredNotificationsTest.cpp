#include "core/notify/NotificationScheduler.h"
#include "core/settings/SettingsStore.h"
#include "core/storage/StorageProviderRegistry.h"
#include "core/submit/AttachmentUploadQueue.h"
#include "core/submit/BackgroundSubmitQueue.h"
#include "support/HierarchyTesting.h"
#include "support/ManualWallClock.h"
#include "support/RecordingLinkActions.h"
#include "support/RecordingNotificationCenter.h"
#include "support/SubmitTesting.h"
#include "support/TestMain.h"

#include <QTemporaryDir>
#include <QTest>

using HierarchyTesting::FakeClient;
using SubmitTesting::payload;

namespace {
const QString listID = QStringLiteral("L1");
const QString createPath = QStringLiteral("list/L1/task");
const QByteArray createdAnswer = R"({"id":"T1","name":"Report","url":"https://app.example.com/t/T1"})";
const QByteArray refusedAnswer = R"({"err":"List is closed","ECODE":"ITEM_015"})";

// The queue of jobs reporting through the program's scheduler to a recording notification center.
struct Pipeline {
    explicit Pipeline(const QTemporaryDir& folder)
        : settings(folder.filePath(QStringLiteral("settings-%1.json").arg(QUuid::createUuid().toString())))
        , scheduler(center, links, folder.filePath(QStringLiteral("reminders.json")), time.clock(), time.alarm())
        , queue(scheduler, uploads, providers, settings) {
        scheduler.registerCategories();
        QObject::connect(&queue, &BackgroundSubmitQueue::backgroundResult,
                         [this](const BackgroundJobResult& result) { banner.append(result.outcome); });
    }

    // Runs a job of one task that the user left to the background, to its end.
    void runInBackground(const QString& name) {
        const QUuid jobID = QUuid::createUuid();
        queue.enqueue(payload(listID, name), fake.client, jobID, {});
        queue.markBackgrounded(ForegroundSubmitSession{jobID, name, {}});
        QTRY_COMPARE(queue.pendingCount(), 0);
    }

    FakeClient fake;
    SettingsStore settings;
    StorageProviderRegistry providers;
    ManualWallClock time{QDateTime::currentDateTimeUtc()};
    RecordingNotificationCenter center;
    RecordingLinkActions links;
    NotificationScheduler scheduler;
    AttachmentUploadQueue uploads;
    BackgroundSubmitQueue queue;
    // What the popover's banner was handed, in order.
    QList<BackgroundJobResult::Outcome> banner;
};
} // namespace

// A failure's notification that the desktop takes away without an answer leaves its retry out of
// reach; its outcome comes to the popover's banner instead. One the user answered or closed, and a
// success, do not.
class ExpiredNotificationsTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;

private slots:
    void aFailedTaskWhoseNotificationExpiredComesToTheBanner() {
        Pipeline pipeline(m_folder);
        pipeline.fake.service.answer(createPath, 400, refusedAnswer);
        pipeline.runInBackground(QStringLiteral("Report"));
        QCOMPARE(pipeline.center.posted().size(), 1);
        QCoreApplication::sendPostedEvents();
        QVERIFY(pipeline.banner.isEmpty());

        pipeline.center.expire(0);
        QTRY_COMPARE(pipeline.banner.size(), 1);
        const BackgroundJobResult::Outcome outcome = pipeline.banner.constFirst();
        const auto* failed = std::get_if<BackgroundJobResult::CreateFailed>(&outcome);
        QVERIFY(failed);
        QCOMPARE(failed->taskName, QStringLiteral("Report"));
        QVERIFY(failed->message.contains(QStringLiteral("List is closed")));
        QCOMPARE(pipeline.queue.failedJobs().keys(), QList<QUuid>{failed->retryJobID});
    }

    void aPartialBulkWhoseNotificationExpiredComesToTheBanner() {
        Pipeline pipeline(m_folder);
        pipeline.fake.service.answerNext(createPath, createdAnswer);
        pipeline.fake.service.answerNext(createPath, 400, refusedAnswer);
        const QUuid jobID = QUuid::createUuid();
        pipeline.queue.enqueueBulk(BulkSubmitJobPayload{listID, {"One", "Two"}, {}}, pipeline.fake.client, jobID, {});
        pipeline.queue.markBackgrounded(ForegroundSubmitSession{jobID, QStringLiteral("2 tasks"), {}});
        QTRY_COMPARE(pipeline.queue.pendingCount(), 0);

        pipeline.center.expire(0);
        QTRY_COMPARE(pipeline.banner.size(), 1);
        const BackgroundJobResult::Outcome outcome = pipeline.banner.constFirst();
        const auto* partial = std::get_if<BackgroundJobResult::BulkPartial>(&outcome);
        QVERIFY(partial && partial->retryJobID);
        QCOMPARE(partial->createdCount, 1);
        QCOMPARE(partial->failureCount, 1);
        QVERIFY(pipeline.queue.failedJobs().contains(*partial->retryJobID));
    }

    void aFailureTheUserDismissedOrRetriedDoesNotComeToTheBanner() {
        Pipeline pipeline(m_folder);
        pipeline.fake.service.answer(createPath, 400, refusedAnswer);
        pipeline.runInBackground(QStringLiteral("Dismissed"));
        pipeline.runInBackground(QStringLiteral("Retried"));
        QCOMPARE(pipeline.center.posted().size(), 2);
        pipeline.center.dismiss(0);
        pipeline.center.invoke(1, QStringLiteral("RETRY"));
        QCoreApplication::sendPostedEvents();
        QVERIFY(pipeline.banner.isEmpty());
    }

    void aSuccessWhoseNotificationExpiredDoesNotComeToTheBanner() {
        Pipeline pipeline(m_folder);
        pipeline.fake.service.answer(createPath, createdAnswer);
        pipeline.runInBackground(QStringLiteral("Report"));
        QCOMPARE(pipeline.center.posted().size(), 1);
        pipeline.center.expire(0);
        QCoreApplication::sendPostedEvents();
        QVERIFY(pipeline.banner.isEmpty());
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(ExpiredNotificationsTest)
#include "ExpiredNotificationsTest.moc"
