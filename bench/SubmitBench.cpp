// Figures of the submission pipeline, run through the central state against norvane-sandbox:
//
//   bulk_100_lines      a bulk job of 100 lines with 20 ms of latency on each creation, against the
//                       ideal of 100 x 20 ms (target at most 1.10)
//   ten_5mb_native      one task with ten 5 MB attachments, native, against curl sending the same ten
//                       files one after another to the same sandbox in one process (target at most
//                       1.3); medians over alternating rounds
//   main_thread_lag     during that job, the longest time the main thread stayed away from its event
//                       loop, seen by a 1 ms precise timer (target at most 16 ms)
//   lost_answer         100 jobs whose creation is carried out but never answered, each retried once
//                       after its failure: the duplicate tasks they leave (target 0), beside the
//                       same jobs where the person chooses "Create Anyway" after each retry, which is
//                       what every retry did before it looked for the task first
//
// Prints one figure a line as "name value unit". Exits 1 when a job fails or a figure misses its
// target.
#include "support/AppStateFixture.h"
#include "support/SandboxDemo.h"
#include "support/SubmitTesting.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <cstdio>

namespace {
constexpr int bulkLines = 100;
constexpr int latencyMs = 20;
constexpr int bulkRuns = 3;
constexpr int attachmentCount = 10;
constexpr qint64 attachmentBytes = 5'000'000;
constexpr int uploadRounds = 3;
constexpr int lostAnswerJobs = 100;
constexpr double bulkTarget = 1.10;
constexpr double uploadTarget = 1.3;
constexpr double lagTargetMs = 16;
const QString createPattern = QStringLiteral("/api/v2/list/*/task");
const QString listID = SandboxDemo::supportListID;

double median(QList<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

double elapsedMs(const QElapsedTimer& timer) {
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

SandboxFault onCreate(SandboxFault fault) {
    fault.method = QStringLiteral("POST");
    return fault;
}

// The longest gap between two ticks of a 1 ms timer on this thread, less the interval: how long
// the event loop was kept from running.
class EventLoopLagProbe {
public:
    EventLoopLagProbe() {
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.setInterval(1);
        QObject::connect(&m_timer, &QTimer::timeout, [this] {
            m_longestMs = std::max(m_longestMs, elapsedMs(m_sinceTick) - 1);
            m_sinceTick.start();
        });
    }
    void start() {
        m_longestMs = 0;
        m_sinceTick.start();
        m_timer.start();
    }
    double stop() {
        m_timer.stop();
        return m_longestMs;
    }

private:
    QTimer m_timer;
    QElapsedTimer m_sinceTick;
    double m_longestMs = 0;
};

class SubmitBench {
public:
    explicit SubmitBench(SandboxProcess& sandbox)
        : m_sandbox(sandbox)
        , m_fixture(AppStateFixture::withFirstUser(sandbox)) {}

    int run() {
        if (!m_fixture || !m_folder.isValid()) {
            std::fprintf(stderr, "no central state\n");
            return 1;
        }
        m_fixture->writeSettings({{"activeAccountID", SandboxDemo::firstUserID}});
        m_fixture->startSignedIn();
        const bool bulkMet = benchBulk();
        const bool uploadsMet = benchAttachments();
        const bool lostAnswersMet = benchLostAnswers();
        return bulkMet && uploadsMet && lostAnswersMet ? 0 : 1;
    }

private:
    AppState& app() { return m_fixture->app(); }
    BackgroundSubmitQueue& queue() { return app().submitQueue(); }

    // Runs the event loop until no job is left; false after a minute.
    bool waitForJobs() {
        if (queue().pendingCount() == 0) {
            return true;
        }
        QEventLoop loop;
        QObject::connect(&queue(), &BackgroundSubmitQueue::pendingCountChanged, &loop, [&] {
            if (queue().pendingCount() == 0) {
                loop.quit();
            }
        });
        QTimer::singleShot(60'000, &loop, &QEventLoop::quit);
        loop.exec();
        return queue().pendingCount() == 0;
    }

    // A single job to its end; its last phase.
    std::optional<ForegroundSubmitPhase> runJob(SubmitJobPayload payload) {
        SubmitTesting::PhaseRecorder phases;
        queue().enqueue(std::move(payload), app().client(), QUuid::createUuid(), phases.handler());
        if (!waitForJobs() || phases.phases().isEmpty()) {
            return std::nullopt;
        }
        return phases.phases().last();
    }

    bool benchBulk() {
        BulkSubmitJobPayload payload{listID, {}, {}};
        for (int line = 1; line <= bulkLines; ++line) {
            payload.taskNames.append(QStringLiteral("Bench bulk line %1").arg(line));
        }
        // Without latency first: what the sandbox and the machine cost by themselves.
        QList<double> bare;
        QList<double> delayed;
        for (const int latency : {0, latencyMs}) {
            if (latency > 0) {
                // Every creation from now on.
                SandboxFault delay = onCreate(SandboxFault::delay(createPattern, latency));
                delay.times = -1;
                if (!m_sandbox.addFault(delay)) {
                    return false;
                }
            }
            for (int run = 0; run < bulkRuns; ++run) {
                SubmitTesting::PhaseRecorder phases;
                QElapsedTimer timer;
                timer.start();
                queue().enqueueBulk(payload, app().client(), QUuid::createUuid(), phases.handler());
                if (!waitForJobs()) {
                    return false;
                }
                (latency > 0 ? delayed : bare).append(elapsedMs(timer));
                const auto* done = phases.last<ForegroundSubmitPhases::BulkDone>();
                if (!done || done->created.size() != bulkLines) {
                    std::fprintf(stderr, "bulk job failed\n");
                    return false;
                }
            }
        }
        m_sandbox.clearFaults();
        const double ideal = bulkLines * latencyMs;
        const double ratio = median(delayed) / ideal;
        std::printf("bulk_100_lines_no_latency %.0f ms (median of %d)\n", median(bare), bulkRuns);
        std::printf("bulk_100_lines_20ms %.0f ms (median of %d; min %.0f, max %.0f)\n", median(delayed), bulkRuns,
                    *std::min_element(delayed.begin(), delayed.end()),
                    *std::max_element(delayed.begin(), delayed.end()));
        std::printf("bulk_100_lines_ideal %.0f ms (%d x %d ms)\n", ideal, bulkLines, latencyMs);
        std::printf("bulk_100_lines_ratio_to_ideal %.3f x (target at most %.2f)\n", ratio, bulkTarget);
        return ratio <= bulkTarget;
    }

    QStringList attachmentFiles() {
        QStringList paths;
        for (int index = 1; index <= attachmentCount; ++index) {
            const QString path = m_folder.filePath(QStringLiteral("attachment-%1.bin").arg(index));
            if (!QFile::exists(path)) {
                QByteArray bytes(attachmentBytes, Qt::Uninitialized);
                for (qsizetype at = 0; at < bytes.size(); ++at) {
                    bytes[at] = static_cast<char>((at * 7919 + index) >> 3);
                }
                writtenFile(path, bytes);
            }
            paths.append(path);
        }
        return paths;
    }

    // Ten uploads from one curl process, one after another on one connection; seconds, or a
    // negative number when one failed.
    double curlUploads(const QString& taskID, const QStringList& files) {
        QStringList arguments;
        const QString url = m_sandbox.apiUrl(QStringLiteral("task/%1/attachment").arg(taskID)).toString();
        for (const QString& file : files) {
            if (!arguments.isEmpty()) {
                arguments << QStringLiteral("--next");
            }
            arguments << QStringLiteral("-s") << QStringLiteral("-o") << QStringLiteral("/dev/null")
                      << QStringLiteral("-w") << QStringLiteral("%{http_code}\\n") << QStringLiteral("-H")
                      << QStringLiteral("Authorization: ") + m_sandbox.token() << QStringLiteral("-F")
                      << QStringLiteral("attachment=@") + file << url;
        }
        QProcess curl;
        QElapsedTimer timer;
        timer.start();
        curl.start(QStringLiteral("curl"), arguments);
        if (!curl.waitForFinished(120'000)) {
            return -1;
        }
        const double seconds = elapsedMs(timer) / 1000;
        const QByteArray codes = curl.readAllStandardOutput();
        return codes == QByteArray("200\n").repeated(attachmentCount) ? seconds : -1;
    }

    // The native job: its seconds and the main thread's longest lag, or nothing when it failed.
    std::optional<std::pair<double, double>> nativeJob(const QStringList& files, int round) {
        QList<StagedAttachment> pinned;
        for (const QString& file : files) {
            pinned.append(SubmitTesting::pinnedFile(m_folder.path(), QFileInfo(file).fileName(), fileContents(file)));
        }
        EventLoopLagProbe probe;
        QElapsedTimer timer;
        probe.start();
        timer.start();
        const std::optional<ForegroundSubmitPhase> last =
            runJob(SubmitTesting::payload(listID, QStringLiteral("Bench attachments %1").arg(round), pinned));
        const double seconds = elapsedMs(timer) / 1000;
        const double lag = probe.stop();
        const auto* done = last ? std::get_if<ForegroundSubmitPhases::Done>(&*last) : nullptr;
        if (!done || !done->failedUploads.isEmpty()) {
            return std::nullopt;
        }
        return std::pair{seconds, lag};
    }

    bool benchAttachments() {
        const QStringList files = attachmentFiles();
        // A task for curl's uploads, and a first small job so that connections are open.
        const std::optional<ForegroundSubmitPhase> warm = runJob(SubmitTesting::payload(
            listID, QStringLiteral("Bench curl target"), {SubmitTesting::pinnedFile(m_folder.path(), "warm.txt")}));
        const auto* target = warm ? std::get_if<ForegroundSubmitPhases::Done>(&*warm) : nullptr;
        if (!target) {
            std::fprintf(stderr, "warm-up job failed\n");
            return false;
        }
        QList<double> curlSeconds;
        QList<double> nativeSeconds;
        QList<double> lags;
        for (int round = 0; round < uploadRounds; ++round) {
            const double curl = curlUploads(target->task.id, files);
            const std::optional<std::pair<double, double>> native = nativeJob(files, round);
            if (curl < 0 || !native) {
                std::fprintf(stderr, "an upload failed\n");
                return false;
            }
            curlSeconds.append(curl);
            nativeSeconds.append(native->first);
            lags.append(native->second);
        }
        const double ratio = median(nativeSeconds) / median(curlSeconds);
        const double lag = *std::max_element(lags.begin(), lags.end());
        std::printf("ten_5mb_curl %.3f s (median of %d)\n", median(curlSeconds), uploadRounds);
        std::printf("ten_5mb_native %.3f s (median of %d; creation and ten uploads)\n", median(nativeSeconds),
                    uploadRounds);
        std::printf("ten_5mb_native_ratio_to_curl %.2f x (target at most %.1f)\n", ratio, uploadTarget);
        std::printf("main_thread_lag_max %.1f ms (longest over %d jobs; median job %.1f; target at most %.0f)\n", lag,
                    uploadRounds, median(lags), lagTargetMs);
        return ratio <= uploadTarget && lag <= lagTargetMs;
    }

    // Runs jobs whose creation is carried out and its answer lost, retrying each failed one once and,
    // with `createAnyway`, choosing "Create Anyway" where the retry found the task; the tasks they
    // left beyond one each, or nothing when a job didn't end with its task.
    std::optional<int> lostAnswerDuplicates(const QString& prefix, bool createAnyway) {
        for (int job = 0; job < lostAnswerJobs; ++job) {
            m_sandbox.clearFaults();
            if (!m_sandbox.addFault(onCreate(SandboxFault::dropAnswer(createPattern, 1)))) {
                return std::nullopt;
            }
            SubmitJobPayload payload = SubmitTesting::payload(listID, prefix + QString::number(job));
            payload.workspaceID = SandboxDemo::northwindID;
            SubmitTesting::PhaseRecorder phases;
            queue().enqueue(std::move(payload), app().client(), QUuid::createUuid(), phases.handler());
            if (!waitForJobs() || !retryLast(phases)) {
                return std::nullopt;
            }
            const auto* found = phases.last<ForegroundSubmitPhases::FoundExisting>();
            if (found && createAnyway) {
                queue().retry(found->retryJobID, app().client(), phases.handler(), false);
                if (!waitForJobs()) {
                    return std::nullopt;
                }
            }
            if (!phases.last<ForegroundSubmitPhases::Done>() && !phases.last<ForegroundSubmitPhases::FoundExisting>()) {
                return std::nullopt;
            }
        }
        SyncHttpClient http;
        const QHash<QString, QString> tasks = SandboxDemo::openTaskNames(http, m_sandbox, listID);
        const auto made =
            std::count_if(tasks.cbegin(), tasks.cend(), [&](const QString& name) { return name.startsWith(prefix); });
        return static_cast<int>(made) - lostAnswerJobs;
    }

    // Retries the job whose last phase is a failure, once, to its end; false when it doesn't end.
    bool retryLast(const SubmitTesting::PhaseRecorder& phases) {
        const auto* failed = phases.last<ForegroundSubmitPhases::Failed>();
        if (!failed || !failed->retryJobID) {
            return true;
        }
        queue().retry(*failed->retryJobID, app().client(), phases.handler(), false);
        return waitForJobs();
    }

    bool benchLostAnswers() {
        const std::optional<int> duplicates = lostAnswerDuplicates(QStringLiteral("Answer lost "), false);
        const std::optional<int> chosen = lostAnswerDuplicates(QStringLiteral("Answer lost, created anyway "), true);
        if (!duplicates || !chosen) {
            std::fprintf(stderr, "a job whose answer was lost did not end with its task\n");
            return false;
        }
        std::printf("lost_answer_duplicates %d/%d jobs left a second task without \"Create Anyway\" (target 0)\n",
                    *duplicates, lostAnswerJobs);
        std::printf("lost_answer_duplicates_create_anyway %d/%d (each retry followed by \"Create Anyway\": what a "
                    "retry made before it looked first)\n",
                    *chosen, lostAnswerJobs);
        return *duplicates == 0;
    }

    SandboxProcess& m_sandbox;
    std::unique_ptr<AppStateFixture> m_fixture;
    QTemporaryDir m_folder;
};
} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    SandboxProcess sandbox;
    if (!sandbox.start()) {
        std::fprintf(stderr, "sandbox: %s\n", qPrintable(sandbox.errorString()));
        return 1;
    }
    SubmitBench bench(sandbox);
    const int status = bench.run();
    std::printf("submit_bench_result %s\n", status == 0 ? "pass" : "fail");
    return status;
}
