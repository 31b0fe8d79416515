#include "core/submit/TaskSubmitter.h"
#include "core/submit/AttachmentUploadQueue.h"
#include "support/TestMain.h"

#include "support/HierarchyTesting.h"
#include "support/LoopbackStorageProvider.h"
#include "support/LoopbackStorageServer.h"
#include "support/RecordingNotifier.h"
#include "support/RunTask.h"
#include "support/SubmitTesting.h"

#include <QNetworkAccessManager>
#include <QTemporaryDir>
#include <QTest>

using HierarchyTesting::FakeClient;
using namespace SubmitTesting;

namespace {
const QString listID = QStringLiteral("L1");
const QString createPath = QStringLiteral("list/L1/task");
const QByteArray createdAnswer = R"({"id":"T1","name":"Write the report","url":"https://app.example.com/t/T1"})";
const QDateTime fireDate(QDate(2020, 1, 2), QTime(9, 0), Qt::UTC);
} // namespace

class TaskSubmitterTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;
    QNetworkAccessManager m_storageSession;
    LoopbackStorageServer m_storage;
    std::optional<FakeClient> m_fake;
    std::optional<AttachmentUploadQueue> m_queue;
    std::optional<RecordingNotifier> m_notifier;

    TaskSubmitter submitter() { return TaskSubmitter(m_fake->client, *m_queue, *m_notifier); }
    TaskSubmitter::Provider provider() {
        return std::make_shared<LoopbackStorageProvider>(&m_storageSession, m_storage.baseUrl());
    }
    StagedAttachment file(const QString& name, const QByteArray& bytes = "bytes") {
        return pinnedFile(m_folder.path(), name, bytes);
    }

