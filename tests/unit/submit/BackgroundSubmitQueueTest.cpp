
#include "core/settings/SettingsStore.h"
#include "core/storage/StorageProviderRegistry.h"
#include "core/support/Translations.h"
#include "support/HierarchyTesting.h"
#include "support/LoopbackStorageProvider.h"
#include "support/LoopbackStorageServer.h"
#include "support/RunTask.h"
#include "support/SubmitPipeline.h"
#include "support/SubmitTesting.h"
#include "support/TestMain.h"

#include <QNetworkAccessManager>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using HierarchyTesting::FakeClient;
using namespace SubmitTesting;

namespace {
const QString listID = QStringLiteral("L1");
const QString createPath = QStringLiteral("list/L1/task");
const QString uploadPath = QStringLiteral("task/T1/attachment");
const QByteArray createdAnswer = R"({"id":"T1","name":"Report","url":"https://app.example.com/t/T1"})";
const QByteArray refusedAnswer = R"({"err":"List is closed","ECODE":"ITEM_015"})";
} // namespace

class BackgroundSubmitQueueTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;
    QNetworkAccessManager m_storageSession;
    LoopbackStorageServer m_storage;
    std::optional<FakeClient> m_fake;
    std::optional<SettingsStore> m_settings;
    std::optional<StorageProviderRegistry> m_providers;
    std::optional<SubmitPipeline> m_pipeline;

    StagedAttachment file(const QString& name) { return pinnedFile(m_folder.path(), name); }

    void useExternalStorage() { m_settings->set(&AppSettings::storageProvider, StorageProviderKind::cloudinary); }

    // Waits for every running job to end.
    void waitForJobs() { QTRY_COMPARE(m_pipeline->queue.pendingCount(), 0); }

