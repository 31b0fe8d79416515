#include "core/submit/AttachmentUploadQueue.h"
#include "core/submit/AttachmentUploadError.h"
#include "core/submit/AttachmentUploader.h"
#include "support/TestMain.h"

#include "core/api/NVError.h"
#include "support/ClientTesting.h"
#include "support/HierarchyTesting.h"
#include "support/RunTask.h"
#include "support/TemporaryFolderTesting.h"

#include <QLocale>
#include <QRegularExpression>
#include <QTest>

using HierarchyTesting::FakeClient;

namespace {
const QByteArray attachmentAnswer = R"({"id":"att-1","url":"https://files.example.com/att-1"})";

StagedAttachment staged(const QString& path, bool isImage = false, bool isVideo = false) {
    StagedAttachment attachment;
    attachment.id = QUuid::createUuid();
    attachment.fileURL = QUrl::fromLocalFile(path);
    attachment.filename = QFileInfo(path).fileName();
    attachment.isImage = isImage;
    attachment.isVideo = isVideo;
    attachment.fileSizeBytes = QFileInfo(path).size();
    return attachment;
}

// A multipart body written to the temporary folder for one upload attempt.
bool isBodyFile(const QString& path) {
    return QRegularExpression(QStringLiteral("/norvanebar-upload-[0-9A-F-]{36}\\.multipart$")).match(path).hasMatch();
}

StagedAttachment sized(qint64 size, bool isImage, bool isVideo) {
    StagedAttachment attachment;
    attachment.isImage = isImage;
    attachment.isVideo = isVideo;
    attachment.fileSizeBytes = size;
    return attachment;
}

} // namespace

class AttachmentUploadQueueTest : public QObject {
    Q_OBJECT

    std::optional<TemporaryFolderOverride> m_temporary;
    std::optional<FakeClient> m_fake;

    QString file(const QString& name, const QByteArray& bytes = "bytes") {
        return m_temporary->writeOutside(name, bytes);
    }

