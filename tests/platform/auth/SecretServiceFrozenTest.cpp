// A Secret Service that stops answering: each operation gives up within its own timeout, and the
// store works again once the daemon goes on. Runs in a desktop session of its own, whose
// gnome-keyring-daemon it stops with SIGSTOP and resumes with SIGCONT; it signals no other process.
#include "platform/linux/SecretServiceStore.h"
#include "support/KeyringDaemon.h"
#include "support/TestMain.h"

#include "support/RunTask.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QTest>
#include <csignal>

using namespace std::chrono_literals;

namespace {
const QString service = QStringLiteral("com.norvanebar.app");
const QString account = QStringLiteral("norvane-token-42");
constexpr auto timeout = 1500ms;
// What an operation may take beyond its timeout on a loaded machine.
constexpr qint64 slackMSecs = 1000;
} // namespace

class SecretServiceFrozenTest : public QObject {
    Q_OBJECT

    SecretServiceStore m_secrets{timeout};
    std::optional<pid_t> m_daemon;
    bool m_frozen = false;

    void freeze() {
        QVERIFY(::kill(*m_daemon, SIGSTOP) == 0);
        m_frozen = true;
    }
    void thaw() {
        if (m_frozen) {
            ::kill(*m_daemon, SIGCONT);
            m_frozen = false;
        }
    }

    // Runs an operation on the frozen store and checks that it gave up on time.
    template <typename T> T givesUpInTime(QCoro::Task<T> operation) {
        QElapsedTimer elapsed;
        elapsed.start();
        if constexpr (std::is_void_v<T>) {
            runTask(std::move(operation));
            checkGaveUpInTime(elapsed.elapsed());
        } else {
            T result = runTask(std::move(operation));
            checkGaveUpInTime(elapsed.elapsed());
            return result;
        }
    }
    void checkGaveUpInTime(qint64 elapsedMSecs) {
        // Qt's coarse timers may fire up to 5 % early.
        QVERIFY2(elapsedMSecs >= timeout.count() * 9 / 10, qPrintable(QString::number(elapsedMSecs)));
        QVERIFY2(elapsedMSecs < timeout.count() + slackMSecs, qPrintable(QString::number(elapsedMSecs)));
    }

private slots:
    void initTestCase() {
        m_daemon = KeyringDaemon::ofOwnSession();
        QVERIFY2(m_daemon, "the keyring daemon of this test's own session is not found; nothing is signalled");
        QCOMPARE(runTask(m_secrets.write(service, account, "pk_before")), 0);
    }

    // A test that fails halfway must not leave the daemon stopped.
    void cleanup() { thaw(); }

    void everyOperationOnAFrozenDaemonGivesUpWithinItsTimeout() {
        freeze();
        QCOMPARE(givesUpInTime(m_secrets.read(service, account)), std::nullopt);
        givesUpInTime(m_secrets.remove(service, account));
        QCOMPARE(givesUpInTime(m_secrets.write(service, account, "pk_late")), SecretServiceStore::timedOutStatus);
    }

    void theStoreAnswersAgainOnceTheDaemonGoesOn() {
        thaw();
        // The calls that gave up still reach the daemon: the write's new item lands late.
        std::optional<QByteArray> read;
        const QDeadlineTimer deadline(10s);
        while (read != QByteArray("pk_late") && !deadline.hasExpired()) {
            read = runTask(m_secrets.read(service, account));
        }
        QCOMPARE(read, QByteArray("pk_late"));
        QCOMPARE(runTask(m_secrets.write(service, account, "pk_after")), 0);
        QCOMPARE(runTask(m_secrets.read(service, account)), QByteArray("pk_after"));
    }

    void cleanupTestCase() {
        thaw();
        runTask(m_secrets.remove(service, account));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(SecretServiceFrozenTest)
#include "SecretServiceFrozenTest.moc"
