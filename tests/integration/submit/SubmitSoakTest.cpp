// A long run of submissions through the central state against norvane-sandbox, with failures
// injected at random by its fault rules and every failure retried as the pages and notifications
// do: in the end each task exists once, each attachment is on its task once, and no pinned file is
// left.
#include "core/compose/AttachmentStaging.h"
#include "core/notify/NotificationCategories.h"
#include "core/support/Overloaded.h"
#include "support/AppStateFixture.h"
#include "support/SandboxDemo.h"
#include "support/SubmitTesting.h"
#include "support/SyncHttpClient.h"
#include "support/TemporaryFolderTesting.h"
#include "support/TestMain.h"

#include <QDirIterator>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QJsonArray>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QTest>
#include <QTimer>
#include <functional>

using namespace ForegroundSubmitPhases;

namespace {
// Some 10 s here, and some 20 s under the sanitizers.
constexpr int jobCount = 1000;
constexpr quint32 seed = 20'240'611;
// Jobs between two moments at which everything has settled and the request log is read.
constexpr int waveSize = 50;
constexpr int settleTimeoutMs = 60'000;

const QString createPattern = QStringLiteral("/api/v2/list/*/task");
const QString uploadPattern = QStringLiteral("/api/v2/task/*/attachment");

// One job of the run. Names carry the job's number, so that each task and file is counted exactly.
struct SoakJob {
    bool bulk = false;
    // The task's name, or the bulk job's lines.
    QStringList taskNames;
    // Files of a single task, and their sizes.
    QStringList fileNames;
    QList<int> fileSizes;
    // Phases the page shows before the job is moved to the background; none when it is watched.
    std::optional<int> phasesBeforeBackground;
};

// What the run went through, so that the test shows that failures did happen.
struct SoakCounts {
    int backgrounded = 0;
    int pageRetries = 0;
    int notificationRetries = 0;
    int finalNotifications = 0;
    int refusedCreates = 0;
    int failedUploadAttempts = 0;
};

SandboxFault postFault(SandboxFault fault) {
    fault.method = QStringLiteral("POST");
    return fault;
}

bool isResult(const ForegroundSubmitPhase& phase) {
    return std::holds_alternative<Done>(phase) || std::holds_alternative<Failed>(phase) ||
           std::holds_alternative<BulkDone>(phase);
}

std::optional<QUuid> retryIDOf(const ForegroundSubmitPhase& phase) {
    return std::visit(Overloaded{
                          [](const Done& done) { return done.retryJobID; },
                          [](const Failed& failed) { return failed.retryJobID; },
                          [](const BulkDone& done) { return done.retryJobID; },
                          [](const auto&) { return std::optional<QUuid>(); },
                      },
                      phase);
}

// Runs the event loop until `done` holds or the time is up; whether it holds.
bool waitUntil(const std::function<bool()>& done, int timeoutMs = settleTimeoutMs) {
    if (done()) {
        return true;
    }
    QEventLoop loop;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (done()) {
            loop.quit();
        }
    });
    poll.start(1);
    QTimer deadline;
    deadline.setSingleShot(true);
    QObject::connect(&deadline, &QTimer::timeout, &loop, &QEventLoop::quit);
    deadline.start(timeoutMs);
    loop.exec();
    return done();
}

// "name: found, expected" for each name whose counts differ, sorted.
QStringList differences(const QHash<QString, int>& found, const QHash<QString, int>& expected) {
    QStringList wrong;
    QSet<QString> names(expected.keyBegin(), expected.keyEnd());
    names.unite(QSet<QString>(found.keyBegin(), found.keyEnd()));
    for (const QString& name : names) {
        if (found.value(name) != expected.value(name)) {
            wrong.append(
                QStringLiteral("%1: %2, expected %3").arg(name).arg(found.value(name)).arg(expected.value(name)));
        }
    }
    wrong.sort();
    return wrong;
}

int filesUnder(const QString& folder) {
    int count = 0;
    for (QDirIterator it(folder, QDir::Files, QDirIterator::Subdirectories); it.hasNext(); it.next()) {
        ++count;
    }
    return count;
}
} // namespace

class SubmitSoakTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    SyncHttpClient m_http;
    std::optional<TemporaryFolderOverride> m_temporary;
    std::unique_ptr<AppStateFixture> m_fixture;
    // Changes of the page's session since the last submission.
    int m_sessionChanges = 0;
    // Posted notifications already answered.
    qsizetype m_answered = 0;
    // The request log read so far.
    qint64 m_logSeen = 0;
    // Successful uploads as the log shows them: task id and file name.
    QList<std::pair<QString, QString>> m_uploaded;
    SoakCounts m_counts;

    AppState& app() { return m_fixture->app(); }
    SubmitController& controller() { return app().submit(); }
    BackgroundSubmitQueue& queue() { return app().submitQueue(); }
    RecordingNotificationCenter& center() { return m_fixture->notificationCenter(); }

    const ForegroundSubmitPhase* shownPhase() {
        const auto& session = controller().foregroundSubmit();
        return session ? &session->phase : nullptr;
    }
    bool showsResult() { return shownPhase() && isResult(*shownPhase()); }

    QHash<QString, QString> supportListTasks() {
        return SandboxDemo::openTaskNames(m_http, m_sandbox, SandboxDemo::supportListID);
    }

    void startCentralState() {
        m_fixture = AppStateFixture::withFirstUser(m_sandbox);
        QVERIFY(m_fixture);
        m_fixture->writeSettings({{"activeAccountID", SandboxDemo::firstUserID}});
        m_fixture->startSignedIn();
        // As the application's delegate does, so that a notification's "Retry" reaches the queue.
        app().notifications().registerCategories();
        QVERIFY(m_fixture->chooseNorthwindList(SandboxDemo::supportListID));
        connect(&controller(), &SubmitController::foregroundSubmitChanged, this, [this] { ++m_sessionChanges; });
    }

    SoakJob makeJob(QRandomGenerator& random, int number) {
        SoakJob job;
        const QString name = QStringLiteral("Soak %1").arg(number, 4, 10, QLatin1Char('0'));
        job.bulk = random.bounded(2) == 1;
        if (job.bulk) {
            const int lines = random.bounded(1, 6);
            for (int line = 1; line <= lines; ++line) {
                job.taskNames.append(name + QStringLiteral(" line %1").arg(line));
            }
        } else {
            job.taskNames.append(name);
            const int files = random.bounded(4);
            for (int file = 1; file <= files; ++file) {
                job.fileNames.append(QStringLiteral("soak-%1-%2.txt").arg(number).arg(file));
                job.fileSizes.append(random.bounded(1, 4096));
            }
        }
        if (random.bounded(100) < 40) {
            job.phasesBeforeBackground = random.bounded(3);
        }
        return job;
    }

    // Creations refused with a 4xx or 5xx, and uploads failing with a 5xx or a dropped connection,
    // some often enough to exhaust an upload's own attempts.
    void injectFaults(QRandomGenerator& random) {
        static const QList<int> createStatuses{400, 422, 500, 502, 503};
        static const QList<int> uploadStatuses{500, 502, 503, 504};
        if (random.bounded(100) < 12) {
            QVERIFY(m_sandbox.addFault(postFault(SandboxFault::answer(
                createPattern, createStatuses.at(random.bounded(static_cast<int>(createStatuses.size())))))));
        }
        const int upload = random.bounded(100);
        if (upload < 10) {
            QVERIFY(m_sandbox.addFault(postFault(
                SandboxFault::answer(uploadPattern, uploadStatuses.at(random.bounded(4)), random.bounded(1, 8)))));
        } else if (upload < 16) {
            QVERIFY(m_sandbox.addFault(postFault(SandboxFault::dropConnection(uploadPattern, random.bounded(1, 13)))));
        }
    }

    // Fills the composer as the user would and submits; false when nothing started.
    bool submit(const SoakJob& job) {
        if (job.bulk) {
            controller().setBulkMode(true);
            controller().setBulkLines(job.taskNames.join(QLatin1Char('\n')));
        } else {
            app().draft().setName(job.taskNames.first());
            QList<StagedAttachment> staged;
            for (qsizetype index = 0; index < job.fileNames.size(); ++index) {
                const QString path =
                    m_temporary->writeOutside(job.fileNames.at(index), QByteArray(job.fileSizes.at(index), 's'));
                staged.append(*AttachmentStaging::stage(QUrl::fromLocalFile(path)));
            }
            app().draft().appendAttachments(staged);
        }
        m_sessionChanges = 0;
        controller().submitDraft();
        return controller().foregroundSubmit().has_value();
    }

    // Moves the job to the background after the phases it was given, if it is still running then;
    // whether it was moved.
    bool moveToBackground(int phases) {
        if (!waitUntil([&] { return m_sessionChanges >= phases || showsResult(); })) {
            return false;
        }
        if (showsResult()) {
            return false;
        }
        controller().backgroundActiveSubmit();
        ++m_counts.backgrounded;
        return true;
    }

    // Follows the job on its page, retrying from there until it ends without anything left to retry;
    // whether it did.
    bool watchToTheEnd() {
        for (;;) {
            if (!waitUntil([&] { return showsResult(); })) {
                return false;
            }
            const std::optional<QUuid> retryID = retryIDOf(*shownPhase());
            if (!retryID) {
                break;
            }
            ++m_counts.pageRetries;
            controller().retryForegroundSubmit(*retryID);
        }
        const bool succeeded = std::visit(Overloaded{
                                              [](const Done& done) { return done.failedUploads.isEmpty(); },
                                              [](const BulkDone& done) { return done.failures.isEmpty(); },
                                              [](const auto&) { return false; },
                                          },
                                          *shownPhase());
        controller().leaveSubmitResult();
        return succeeded;
    }

    // "Retry" on every new notification that offers it, as the user would.
    void answerNotifications() {
        for (; m_answered < center().posted().size(); ++m_answered) {
            if (center().posted().at(m_answered).userInfo.contains(QStringLiteral("retryJobID"))) {
                ++m_counts.notificationRetries;
                center().invoke(m_answered, NotificationCategories::retryAction);
            } else {
                ++m_counts.finalNotifications;
            }
        }
    }

    // Waits until no job runs and nothing is left to retry.
    bool settle() {
        return waitUntil([&] {
            answerNotifications();
            return queue().pendingCount() == 0 && queue().failedJobs().isEmpty();
        });
    }

    // Reads the request log since the last time, once nothing is in flight.
    void readLog() {
        for (const QJsonValue entry : m_sandbox.requests(m_logSeen)) {
            m_logSeen = std::max(m_logSeen, entry[QStringLiteral("seq")].toInteger());
            if (entry[QStringLiteral("method")].toString() != QStringLiteral("POST")) {
                continue;
            }
            const QString path = entry[QStringLiteral("path")].toString();
            const int status = entry[QStringLiteral("status")].toInt();
            if (path.endsWith(QStringLiteral("/attachment"))) {
                if (status == 200) {
                    m_uploaded.append({path.split(QLatin1Char('/')).value(4),
                                       entry[QStringLiteral("parts")][0][QStringLiteral("filename")].toString()});
                } else {
                    ++m_counts.failedUploadAttempts;
                }
            } else if (path.endsWith(QStringLiteral("/task")) && status != 200) {
                ++m_counts.refusedCreates;
            }
        }
    }

