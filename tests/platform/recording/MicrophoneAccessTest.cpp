#include "platform/linux/PulseMicrophoneAccess.h"
#include "support/EnvironmentOverride.h"
#include "support/ProcessEnding.h"
#include "support/RunTask.h"
#include "support/TestMain.h"

#include <QElapsedTimer>
#include <QFile>
#include <QLocalServer>
#include <QLocalSocket>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

namespace {
using namespace std::chrono_literals;

QByteArray serverAt(const QString& socket) {
    return QStringLiteral("unix:%1").arg(socket).toUtf8();
}
} // namespace

// Microphone access as the sound server of the session answers: the private PulseAudio of
// `desktop-session --microphone` (its source fakemic.monitor), no server at all, one without a
// source, and one that never answers.
class MicrophoneAccessTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;

private slots:
    void initTestCase() { QVERIFY(m_folder.isValid()); }

    void grantedWhenTheSoundServerOffersASource() {
        QVERIFY2(qEnvironmentVariableIsSet("PULSE_SERVER"), "run in a session with --microphone");
        PulseMicrophoneAccess access;
        QCOMPARE(runTask(access.authorizationStatus()), MicrophoneAccess::Status::authorized);
        QVERIFY(runTask(access.requestAccess()));
    }

    void deniedWithoutASoundServer() {
        const QString socket = m_folder.filePath(QStringLiteral("nobody/native"));
        const EnvironmentOverride server("PULSE_SERVER", serverAt(socket));
        PulseMicrophoneAccess access(10s);
        QElapsedTimer asking;
        asking.start();
        QCOMPARE(runTask(access.authorizationStatus()), MicrophoneAccess::Status::denied);
        // Refused at once, not waited for.
        QVERIFY2(asking.elapsed() < 5000, qPrintable(QString::number(asking.elapsed())));
        QVERIFY(!runTask(access.requestAccess()));
        QVERIFY(!QFile::exists(socket));
    }

    void deniedWhenTheServerOffersNoSource() {
        // A PulseAudio of the test's own with neither sink nor source.
        const QString socket = m_folder.filePath(QStringLiteral("native"));
        QProcess pulseAudio;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), m_folder.path());
        // Off the bus, where the session's server holds the name a second one would want.
        environment.remove(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"));
        pulseAudio.setProcessEnvironment(environment);
        pulseAudio.start(QStringLiteral("pulseaudio"),
                         {QStringLiteral("-n"), QStringLiteral("--daemonize=no"), QStringLiteral("--exit-idle-time=-1"),
                          QStringLiteral("--use-pid-file=no"),
                          QStringLiteral("--load=module-native-protocol-unix socket=%1").arg(socket)});
        QVERIFY(QTest::qWaitFor(
            [&] {
                QLocalSocket probe;
                probe.connectToServer(socket);
                return probe.waitForConnected(100);
            },
            10'000));

        const EnvironmentOverride server("PULSE_SERVER", serverAt(socket));
        PulseMicrophoneAccess access;
        QCOMPARE(runTask(access.authorizationStatus()), MicrophoneAccess::Status::denied);
        QVERIFY(terminateProcess(pulseAudio, 5000));
    }

    void aServerThatNeverAnswersIsDeniedWithoutHoldingTheEventLoop() {
        const QString socket = m_folder.filePath(QStringLiteral("silent"));
        QLocalServer silent;
        QVERIFY(silent.listen(socket));
        const EnvironmentOverride server("PULSE_SERVER", serverAt(socket));
        PulseMicrophoneAccess access(500ms);

        int ticks = 0;
        QTimer ticking;
        connect(&ticking, &QTimer::timeout, this, [&ticks] { ++ticks; });
        ticking.start(20);
        QElapsedTimer asking;
        asking.start();
        QCOMPARE(runTask(access.authorizationStatus()), MicrophoneAccess::Status::denied);
        QVERIFY(asking.elapsed() >= 500);
        // The event loop went on meanwhile.
        QVERIFY2(ticks >= 5, qPrintable(QString::number(ticks)));
    }
};

NORVANEBAR_TEST_MAIN(MicrophoneAccessTest)
#include "MicrophoneAccessTest.moc"