    void answerUploads(const QString& taskID) {
        m_fake->service.answer(QStringLiteral("task/%1/attachment").arg(taskID), attachmentAnswer);
    }

private slots:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }
    void init() {
        m_temporary.emplace();
        m_fake.emplace();
    }
    void cleanup() {
        m_fake.reset();
        m_temporary.reset();
    }

    // The route a file takes.

    void aVideoOfOneMegabyteStreams() {
        QCOMPARE(AttachmentUploader::routeFor(sized(1'000'000, false, true), 1'000'000),
                 AttachmentUploader::Route::streaming);
    }

    void aPNGOfFiveMebibytesExactlyGoesFromMemory() {
        QCOMPARE(AttachmentUploader::routeFor(sized(5'242'880, true, false), 5'242'880),
                 AttachmentUploader::Route::memory);
    }

    void aPNGOneByteAboveFiveMebibytesStreams() {
        QCOMPARE(AttachmentUploader::routeFor(sized(5'242'881, true, false), 5'242'881),
                 AttachmentUploader::Route::streaming);
    }

    void anImageOfUnknownSizeGoesFromMemory() {
        QCOMPARE(AttachmentUploader::routeFor(sized(0, true, false), std::nullopt), AttachmentUploader::Route::memory);
    }

    // The route the request takes: read whole into memory, or streamed from a body file.

    void aPNGOfFiveMebibytesExactlyIsSentFromMemory() {
        StagedAttachment attachment = staged(file(QStringLiteral("exact.png")), true);
        attachment.fileSizeBytes = 5'242'880;
        answerUploads(QStringLiteral("T1"));
        runTask(AttachmentUploader::upload(attachment, QStringLiteral("T1"), m_fake->client));
        QCOMPARE(m_fake->service.bodyFiles, QStringList{QString()});
    }

    void aPNGOneByteAboveFiveMebibytesIsStreamedFromABodyFile() {
        StagedAttachment attachment = staged(file(QStringLiteral("above.png")), true);
        attachment.fileSizeBytes = 5'242'881;
        answerUploads(QStringLiteral("T1"));
        runTask(AttachmentUploader::upload(attachment, QStringLiteral("T1"), m_fake->client));
        QCOMPARE(m_fake->service.bodyFiles.size(), 1);
        QVERIFY2(isBodyFile(m_fake->service.bodyFiles.first()), qPrintable(m_fake->service.bodyFiles.first()));
    }

    void aSmallVideoIsStreamedFromABodyFile() {
        StagedAttachment attachment = staged(file(QStringLiteral("clip.mov")), false, true);
        answerUploads(QStringLiteral("T1"));
        runTask(AttachmentUploader::upload(attachment, QStringLiteral("T1"), m_fake->client));
        QCOMPARE(m_fake->service.bodyFiles.size(), 1);
        QVERIFY2(isBodyFile(m_fake->service.bodyFiles.first()), qPrintable(m_fake->service.bodyFiles.first()));
    }

    // The size limit.

    void aFileOfExactlyTheLimitIsSent() {
        StagedAttachment attachment = staged(file(QStringLiteral("limit.bin")));
        attachment.fileSizeBytes = 998'579'896;
        answerUploads(QStringLiteral("T1"));
        runTask(AttachmentUploader::upload(attachment, QStringLiteral("T1"), m_fake->client));
        QCOMPARE(m_fake->service.paths, QStringList{QStringLiteral("task/T1/attachment")});
    }

    void aFileOneByteAboveTheLimitIsRefusedWithoutARequest() {
        StagedAttachment attachment = staged(file(QStringLiteral("over.bin")));
        attachment.fileSizeBytes = 998'579'897;
        answerUploads(QStringLiteral("T1"));
        const auto error =
            ClientTesting::failureOf(AttachmentUploader::upload(attachment, QStringLiteral("T1"), m_fake->client));
        QVERIFY(error);
        const NVError::Server expected{
            std::nullopt, QStringLiteral("Attachment exceeds Norvane's size limit (998.6 MB)."), std::nullopt};
        QVERIFY(error->is<NVError::Server>());
        QCOMPARE(*error->as<NVError::Server>(), expected);
        QCOMPARE(error->errorDescription(), expected.message);
        QVERIFY(m_fake->service.paths.isEmpty());
    }

    void anAttachmentWithoutSizeOnAFileThatIsThereIsMeasuredAndSent() {
        StagedAttachment attachment = staged(file(QStringLiteral("pasted.png")), true);
        attachment.fileSizeBytes.reset();
        answerUploads(QStringLiteral("T1"));
        runTask(AttachmentUploader::upload(attachment, QStringLiteral("T1"), m_fake->client));
        QCOMPARE(m_fake->service.paths.size(), 1);
    }

    void aFileThatIsGoneFailsAsMissingWithoutARequest() {
        StagedAttachment attachment = staged(file(QStringLiteral("gone.png")), true);
        QVERIFY(QFile::remove(attachment.fileURL.toLocalFile()));
        answerUploads(QStringLiteral("T1"));
        try {
            runTask(AttachmentUploader::upload(attachment, QStringLiteral("T1"), m_fake->client));
            QFAIL("the upload of a missing file succeeded");
        } catch (const AttachmentUploadError& error) {
            QCOMPARE(error.failure(), AttachmentUploadError::Case::fileMissing);
            QCOMPARE(error.errorDescription(), QStringLiteral("Attachment file not found on disk."));
        }
        QVERIFY(m_fake->service.paths.isEmpty());
    }

    // A batch.

    void aBatchWithTheSecondFileGoneFailsOnlyTheSecondAndUploadsTheThird() {
        const QList<StagedAttachment> batch{staged(file(QStringLiteral("one.txt"))),
                                            staged(file(QStringLiteral("two.txt"))),
                                            staged(file(QStringLiteral("three.txt")))};
        QVERIFY(QFile::remove(batch[1].fileURL.toLocalFile()));
        answerUploads(QStringLiteral("T1"));
        QList<std::pair<int, int>> progress;
        const auto failures = runTask(
            AttachmentUploader::uploadAll(QStringLiteral("T1"), batch, m_fake->client, [&](int current, int total) {
                progress.append({current, total});
            }));

        QCOMPARE(failures.size(), 1);
        QCOMPARE(failures[0].attachment, batch[1]);
        QCOMPARE(failures[0].message, QStringLiteral("Attachment file not found on disk."));
        QVERIFY(!failures[0].id.isNull());
        QCOMPARE(m_fake->service.paths.size(), 2);
        QCOMPARE(progress, (QList<std::pair<int, int>>{{1, 3}, {2, 3}, {3, 3}}));
    }

    void anEmptyBatchSendsNothingAndReportsNoProgress() {
        bool told = false;
        const auto failures = runTask(
            AttachmentUploader::uploadAll(QStringLiteral("T1"), {}, m_fake->client, [&](int, int) { told = true; }));
        QVERIFY(failures.isEmpty());
        QVERIFY(!told);
        QVERIFY(m_fake->service.paths.isEmpty());
    }

    void aServiceFailureBecomesAFailureWithTheServicesText() {
        const QList<StagedAttachment> batch{staged(file(QStringLiteral("one.txt")))};
        m_fake->service.answer(QStringLiteral("task/T1/attachment"), 403,
                               R"({"err":"Storage full","ECODE":"GBUSED_005"})");
        const auto failures = runTask(AttachmentUploader::uploadAll(QStringLiteral("T1"), batch, m_fake->client, {}));
        QCOMPARE(failures.size(), 1);
        QVERIFY(!failures[0].message.isEmpty());
        QCOMPARE(m_fake->service.paths.size(), 1);
    }

    // The queue.

    void aSecondBatchStartsOnlyWhenTheFirstHasEnded() {
        AttachmentUploadQueue queue;
        m_fake->service.hold(QStringLiteral("task/A/attachment"));
        answerUploads(QStringLiteral("A"));
        answerUploads(QStringLiteral("B"));
        QStringList events;
        const auto tell = [&events](const QString& job) {
            return [&events, job](int current, int total) {
                events.append(QStringLiteral("%1 %2/%3").arg(job).arg(current).arg(total));
            };
        };
        std::optional<QList<AttachmentUploadFailure>> first, second;
        startTask(&queue,
                  queue.enqueue(QStringLiteral("A"),
                                {staged(file(QStringLiteral("a1.txt"))), staged(file(QStringLiteral("a2.txt")))},
                                m_fake->client, tell(QStringLiteral("A"))),
                  [&](QList<AttachmentUploadFailure> failures) {
                      events.append(QStringLiteral("A done"));
                      first = failures;
                  });
        startTask(&queue,
                  queue.enqueue(QStringLiteral("B"), {staged(file(QStringLiteral("b1.txt")))}, m_fake->client,
                                tell(QStringLiteral("B"))),
                  [&](QList<AttachmentUploadFailure> failures) {
                      events.append(QStringLiteral("B done"));
                      second = failures;
                  });

        QTRY_COMPARE(m_fake->service.paths, QStringList{QStringLiteral("task/A/attachment")});
        QVERIFY(queue.isProcessing());
        QCOMPARE(queue.pendingCount(), 1);
        QCOMPARE(events, QStringList{QStringLiteral("A 1/2")});

        m_fake->service.release(QStringLiteral("task/A/attachment"));
        QTRY_VERIFY(second.has_value());
        QVERIFY(first && first->isEmpty() && second->isEmpty());
        QCOMPARE(m_fake->service.paths,
                 (QStringList{QStringLiteral("task/A/attachment"), QStringLiteral("task/A/attachment"),
                              QStringLiteral("task/B/attachment")}));
        QCOMPARE(events, (QStringList{QStringLiteral("A 1/2"), QStringLiteral("A 2/2"), QStringLiteral("A done"),
                                      QStringLiteral("B 1/1"), QStringLiteral("B done")}));
        QCOMPARE(m_fake->service.maxInFlight, 1);
        QVERIFY(!queue.isProcessing());
    }

    void theQueueMeasuresFilesStagedWithoutASizeToChooseTheirRoute() {
        AttachmentUploadQueue queue;
        answerUploads(QStringLiteral("T1"));
        // Sparse: as large as the limit on disk without the bytes.
        const QString hugePath = file(QStringLiteral("huge.bin"), QByteArray());
        QFile huge(hugePath);
        QVERIFY(huge.open(QIODevice::ReadWrite) && huge.resize(998'579'897));
        huge.close();
        QList<StagedAttachment> batch{staged(file(QStringLiteral("pasted.png")), true),
                                      staged(file(QStringLiteral("large.bin"), QByteArray(5'242'881, 'x'))),
                                      staged(hugePath)};
        for (StagedAttachment& attachment : batch) {
            attachment.fileSizeBytes.reset();
        }

        const auto failures = runTask(queue.enqueue(QStringLiteral("T1"), batch, m_fake->client, {}));

        QCOMPARE(m_fake->service.paths.size(), 2);
        QCOMPARE(m_fake->service.bodyFiles.first(), QString());
        QVERIFY2(isBodyFile(m_fake->service.bodyFiles.last()), qPrintable(m_fake->service.bodyFiles.last()));
        QCOMPARE(failures.size(), 1);
        QCOMPARE(failures[0].attachment, batch[2]);
        QCOMPARE(failures[0].message, QStringLiteral("Attachment exceeds Norvane's size limit (998.6 MB)."));
    }

    void aFailedBatchDoesNotHoldUpTheNext() {
        AttachmentUploadQueue queue;
        answerUploads(QStringLiteral("B"));
        const StagedAttachment gone = staged(file(QStringLiteral("gone.txt")));
        QVERIFY(QFile::remove(gone.fileURL.toLocalFile()));
        const auto first = runTask(queue.enqueue(QStringLiteral("A"), {gone}, m_fake->client, {}));
        const auto second =
            runTask(queue.enqueue(QStringLiteral("B"), {staged(file(QStringLiteral("b.txt")))}, m_fake->client, {}));
        QCOMPARE(first.size(), 1);
        QVERIFY(second.isEmpty());
        QCOMPARE(m_fake->service.paths, QStringList{QStringLiteral("task/B/attachment")});
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(AttachmentUploadQueueTest)
#include "AttachmentUploadQueueTest.moc"