private slots:
    void initTestCase() { QVERIFY2(m_sandbox.start(), qPrintable(m_sandbox.errorString())); }

    void init() {
        m_temporary.emplace();
        m_sessionChanges = 0;
        m_answered = 0;
        m_logSeen = 0;
        m_uploaded.clear();
        m_counts = SoakCounts();
        startCentralState();
    }

    void cleanup() {
        m_fixture.reset();
        m_temporary.reset();
    }

    void randomJobsWithFailuresRetriedLeaveEachTaskAndAttachmentExactlyOnce() {
        QElapsedTimer elapsed;
        elapsed.start();
        const int storedBefore = filesUnder(m_sandbox.dataFolder());
        QRandomGenerator random(seed);
        QHash<QString, int> expectedTasks;
        // The task each file belongs to.
        QHash<QString, QString> expectedFiles;
        for (int number = 0; number < jobCount; ++number) {
            const SoakJob job = makeJob(random, number);
            injectFaults(random);
            for (const QString& name : job.taskNames) {
                expectedTasks.insert(name, 1);
            }
            for (const QString& fileName : job.fileNames) {
                expectedFiles.insert(fileName, job.taskNames.first());
            }
            QVERIFY2(submit(job), qPrintable(job.taskNames.first()));
            const bool backgrounded = job.phasesBeforeBackground && moveToBackground(*job.phasesBeforeBackground);
            if (!backgrounded) {
                QVERIFY2(watchToTheEnd(), qPrintable(job.taskNames.first()));
            }
            answerNotifications();
            if ((number + 1) % waveSize == 0) {
                QVERIFY2(settle(), qPrintable(QStringLiteral("after job %1").arg(number)));
                readLog();
            }
        }
        QVERIFY(settle());
        readLog();

        // Every task exactly once, and nothing else of the run.
        const QHash<QString, QString> tasks = supportListTasks();
        QHash<QString, int> createdTasks;
        for (const QString& name : tasks) {
            if (name.startsWith(QStringLiteral("Soak "))) {
                ++createdTasks[name];
            }
        }
        const QStringList wrongTasks = differences(createdTasks, expectedTasks);
        QVERIFY2(wrongTasks.isEmpty(), qPrintable(wrongTasks.join(QStringLiteral("; "))));

        // Every attachment exactly once, on its own task.
        QHash<QString, int> uploadCounts;
        QHash<QString, QString> uploadedTo;
        for (const auto& [taskID, fileName] : m_uploaded) {
            ++uploadCounts[fileName];
            uploadedTo.insert(fileName, tasks.value(taskID));
        }
        QHash<QString, int> expectedUploads;
        for (auto it = expectedFiles.cbegin(); it != expectedFiles.cend(); ++it) {
            expectedUploads.insert(it.key(), 1);
        }
        const QStringList wrongUploads = differences(uploadCounts, expectedUploads);
        QVERIFY2(wrongUploads.isEmpty(), qPrintable(wrongUploads.join(QStringLiteral("; "))));
        QCOMPARE(uploadedTo, expectedFiles);
        QCOMPARE(filesUnder(m_sandbox.dataFolder()) - storedBefore, expectedFiles.size());

        // Nothing left behind: no pinned copy, no upload body, no job, nothing to retry.
        QCOMPARE(m_temporary->fileNames(), QStringList());
        QCOMPARE(queue().pendingCount(), 0);
        QVERIFY(queue().failedJobs().isEmpty());
        QVERIFY(queue().backgroundedJobIDs().isEmpty());
        // Each job in the background told its end once, in the one notification without a retry.
        QCOMPARE(m_counts.finalNotifications, m_counts.backgrounded);

        // The run went through each kind of failure and each way of retrying.
        QVERIFY(m_counts.backgrounded > jobCount / 5);
        QVERIFY(m_counts.refusedCreates > 0);
        QVERIFY(m_counts.failedUploadAttempts > 0);
        QVERIFY(m_counts.pageRetries > 0);
        QVERIFY(m_counts.notificationRetries > 0);
        qInfo("%d jobs: %lld tasks, %lld attachments; %d moved to the background; %d creations refused, %d upload "
              "attempts failed; %d retries from the page, %d from notifications; %lld ms",
              jobCount, static_cast<long long>(expectedTasks.size()), static_cast<long long>(expectedFiles.size()),
              m_counts.backgrounded, m_counts.refusedCreates, m_counts.failedUploadAttempts, m_counts.pageRetries,
              m_counts.notificationRetries, static_cast<long long>(elapsed.elapsed()));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(SubmitSoakTest)
#include "SubmitSoakTest.moc"
