#include "platform/linux/GStreamerScreenCapture.h"
#include "support/CaptureTesting.h"
#include "support/FakePipeWireScreen.h"
#include "support/RunTask.h"
#include "support/TestMain.h"

#include <QFile>
#include <QTest>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {
bool isGreen(QRgb colour) {
    return qGreen(colour) > 150 && qRed(colour) < 60 && qBlue(colour) < 60;
}

// A new connection to the PipeWire of the session's runtime folder, as the ScreenCast portal's
// OpenPipeWireRemote hands one out; -1 when it can't be made.
int pipeWireRemote() {
    const QByteArray path = QFile::encodeName(qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/pipewire-0"));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= qsizetype(sizeof address.sun_path)) {
        return -1;
    }
    std::memcpy(address.sun_path, path.constData(), path.size());
    const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd >= 0 && connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        close(fd);
        return -1;
    }
    return fd;
}
} // namespace

// Screen capture of a PipeWire node, as on Wayland: a private PipeWire with WirePlumber and a fake
// screen node fed by videotestsrc's SMPTE bars (tests/harness/pipewire_screen.py).
class PipeWireCaptureTest : public QObject {
    Q_OBJECT

    FakePipeWireScreen m_screen{QStringLiteral(NORVANEBAR_PIPEWIRE_SCREEN_SCRIPT)};
    GStreamerScreenCapture m_capture{GStreamerScreenCapture::Screens::pipeWire};

    std::unique_ptr<CaptureStream> makeStream(QSize size) {
        const int remote = pipeWireRemote();
        if (remote < 0) {
            return nullptr;
        }
        CaptureConfiguration configuration;
        configuration.size = size;
        std::unique_ptr<CaptureStream> stream = m_capture.makeStream(
            CaptureTarget{QRectF(), 1.0, CaptureTarget::PipeWireNode{remote, m_screen.nodeId()}}, configuration);
        // The stream keeps a descriptor of its own: the portal's session may close its one.
        close(remote);
        return stream;
    }

private slots:
    void initTestCase() { QVERIFY2(m_screen.start(), "the fake screen did not come up"); }

    void cleanupTestCase() { QVERIFY(m_screen.stop()); }

    void framesComeFromTheNode() {
        const std::unique_ptr<CaptureStream> stream = makeStream({640, 360});
        QVERIFY(stream);
        CaptureLog log(*stream);
        QVERIFY(log.capture(10));

        const std::vector<CaptureLog::Frame> frames = log.frames();
        for (size_t i = 0; i < frames.size(); ++i) {
            const CaptureLog::Frame& frame = frames[i];
            QCOMPARE(frame.size, QSize(640, 360));
            QCOMPARE(frame.format, QImage::Format_RGB32);
            QVERIFY(frame.native);
            // The fourth of the seven bars, scaled down.
            QVERIFY2(isGreen(frame.centre), qPrintable(QString::number(frame.centre, 16)));
            QVERIFY(frame.presentation && *frame.presentation <= frame.arrival);
            QVERIFY(frame.arrival - *frame.presentation < mostLateness);
            QVERIFY(i == 0 || *frame.presentation > *frames[i - 1].presentation);
        }
    }

    // Each start after a stop brings frames again, none of them from before it, as a recording
    // paused and resumed a few times in a row.
    void theNodeCanBeCapturedAgainAfterAStop() {
        const std::unique_ptr<CaptureStream> stream = makeStream({320, 180});
        QVERIFY(stream);
        CaptureLog log(*stream);
        QVERIFY(log.capture(3));
        for (int start = 1; start <= 5; ++start) {
            const size_t before = log.frames().size();
            const qint64 stoppedAt = monotonicNow();
            QVERIFY2(log.capture(3), qPrintable(QStringLiteral("start %1").arg(start)));
            QVERIFY(*log.frames()[before].presentation > stoppedAt);
            QCOMPARE(log.frames().back().size, QSize(320, 180));
        }
    }

    void noFrameComesWhileStopped() {
        const std::unique_ptr<CaptureStream> stream = makeStream({320, 180});
        QVERIFY(stream);
        CaptureLog log(*stream);
        QVERIFY(log.capture(3));
        const size_t stoppedWith = log.frames().size();
        QTest::qWait(300);
        QCOMPARE(log.frames().size(), stoppedWith);
    }
};

NORVANEBAR_TEST_MAIN(PipeWireCaptureTest)
#include "PipeWireCaptureTest.moc"