private slots:
    void initTestCase() {
        QVERIFY(m_folder.isValid() && m_storage.start());
        // The English catalogue, as the program loads it, gives the singular of one.
        QVERIFY(Translations::install(*QCoreApplication::instance()));
    }

    void init() {
        m_storage.reset();
        m_fake.emplace();
        m_settings.emplace(m_folder.filePath(QStringLiteral("settings-%1.json").arg(QUuid::createUuid().toString())));
        m_providers.emplace();
        m_providers->setFactory(StorageProviderKind::cloudinary, [this](const AppSettings&) {
            return std::make_shared<LoopbackStorageProvider>(&m_storageSession, m_storage.baseUrl());
        });
        m_pipeline.emplace(*m_providers, *m_settings);
    }

    void cleanup() {
        m_pipeline.reset();
        m_fake.reset();
    }

    void twoTasksBackToBackWithTheFirstInTheBackgroundEachFinishThroughItsOwnPath() {
        m_fake->service.answer(createPath, createdAnswer);
        m_fake->service.hold(createPath);
        const QUuid first = QUuid::createUuid();
        const QUuid second = QUuid::createUuid();
        PhaseRecorder firstPhases, secondPhases;
        m_pipeline->queue.enqueue(payload(listID, QStringLiteral("First")), m_fake->client, first,
                                  firstPhases.handler());
        m_pipeline->queue.enqueue(payload(listID, QStringLiteral("Second")), m_fake->client, second,
                                  secondPhases.handler());
        QCOMPARE(m_pipeline->queue.pendingCount(), 2);
        QSignalSpy backgrounded(&m_pipeline->queue, &BackgroundSubmitQueue::backgroundedJobIDsChanged);
        m_pipeline->queue.markBackgrounded(ForegroundSubmitSession{first, QStringLiteral("First"), {}});
        QCOMPARE(m_pipeline->queue.backgroundedJobIDs(), QSet<QUuid>{first});
        QCOMPARE(backgrounded.count(), 1);

        m_fake->service.release(createPath);
        waitForJobs();
        QCOMPARE(m_pipeline->notifier.created.size(), 1);
        QCOMPARE(m_pipeline->notifier.created[0].taskName, QStringLiteral("Report"));
        QCOMPARE(m_pipeline->notifier.created[0].attachmentFailures, 0);
        QVERIFY(m_pipeline->notifier.created[0].wantsDelivery);
        QCOMPARE(secondPhases.described(), (QStringList{QStringLiteral("creating"), QStringLiteral("done 0 failed")}));
        // The job in the background ends by notification, not by phase.
        QCOMPARE(firstPhases.described(), QStringList{QStringLiteral("creating")});
        QVERIFY(m_pipeline->queue.backgroundedJobIDs().isEmpty());
        // The first job left the background; the second was never in it.
        QCOMPARE(backgrounded.count(), 2);
    }

    void theForegroundIsToldByPhaseAndNotByNotification() {
        m_fake->service.answer(createPath, 400, refusedAnswer);
        PhaseRecorder phases;
        m_pipeline->queue.enqueue(payload(listID, QStringLiteral("Report")), m_fake->client, QUuid::createUuid(),
                                  phases.handler());
        waitForJobs();
        QCOMPARE(m_pipeline->notifier.notificationCount(), 0);
        const auto* failed = phases.last<ForegroundSubmitPhases::Failed>();
        QVERIFY(failed && failed->retryJobID);
        QVERIFY(m_pipeline->queue.failedJobs().contains(*failed->retryJobID));
    }

    void aRetryOfAnUnknownIDChangesNothing() {
        QSignalSpy counted(&m_pipeline->queue, &BackgroundSubmitQueue::pendingCountChanged);
        PhaseRecorder phases;
        m_pipeline->queue.retry(QUuid::createUuid(), m_fake->client, phases.handler(), false);
        QCOMPARE(m_pipeline->queue.pendingCount(), 0);
        QCOMPARE(counted.size(), 0);
        QVERIFY(m_pipeline->queue.failedJobs().isEmpty());
        QVERIFY(phases.phases().isEmpty());
        QVERIFY(m_fake->service.paths.isEmpty());
    }

    void aRetryThatFailsAgainCarriesTheJobUnderANewID() {
        m_fake->service.answer(createPath, 400, refusedAnswer);
        PhaseRecorder phases;
        const SubmitJobPayload job = payload(listID, QStringLiteral("Report"), {file(QStringLiteral("a.txt"))});
        m_pipeline->queue.enqueue(job, m_fake->client, QUuid::createUuid(), phases.handler());
        waitForJobs();
        const QUuid firstID = *phases.last<ForegroundSubmitPhases::Failed>()->retryJobID;

        m_pipeline->queue.retry(firstID, m_fake->client, phases.handler(), false);
        QCOMPARE(m_pipeline->queue.pendingCount(), 1);
        QVERIFY(!m_pipeline->queue.failedJobs().contains(firstID));
        waitForJobs();
        const QUuid secondID = *phases.last<ForegroundSubmitPhases::Failed>()->retryJobID;
        QVERIFY(secondID != firstID);
        QCOMPARE(m_pipeline->queue.failedJobs().keys(), QList<QUuid>{secondID});
        QCOMPARE(m_pipeline->queue.failedJobs().value(secondID), FailedSubmitJob(FailedSubmitJobs::CreateTask{job}));
        QVERIFY(exists(job.attachments[0]));
    }

    void aFailedCreateSchedulesNoReminderAndItsRetrySchedulesTheFrozenInstantThoughPast() {
        m_fake->service.answerNext(createPath, 400, refusedAnswer);
        m_fake->service.answerNext(createPath, createdAnswer);
        const QDateTime past(QDate(2021, 3, 4), QTime(8, 15), Qt::UTC);
        SubmitJobPayload job = payload(listID, QStringLiteral("Report"));
        job.reminderFireDate = past;
        PhaseRecorder phases;
        m_pipeline->queue.enqueue(job, m_fake->client, std::nullopt, phases.handler());
        waitForJobs();
        QVERIFY(m_pipeline->notifier.reminders.isEmpty());

        m_pipeline->queue.retry(*phases.last<ForegroundSubmitPhases::Failed>()->retryJobID, m_fake->client,
                                phases.handler(), false);
        waitForJobs();
        QVERIFY(phases.last<ForegroundSubmitPhases::Done>());
        QCOMPARE(m_pipeline->notifier.reminders,
                 (QList<RecordingNotifier::Reminder>{
                     {QStringLiteral("Report"), QStringLiteral("https://app.example.com/t/T1"), past}}));
    }

    void aJobInTheBackgroundWithUploadFailuresAndNotificationsOffShowsTheBanner() {
        m_pipeline->notifier.delivers = false;
        m_fake->service.answer(createPath, createdAnswer);
        m_fake->service.answer(uploadPath, R"({"id":"a1"})");
        const StagedAttachment gone = file(QStringLiteral("gone.txt"));
        QVERIFY(QFile::remove(gone.fileURL.toLocalFile()));
        const QUuid jobID = QUuid::createUuid();
        QSignalSpy results(&m_pipeline->queue, &BackgroundSubmitQueue::backgroundResult);
        m_pipeline->queue.enqueue(payload(listID, QStringLiteral("Report"), {file(QStringLiteral("a.txt")), gone}),
                                  m_fake->client, jobID, {});
        m_pipeline->queue.markBackgrounded(ForegroundSubmitSession{jobID, QStringLiteral("Report"), {}});
        waitForJobs();

        QTRY_COMPARE(results.size(), 1);
        const auto result = results[0][0].value<BackgroundJobResult>();
        const QUuid retryID = m_pipeline->queue.failedJobs().keys().value(0);
        QCOMPARE(result.outcome, BackgroundJobResult::Outcome(BackgroundJobResult::UploadPartialFailure{
                                     QStringLiteral("Report"), QStringLiteral("https://app.example.com/t/T1"), 1,
                                     QStringLiteral("gone.txt: Attachment file not found on disk."), retryID}));
        QCOMPARE(result.retryJobID(), std::optional(retryID));
    }

    // One failure is named alone (above); two, three and many are counted in the plural.
    void theSummaryOfSeveralFailuresNamesOnlyTheFirst_data() {
        QTest::addColumn<int>("count");
        QTest::newRow("two") << 2;
        QTest::newRow("three") << 3;
        QTest::newRow("many") << 40;
    }

    void theSummaryOfSeveralFailuresNamesOnlyTheFirst() {
        QFETCH(int, count);
        m_fake->service.answer(createPath, createdAnswer);
        QList<StagedAttachment> files{file(QStringLiteral("a.txt"))};
        for (int index = 1; index < count; ++index) {
            files.append(file(QStringLiteral("f%1.txt").arg(index)));
        }
        for (const StagedAttachment& attachment : files) {
            QVERIFY(QFile::remove(attachment.fileURL.toLocalFile()));
        }
        const QUuid jobID = QUuid::createUuid();
        m_pipeline->queue.enqueue(payload(listID, QStringLiteral("Report"), files), m_fake->client, jobID, {});
        m_pipeline->queue.markBackgrounded(ForegroundSubmitSession{jobID, QStringLiteral("Report"), {}});
        waitForJobs();
        const QString summary =
            QString::number(count) + QStringLiteral(" attachments failed. a.txt: Attachment file not found on disk.");
        QCOMPARE(m_pipeline->notifier.created.size(), 1);
        QCOMPARE(m_pipeline->notifier.created[0].attachmentFailures, count);
        QCOMPARE(m_pipeline->notifier.created[0].attachmentFailureMessage, summary);
        QVERIFY(m_pipeline->notifier.created[0].wantsDelivery);

        // A retry from a notification says the same, with no banner to fall back on.
        m_pipeline->queue.retry(*m_pipeline->notifier.created[0].retryJobID, m_fake->client, {}, true);
        waitForJobs();
        QCOMPARE(m_pipeline->notifier.created.size(), 2);
        QCOMPARE(m_pipeline->notifier.created[1].attachmentFailureMessage, summary);
        QVERIFY(m_pipeline->notifier.created[1].retryJobID != m_pipeline->notifier.created[0].retryJobID);
        QVERIFY(!m_pipeline->notifier.created[1].wantsDelivery);
    }

    void aFailedCreateRetriedAfterTheProviderWasSetToNoneUploadsNativelyAfterCreation() {
        useExternalStorage();
        m_fake->service.answerNext(createPath, 400, refusedAnswer);
        m_fake->service.answerNext(createPath, createdAnswer);
        m_fake->service.answer(uploadPath, R"({"id":"a1"})");
        PhaseRecorder phases;
        const StagedAttachment attachment = file(QStringLiteral("a.txt"));
        m_pipeline->queue.enqueue(payload(listID, QStringLiteral("Report"), {attachment}), m_fake->client, std::nullopt,
                                  phases.handler());
        waitForJobs();
        QCOMPARE(m_storage.received().size(), 1);
        QCOMPARE(
            phases.described(),
            (QStringList{QStringLiteral("uploading 0/1"), QStringLiteral("uploading 1/1"), QStringLiteral("creating"),
                         QStringLiteral("failed ") + phases.last<ForegroundSubmitPhases::Failed>()->message}));

        m_settings->set(&AppSettings::storageProvider, StorageProviderKind::norvane);
        PhaseRecorder retried;
        m_pipeline->queue.retry(*phases.last<ForegroundSubmitPhases::Failed>()->retryJobID, m_fake->client,
                                retried.handler(), false);
        waitForJobs();
        QCOMPARE(retried.described(), (QStringList{QStringLiteral("creating"), QStringLiteral("uploading 1/1"),
                                                   QStringLiteral("done 0 failed")}));
        QCOMPARE(m_fake->service.paths, (QStringList{createPath, createPath, uploadPath}));
        QCOMPARE(m_storage.received().size(), 1);
        QVERIFY(!exists(attachment));
    }

    void anExternalJobWithoutAttachmentsCallsNoProviderAndOnlyCreates() {
        useExternalStorage();
        m_fake->service.answer(createPath, createdAnswer);
        PhaseRecorder phases;
        m_pipeline->queue.enqueue(payload(listID, QStringLiteral("Report")), m_fake->client, std::nullopt,
                                  phases.handler());
        waitForJobs();
        QCOMPARE(phases.described(), (QStringList{QStringLiteral("creating"), QStringLiteral("done 0 failed")}));
        QVERIFY(m_storage.received().isEmpty());
    }

    void anExternalJobWhoseUploadsAllFailStillCreatesTheTaskWithAFailurePerFile() {
        useExternalStorage();
        m_storage.refuseAll();
        m_fake->service.answer(createPath, createdAnswer);
        PhaseRecorder phases;
        const QList<StagedAttachment> files{file(QStringLiteral("a.txt")), file(QStringLiteral("b.txt"))};
        m_pipeline->queue.enqueue(payload(listID, QStringLiteral("Report"), files), m_fake->client, std::nullopt,
                                  phases.handler());
        waitForJobs();
        QCOMPARE(phases.described(), (QStringList{QStringLiteral("uploading 0/2"), QStringLiteral("uploading 1/2"),
                                                  QStringLiteral("uploading 2/2"), QStringLiteral("creating"),
                                                  QStringLiteral("done 2 failed")}));
        const auto* done = phases.last<ForegroundSubmitPhases::Done>();
        QCOMPARE(m_pipeline->queue.failedJobs().value(*done->retryJobID),
                 FailedSubmitJob(FailedSubmitJobs::UploadAttachments{QStringLiteral("T1"), QStringLiteral("Report"),
                                                                     QStringLiteral("https://app.example.com/t/T1"),
                                                                     files}));
        QVERIFY(exists(files[0]) && exists(files[1]));
    }

    void anUndeliveredBulkFailureReportsToNobodyAndStaysInFailedJobs() {
        m_pipeline->notifier.delivers = false;
        m_fake->service.answer(createPath, 400, refusedAnswer);
        QSignalSpy results(&m_pipeline->queue, &BackgroundSubmitQueue::backgroundResult);
        const QUuid jobID = QUuid::createUuid();
        m_pipeline->queue.enqueueBulk(BulkSubmitJobPayload{listID, {QStringLiteral("One")}, {}}, m_fake->client, jobID,
                                      {});
        m_pipeline->queue.markBackgrounded(ForegroundSubmitSession{jobID, QStringLiteral("1 tasks"), {}});
        waitForJobs();
        QCOMPARE(m_pipeline->notifier.bulkCreateFailed.size(), 1);
        QVERIFY(!m_pipeline->notifier.bulkCreateFailed[0].wantsDelivery);
        QTest::qWait(20);
        QCOMPARE(results.size(), 0);
        QVERIFY(m_pipeline->queue.failedJobs().contains(m_pipeline->notifier.bulkCreateFailed[0].retryJobID));
    }

    void aPartialBulkKeepsOnlyTheFailedLinesForItsRetry() {
        m_fake->service.answerNext(createPath, createdAnswer);
        m_fake->service.answerNext(createPath, 400, refusedAnswer);
        m_fake->service.answerNext(createPath, createdAnswer);
        m_fake->service.answerNext(createPath, 400, refusedAnswer);
        m_fake->service.answerNext(createPath, createdAnswer);
        CreateTaskRequest fields;
        fields.priority = 2;
        PhaseRecorder phases;
        m_pipeline->queue.enqueueBulk(BulkSubmitJobPayload{listID, {"One", "Two", "Three", "Four"}, fields},
                                      m_fake->client, std::nullopt, phases.handler());
        waitForJobs();
        const auto* done = phases.last<ForegroundSubmitPhases::BulkDone>();
        QVERIFY(done && done->retryJobID);
        QCOMPARE(done->created.size(), 2);
        QCOMPARE(m_pipeline->queue.failedJobs().value(*done->retryJobID),
                 FailedSubmitJob(FailedSubmitJobs::BulkCreate{BulkSubmitJobPayload{listID, {"Two", "Four"}, fields}}));

        PhaseRecorder retried;
        m_pipeline->queue.retry(*done->retryJobID, m_fake->client, retried.handler(), false);
        waitForJobs();
        QCOMPARE(retried.described(),
                 (QStringList{QStringLiteral("bulkCreating 1/2"), QStringLiteral("bulkCreating 2/2"),
                              QStringLiteral("bulkDone 2 created 0 failed")}));
        QVERIFY(m_pipeline->queue.failedJobs().isEmpty());
    }

    void aRetryMovedToTheBackgroundKeepsItsSessionIDCountedForGood() {
        m_fake->service.answer(createPath, 400, refusedAnswer);
        PhaseRecorder phases;
        m_pipeline->queue.enqueue(payload(listID, QStringLiteral("Report")), m_fake->client, std::nullopt,
                                  phases.handler());
        waitForJobs();
        const QUuid sessionID = QUuid::createUuid();
        m_pipeline->queue.retry(*phases.last<ForegroundSubmitPhases::Failed>()->retryJobID, m_fake->client, {}, false);
        m_pipeline->queue.markBackgrounded(ForegroundSubmitSession{sessionID, QStringLiteral("Report"), {}});
        waitForJobs();
        QCOMPARE(m_pipeline->notifier.notificationCount(), 0);
        QCOMPARE(m_pipeline->queue.backgroundedJobIDs(), QSet<QUuid>{sessionID});
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(BackgroundSubmitQueueTest)
#include "BackgroundSubmitQueueTest.moc"