private slots:
    void initTestCase() { QVERIFY(m_folder.isValid() && m_storage.start()); }
    void init() {
        m_storage.reset();
        m_fake.emplace();
        m_queue.emplace();
        m_notifier.emplace();
    }
    void cleanup() {
        m_queue.reset();
        m_fake.reset();
    }

    // Creating.

    void aCreatedTaskSchedulesItsReminderAtTheFrozenInstantEvenWhenPast() {
        m_fake->service.answer(createPath, createdAnswer);
        SubmitJobPayload job = payload(listID, QStringLiteral("Write the report"));
        job.reminderFireDate = fireDate;
        const SubmitJobResult result = runTask(submitter().createTask(job));
        QVERIFY(!result.error);
        QCOMPARE(result.created->id, QStringLiteral("T1"));
        QVERIFY(result.failedUploads.isEmpty());
        QCOMPARE(m_notifier->reminders,
                 (QList<RecordingNotifier::Reminder>{
                     {QStringLiteral("Write the report"), QStringLiteral("https://app.example.com/t/T1"), fireDate}}));
    }

    void aRefusedCreateSchedulesNoReminderAndGivesTheErrorText() {
        m_fake->service.answer(createPath, 400, R"({"err":"List is closed","ECODE":"ITEM_015"})");
        SubmitJobPayload job = payload(listID, QStringLiteral("Write the report"));
        job.reminderFireDate = fireDate;
        const SubmitJobResult result = runTask(submitter().createTask(job));
        QVERIFY(!result.created);
        QVERIFY(result.error && result.error->contains(QStringLiteral("List is closed")));
        QVERIFY(m_notifier->reminders.isEmpty());
        QCOMPARE(m_fake->service.paths, QStringList{createPath});
    }

    void aRefusedCreateIsNotSentTwice() {
        m_fake->service.answer(createPath, 500, R"({"err":"Internal","ECODE":"X"})");
        const SubmitJobResult result = runTask(submitter().createTask(payload(listID, QStringLiteral("Once"))));
        QVERIFY(result.error);
        QCOMPARE(m_fake->service.paths.size(), 1);
    }

    // Ahead of creation, to the external provider.

    void externalUploadsWriteTheLinksInAttachmentOrderAfterTheDescription() {
        const QList<StagedAttachment> files{file(QStringLiteral("first.png"), "one"),
                                            file(QStringLiteral("second.mov"), "two")};
        QList<std::pair<int, int>> progress;
        const TaskSubmitter::PreUpload result = runTask(
            submitter().preUploadToExternal(payload(listID, QStringLiteral("Task"), files, QStringLiteral("Notes  \n")),
                                            provider(), [&](int current, int total) {
                                                progress.append({current, total});
                                            }));

        QVERIFY(result.failures.isEmpty());
        QVERIFY(result.payload.attachments.isEmpty());
        const QString base = m_storage.baseUrl().toString();
        QCOMPARE(result.payload.request.markdownDescription,
                 QStringLiteral("Notes\n\n---\n\n[first.png](%1public/first.png)\n[second.mov](%1public/second.mov)")
                     .arg(base));
        QCOMPARE(progress, (QList<std::pair<int, int>>{{1, 2}, {2, 2}}));
        const QList<LoopbackStorageServer::Received> received = m_storage.received();
        QCOMPARE(received.size(), 2);
        QCOMPARE(received[0].filename, QStringLiteral("first.png"));
        QCOMPARE(received[0].body, QByteArray("one"));
        QCOMPARE(received[1].body, QByteArray("two"));
        QVERIFY(m_fake->service.paths.isEmpty());
    }

    void externalProviderEveryUploadFailsLeavesTheDescriptionUntouched() {
        m_storage.refuseAll();
        const QList<StagedAttachment> files{file(QStringLiteral("a.txt")), file(QStringLiteral("b.txt"))};
        const SubmitJobPayload job = payload(listID, QStringLiteral("Task"), files, QStringLiteral("  Notes "));
        const TaskSubmitter::PreUpload result = runTask(submitter().preUploadToExternal(job, provider(), {}));

        QCOMPARE(result.payload.request, job.request);
        QVERIFY(result.payload.attachments.isEmpty());
        QCOMPARE(result.failures.size(), 2);
        QCOMPARE(result.failures[0].attachment, files[0]);
        QCOMPARE(result.failures[1].attachment, files[1]);
        QVERIFY2(result.failures[0].message.startsWith(QStringLiteral("Loopback storage answered 500")),
                 qPrintable(result.failures[0].message));
    }

    void aFileDeletedBeforeItsExternalUploadFailsWhileTheOthersProceed() {
        const QList<StagedAttachment> files{file(QStringLiteral("a.txt"), "a"), file(QStringLiteral("gone.txt")),
                                            file(QStringLiteral("c.txt"), "c")};
        QVERIFY(QFile::remove(files[1].fileURL.toLocalFile()));
        const TaskSubmitter::PreUpload result =
            runTask(submitter().preUploadToExternal(payload(listID, QStringLiteral("Task"), files), provider(), {}));

        QCOMPARE(result.failures.size(), 1);
        QCOMPARE(result.failures[0].attachment, files[1]);
        QCOMPARE(result.failures[0].message, QStringLiteral("Attachment file not found on disk."));
        QCOMPARE(m_storage.received().size(), 2);
        QVERIFY(result.payload.request.markdownDescription->contains(QStringLiteral("[c.txt]")));
    }

    // Retrying uploads.

    void aRetryOfNativeUploadsReportsUploadingPhases() {
        m_fake->service.answer(QStringLiteral("task/T1/attachment"), R"({"id":"a1"})");
        PhaseRecorder phases;
        const auto failures = runTask(submitter().retryUploads(
            QStringLiteral("T1"), {file(QStringLiteral("a.txt")), file(QStringLiteral("b.txt"))}, phases.handler()));
        QVERIFY(failures.isEmpty());
        QCOMPARE(phases.described(), (QStringList{QStringLiteral("uploading 1/2"), QStringLiteral("uploading 2/2")}));
        QCOMPARE(m_fake->service.paths.size(), 2);
    }

    void aRetryToTheExternalProviderAddsTheLinksAsAComment() {
        m_fake->service.answer(QStringLiteral("task/T1/comment"), R"({"id":"c1"})");
        PhaseRecorder phases;
        const auto failures = runTask(submitter().retryUploadsToExternal(
            QStringLiteral("T1"), {file(QStringLiteral("a.txt"))}, provider(), phases.handler()));
        QVERIFY(failures.isEmpty());
        QCOMPARE(phases.described(), QStringList{QStringLiteral("uploading 1/1")});
        QCOMPARE(m_fake->service.paths, QStringList{QStringLiteral("task/T1/comment")});
    }

    void aRetryToTheExternalProviderWhoseCommentIsRefusedReportsSuccess() {
        m_fake->service.answer(QStringLiteral("task/T1/comment"), 500, R"({"err":"Internal","ECODE":"X"})");
        const auto failures = runTask(
            submitter().retryUploadsToExternal(QStringLiteral("T1"), {file(QStringLiteral("a.txt"))}, provider(), {}));
        QVERIFY(failures.isEmpty());
        QCOMPARE(m_fake->service.paths, QStringList{QStringLiteral("task/T1/comment")});
        QCOMPARE(m_storage.received().size(), 1);
    }

    void aRetryToTheExternalProviderWithoutAnyLinkPostsNoComment() {
        m_storage.refuseAll();
        const auto failures = runTask(
            submitter().retryUploadsToExternal(QStringLiteral("T1"), {file(QStringLiteral("a.txt"))}, provider(), {}));
        QCOMPARE(failures.size(), 1);
        QVERIFY(m_fake->service.paths.isEmpty());
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(TaskSubmitterTest)
#include "TaskSubmitterTest.moc"
