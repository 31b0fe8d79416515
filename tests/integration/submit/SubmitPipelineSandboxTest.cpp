// The submission pipeline against norvane-sandbox: a BackgroundSubmitQueue on a real client, its
// requests read back from the sandbox's log, failures injected with its fault rules, and an external
// provider that uploads to a loopback server. The client's waits return at once.
#include "core/api/Endpoints.h"
#include "core/auth/StaticTokenAuth.h"
#include "core/settings/SettingsStore.h"
#include "core/storage/StorageProviderRegistry.h"
#include "support/ClientTesting.h"
#include "support/LoopbackStorageProvider.h"
#include "support/LoopbackStorageServer.h"
#include "support/SandboxDemo.h"
#include "support/SandboxProcess.h"
#include "support/SubmitPipeline.h"
#include "support/SubmitTesting.h"
#include "support/TestMain.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QTemporaryDir>
#include <QTest>

using namespace ClientTesting;
using namespace SubmitTesting;

namespace {
const QString listID = SandboxDemo::supportListID;

QString pathOf(const QJsonValue& entry) {
    return entry[QStringLiteral("path")].toString();
}
int statusOf(const QJsonValue& entry) {
    return entry[QStringLiteral("status")].toInt();
}
QString uploadedName(const QJsonValue& entry) {
    return entry[QStringLiteral("parts")][0][QStringLiteral("filename")].toString();
}

SandboxFault refusing(const QString& path, int status = 400) {
    SandboxFault fault = SandboxFault::answer(path, status);
    fault.method = QStringLiteral("POST");
    return fault;
}
const QString createPattern = QStringLiteral("/api/v2/list/*/task");
const QString uploadPattern = QStringLiteral("/api/v2/task/*/attachment");
} // namespace

class SubmitPipelineSandboxTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    QNetworkAccessManager m_session;
    QNetworkAccessManager m_storageSession;
    LoopbackStorageServer m_storage;
    QTemporaryDir m_folder;
    std::optional<StaticTokenAuth> m_auth;
    RecordingSleeper m_sleeper;
    std::optional<NorvaneClient> m_client;
    std::optional<SettingsStore> m_settings;
    StorageProviderRegistry m_providers;
    std::optional<SubmitPipeline> m_pipeline;

    StagedAttachment file(const QString& name, const QByteArray& bytes = "bytes") {
        return pinnedFile(m_folder.path(), name, bytes);
    }
    void useExternalStorage() { m_settings->set(&AppSettings::storageProvider, StorageProviderKind::cloudinary); }
    void waitForJobs() { QTRY_COMPARE_WITH_TIMEOUT(m_pipeline->queue.pendingCount(), 0, 20'000); }

    QJsonArray creates() { return postsEndingWith(m_sandbox.requests(), QStringLiteral("list/%1/task").arg(listID)); }
    QJsonArray uploads() { return postsEndingWith(m_sandbox.requests(), QStringLiteral("/attachment")); }

    QList<NVTaskSummary> tasksNamed(const QString& name) {
        Endpoints::TeamTasksFilter filter;
        filter.listIDs = QStringList{listID};
        QList<NVTaskSummary> named;
        for (const NVTaskSummary& task :
             runTask(Endpoints::getAllTeamTasks(*m_client, SandboxDemo::northwindID, filter))) {
            if (task.name == name) {
                named.append(task);
            }
        }
        return named;
    }

private slots:
    void initTestCase() {
        QVERIFY(m_folder.isValid() && m_storage.start());
        QVERIFY2(m_sandbox.start(), qPrintable(m_sandbox.errorString()));
        m_auth.emplace(m_sandbox.token());
        m_providers.setFactory(StorageProviderKind::cloudinary, [this](const AppSettings&) {
            return std::make_shared<LoopbackStorageProvider>(&m_storageSession, m_storage.baseUrl());
        });
    }

    void init() {
        QVERIFY2(m_sandbox.reset(), qPrintable(m_sandbox.errorString()));
        m_storage.reset();
        m_sleeper = RecordingSleeper();
        m_client.emplace(*m_auth, &m_session, nullptr, m_sandbox.apiUrl(u""), m_sleeper.sleeper());
        m_settings.emplace(m_folder.filePath(QStringLiteral("settings-%1.json").arg(QUuid::createUuid().toString())));
        m_pipeline.emplace(m_providers, *m_settings);
    }

    void cleanup() { m_pipeline.reset(); }

    // The order of operations.

    void aNativeJobCreatesTheTaskFirstThenUploadsEachFileInOrder() {
        const QList<StagedAttachment> files{file(QStringLiteral("notes.txt"), "notes"),
                                            file(QStringLiteral("shot.png"), "png")};
        PhaseRecorder phases;
        m_pipeline->queue.enqueue(payload(listID, QStringLiteral("Native order"), files), *m_client,
                                  QUuid::createUuid(), phases.handler());
        waitForJobs();

        QCOMPARE(phases.described(), (QStringList{QStringLiteral("creating"), QStringLiteral("uploading 1/2"),
                                                  QStringLiteral("uploading 2/2"), QStringLiteral("done 0 failed")}));
        const QString taskID = phases.last<ForegroundSubmitPhases::Done>()->task.id;
        const QJsonArray log = m_sandbox.requests();
        QCOMPARE(log.size(), 3);
        QCOMPARE(pathOf(log[0]), QStringLiteral("/api/v2/list/%1/task").arg(listID));
        QCOMPARE(pathOf(log[1]), QStringLiteral("/api/v2/task/%1/attachment").arg(taskID));
        QCOMPARE(uploadedName(log[1]), QStringLiteral("notes.txt"));
        QCOMPARE(uploadedName(log[2]), QStringLiteral("shot.png"));
        QVERIFY(!exists(files[0]) && !exists(files[1]));
    }

    void anExternalJobUploadsFirstAndCreatesTheTaskWithTheLinks() {
        useExternalStorage();
        const QList<StagedAttachment> files{file(QStringLiteral("notes.txt"), "notes"),
                                            file(QStringLiteral("shot [1].png"), "png")};
        PhaseRecorder phases;
        m_pipeline->queue.enqueue(payload(listID, QStringLiteral("External order"), files, QStringLiteral("Steps\n")),
                                  *m_client, QUuid::createUuid(), phases.handler());
        waitForJobs();

        QCOMPARE(phases.described(), (QStringList{QStringLiteral("uploading 0/2"), QStringLiteral("uploading 1/2"),
                                                  QStringLiteral("uploading 2/2"), QStringLiteral("creating"),
                                                  QStringLiteral("done 0 failed")}));
        const QList<LoopbackStorageServer::Received> received = m_storage.received();
        QCOMPARE(received.size(), 2);
        QCOMPARE(received[0].body, QByteArray("notes"));
        QCOMPARE(received[1].filename, QStringLiteral("shot [1].png"));
        QCOMPARE(received[1].body, QByteArray("png"));

        const QJsonArray log = m_sandbox.requests();
        QCOMPARE(log.size(), 1);
        const QString base = m_storage.baseUrl().toString();
        QCOMPARE(log[0][QStringLiteral("json")][QStringLiteral("markdown_description")].toString(),
                 QStringLiteral("Steps\n\n---\n\n[notes.txt](%1public/notes.txt)\n"
                                "[shot \\[1\\].png](%1public/shot%20[1].png)")
                     .arg(base));
        QVERIFY(!exists(files[0]) && !exists(files[1]));
    }

    // Retries.

    void aRefusedCreateRetriedLeavesExactlyOneTask() {
        QVERIFY(m_sandbox.addFault(refusing(createPattern, 500)));
        const StagedAttachment attachment = file(QStringLiteral("notes.txt"));
        PhaseRecorder phases;
        m_pipeline->queue.enqueue(payload(listID, QStringLiteral("Created once"), {attachment}), *m_client,
                                  QUuid::createUuid(), phases.handler());
        waitForJobs();
        const auto* failed = phases.last<ForegroundSubmitPhases::Failed>();
        QVERIFY(failed && failed->retryJobID);
        QVERIFY(uploads().isEmpty());
        QVERIFY(exists(attachment));
        QVERIFY(tasksNamed(QStringLiteral("Created once")).isEmpty());

        PhaseRecorder retried;
        m_pipeline->queue.retry(*failed->retryJobID, *m_client, retried.handler(), false);
        waitForJobs();
        QCOMPARE(retried.described(), (QStringList{QStringLiteral("creating"), QStringLiteral("uploading 1/1"),
                                                   QStringLiteral("done 0 failed")}));
        const QJsonArray sent = creates();
        QCOMPARE(sent.size(), 2);
        QCOMPARE(statusOf(sent[0]), 500);
        QCOMPARE(statusOf(sent[1]), 200);
        QCOMPARE(tasksNamed(QStringLiteral("Created once")).size(), 1);
        QCOMPARE(uploads().size(), 1);
        QVERIFY(!exists(attachment));
    }

    void failedUploadsAreRetriedAloneToTheSameTask() {
        QVERIFY(m_sandbox.addFault(refusing(uploadPattern)));
        const QList<StagedAttachment> files{file(QStringLiteral("first.txt")), file(QStringLiteral("second.txt")),
                                            file(QStringLiteral("third.txt"))};
        PhaseRecorder phases;
        m_pipeline->queue.enqueue(payload(listID, QStringLiteral("Partly attached"), files), *m_client,
                                  QUuid::createUuid(), phases.handler());
        waitForJobs();
        const auto* done = phases.last<ForegroundSubmitPhases::Done>();
        QVERIFY(done && done->retryJobID);
        QCOMPARE(done->failedUploads.size(), 1);
        QCOMPARE(done->failedUploads[0].attachment, files[0]);
        const CreatedTask task = done->task;
        QVERIFY(exists(files[0]));
        QVERIFY(!exists(files[1]) && !exists(files[2]));
        const qint64 before = uploads().size();

        PhaseRecorder retried;
        m_pipeline->queue.retry(*done->retryJobID, *m_client, retried.handler(), false);
        waitForJobs();
        QCOMPARE(retried.described(), (QStringList{QStringLiteral("uploading 1/1"), QStringLiteral("done 0 failed")}));
        const auto* redone = retried.last<ForegroundSubmitPhases::Done>();
        QCOMPARE(redone->task, (CreatedTask{task.id, task.name, task.url, std::nullopt}));
        const QJsonArray sent = uploads();
        QCOMPARE(sent.size(), before + 1);
        QCOMPARE(pathOf(sent.last()), QStringLiteral("/api/v2/task/%1/attachment").arg(task.id));
        QCOMPARE(uploadedName(sent.last()), QStringLiteral("first.txt"));
        QCOMPARE(creates().size(), 1);
        QVERIFY(!exists(files[0]));
    }

    void aRetryOfUploadsThatFailsAgainKeepsOnlyTheFileThatFailed() {
        SandboxFault twice = refusing(uploadPattern);
        twice.times = 2;
        QVERIFY(m_sandbox.addFault(twice));
        const QList<StagedAttachment> files{file(QStringLiteral("first.txt")), file(QStringLiteral("second.txt"))};
        PhaseRecorder phases;
        m_pipeline->queue.enqueue(payload(listID, QStringLiteral("Twice"), files), *m_client, QUuid::createUuid(),
                                  phases.handler());
        waitForJobs();
        QCOMPARE(phases.last<ForegroundSubmitPhases::Done>()->failedUploads.size(), 2);
        QVERIFY(exists(files[0]) && exists(files[1]));

        QVERIFY(m_sandbox.addFault(refusing(uploadPattern)));
        PhaseRecorder retried;
        m_pipeline->queue.retry(*phases.last<ForegroundSubmitPhases::Done>()->retryJobID, *m_client, retried.handler(),
                                false);
        waitForJobs();
        const auto* redone = retried.last<ForegroundSubmitPhases::Done>();
        QCOMPARE(redone->failedUploads.size(), 1);
        QCOMPARE(redone->failedUploads[0].attachment, files[0]);
        QVERIFY(exists(files[0]));
        QVERIFY(!exists(files[1]));
        QCOMPARE(m_pipeline->queue.failedJobs().size(), 1);
    }

    void anExternalJobWithSomeFailuresDeletesTheCopiesThatMadeIt() {
        useExternalStorage();
        m_storage.refuse(QStringLiteral("second.txt"));
        const QList<StagedAttachment> files{file(QStringLiteral("first.txt")), file(QStringLiteral("second.txt"))};
        PhaseRecorder phases;
        m_pipeline->queue.enqueue(payload(listID, QStringLiteral("External partly"), files), *m_client,
                                  QUuid::createUuid(), phases.handler());
        waitForJobs();
        const auto* done = phases.last<ForegroundSubmitPhases::Done>();
        QCOMPARE(done->failedUploads.size(), 1);
        QVERIFY(!exists(files[0]));
        QVERIFY(exists(files[1]));
        QVERIFY(creates()[0][QStringLiteral("json")][QStringLiteral("markdown_description")].toString().contains(
            QStringLiteral("[first.txt]")));
    }

    // Bulk.

    void aBulkJobWithTheSecondLineRefusedCreatesTheOthersAndRetriesOnlyThatLine() {
        CreateTaskRequest fields;
        fields.markdownDescription = QStringLiteral("Typed in the composer");
        fields.priority = 2;
        QStringList events;
        const auto onPhase = [this, &events](const ForegroundSubmitPhase& phase) {
            events.append(describe(phase));
            if (phase == ForegroundSubmitPhase(ForegroundSubmitPhases::BulkCreating{2, 3})) {
                QVERIFY(m_sandbox.addFault(refusing(createPattern)));
            }
        };
        m_pipeline->queue.enqueueBulk(BulkSubmitJobPayload{listID, {"One", "Two", "Three"}, fields}, *m_client,
                                      QUuid::createUuid(), onPhase);
        waitForJobs();
        QCOMPARE(events,
                 (QStringList{QStringLiteral("bulkCreating 1/3"), QStringLiteral("bulkCreating 2/3"),
                              QStringLiteral("bulkCreating 3/3"), QStringLiteral("bulkDone 2 created 1 failed")}));
        const QJsonArray sent = creates();
        QCOMPARE(sent.size(), 3);
        QStringList names;
        for (const QJsonValue& entry : sent) {
            names.append(entry[QStringLiteral("json")][QStringLiteral("name")].toString());
            QVERIFY(!entry[QStringLiteral("json")].toObject().contains(QStringLiteral("markdown_description")));
            QCOMPARE(entry[QStringLiteral("json")][QStringLiteral("priority")].toInt(), 2);
        }
        QCOMPARE(names, (QStringList{"One", "Two", "Three"}));
        QCOMPARE(statusOf(sent[1]), 400);

        const QUuid retryID = m_pipeline->queue.failedJobs().keys().value(0);
        PhaseRecorder retried;
        m_pipeline->queue.retry(retryID, *m_client, retried.handler(), false);
        waitForJobs();
        QCOMPARE(retried.described(),
                 (QStringList{QStringLiteral("bulkCreating 1/1"), QStringLiteral("bulkDone 1 created 0 failed")}));
        QCOMPARE(creates().last()[QStringLiteral("json")][QStringLiteral("name")].toString(), QStringLiteral("Two"));
        QCOMPARE(tasksNamed(QStringLiteral("Two")).size(), 1);
    }

    void aBulkJobWhoseLinesAreAllRefusedKeepsEveryLineForTheRetry() {
        SandboxFault always = refusing(createPattern);
        always.times = 2;
        QVERIFY(m_sandbox.addFault(always));
        PhaseRecorder phases;
        m_pipeline->queue.enqueueBulk(BulkSubmitJobPayload{listID, {"One", "Two"}, {}}, *m_client, QUuid::createUuid(),
                                      phases.handler());
        waitForJobs();
        const auto* failed = phases.last<ForegroundSubmitPhases::Failed>();
        QVERIFY(failed && failed->retryJobID);
        QCOMPARE(m_pipeline->queue.failedJobs().value(*failed->retryJobID),
                 FailedSubmitJob(FailedSubmitJobs::BulkCreate{BulkSubmitJobPayload{listID, {"One", "Two"}, {}}}));
    }

    // Native uploads of two jobs, one batch at a time.

    void theUploadsOfTwoJobsRunOneBatchAfterTheOther() {
        QStringList events;
        const auto recorder = [&events](const QString& job) {
            return [&events, job](const ForegroundSubmitPhase& phase) { events.append(job + u' ' + describe(phase)); };
        };
        m_pipeline->queue.enqueue(payload(listID, QStringLiteral("Job A"),
                                          {file(QStringLiteral("A1.txt"), QByteArray(300'000, 'a')),
                                           file(QStringLiteral("A2.txt"), QByteArray(300'000, 'a'))}),
                                  *m_client, QUuid::createUuid(), recorder(QStringLiteral("A")));
        m_pipeline->queue.enqueue(payload(listID, QStringLiteral("Job B"),
                                          {file(QStringLiteral("B1.txt"), QByteArray(300'000, 'b')),
                                           file(QStringLiteral("B2.txt"), QByteArray(300'000, 'b'))}),
                                  *m_client, QUuid::createUuid(), recorder(QStringLiteral("B")));
        QCOMPARE(m_pipeline->queue.pendingCount(), 2);
        waitForJobs();

        QStringList uploaded;
        for (const QJsonValue& entry : uploads()) {
            uploaded.append(uploadedName(entry));
        }
        const QString first = uploaded.value(0).left(1);
        const QString second = first == QStringLiteral("A") ? QStringLiteral("B") : QStringLiteral("A");
        QCOMPARE(uploaded, (QStringList{first + "1.txt", first + "2.txt", second + "1.txt", second + "2.txt"}));
        // The second job's first file is reported only once the first job's batch has ended.
        QVERIFY(events.indexOf(second + " uploading 1/2") > events.indexOf(first + " uploading 2/2"));
        QVERIFY(events.indexOf(second + " uploading 1/2") > events.indexOf(first + " done 0 failed"));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(SubmitPipelineSandboxTest)
#include "SubmitPipelineSandboxTest.moc"
