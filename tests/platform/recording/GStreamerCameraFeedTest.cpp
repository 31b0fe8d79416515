#include "platform/linux/GStreamerCameraFeed.h"
#include "core/recording/CameraOverlayCompositor.h"
#include "core/recording/ScreenRecordingError.h"
#include "support/RunTask.h"
#include "support/TestMain.h"

#include <QDir>
#include <QTest>

namespace {
constexpr int patience = 20'000;

bool near(QRgb pixel, QColor color) {
    return std::abs(qRed(pixel) - color.red()) <= 8 && std::abs(qGreen(pixel) - color.green()) <= 8 &&
           std::abs(qBlue(pixel) - color.blue()) <= 8;
}

QString describe(QRgb pixel) {
    return QColor(pixel).name();
}

// What start() threw; absent when it started.
std::optional<QString> startFailure(CameraFeed& feed) {
    try {
        feed.start();
    } catch (const ScreenRecordingError& error) {
        return error.errorDescription();
    }
    return std::nullopt;
}
} // namespace

// The camera through GStreamer, fed by videotestsrc in place of a camera (no loopback camera can be
// loaded here), in a desktop session of its own.
class GStreamerCameraFeedTest : public QObject {
    Q_OBJECT

private slots:
    void framesComeMirroredAt640By480() {
        // SMPTE bars run from white on the left to blue on the right.
        GStreamerCameraFeed feed(QStringLiteral("videotestsrc is-live=true pattern=smpte"));
        QVERIFY(!feed.isRunning());
        feed.start();
        QVERIFY(QTest::qWaitFor([&feed] { return feed.isRunning(); }, patience));
        const QImage frame = feed.latestFrame();
        QCOMPARE(frame.size(), QSize(640, 480));
        QCOMPARE(frame.format(), QImage::Format_RGB32);
        QVERIFY2(near(frame.pixel(5, 100), Qt::blue), qPrintable(describe(frame.pixel(5, 100))));
        QVERIFY2(near(frame.pixel(634, 100), Qt::white), qPrintable(describe(frame.pixel(634, 100))));
    }

    void aLargerPictureIsShrunkToFitKeepingItsShape() {
        GStreamerCameraFeed feed(
            QStringLiteral("videotestsrc is-live=true ! capsfilter caps=video/x-raw,width=1280,height=720"));
        QCOMPARE(startFailure(feed), std::nullopt);
        QVERIFY(QTest::qWaitFor([&feed] { return feed.isRunning(); }, patience));
        QCOMPARE(feed.latestFrame().size(), QSize(640, 360));
    }

    // The blinking pattern alternates black and white from black; the frame kept once the stream
    // has ended is its last.
    void theNewestFrameIsKept_data() {
        QTest::addColumn<int>("frames");
        QTest::addColumn<QColor>("last");
        QTest::newRow("thirty frames end white") << 30 << QColor(Qt::white);
        QTest::newRow("thirty-one frames end black") << 31 << QColor(Qt::black);
    }
    void theNewestFrameIsKept() {
        QFETCH(int, frames);
        QFETCH(QColor, last);
        GStreamerCameraFeed feed(QStringLiteral("videotestsrc is-live=true pattern=blink num-buffers=%1").arg(frames));
        feed.start();
        // A frame has come and the stream no longer runs: it has ended.
        QVERIFY(QTest::qWaitFor([&feed] { return !feed.latestFrame().isNull() && !feed.isRunning(); }, patience));
        const QRgb pixel = feed.latestFrame().pixel(320, 240);
        QVERIFY2(near(pixel, last), qPrintable(describe(pixel)));
    }

    void stopDropsTheFrameAndAStartDeliversAgain() {
        GStreamerCameraFeed feed(QStringLiteral("videotestsrc is-live=true"));
        feed.start();
        QVERIFY(QTest::qWaitFor([&feed] { return feed.isRunning(); }, patience));
        feed.stop();
        QVERIFY(!feed.isRunning());
        QVERIFY(feed.latestFrame().isNull());
        feed.stop();
        feed.start();
        QVERIFY(QTest::qWaitFor([&feed] { return feed.isRunning(); }, patience));
        QVERIFY(!feed.latestFrame().isNull());
    }

    void aSourceThatCannotBeMadeOrOpenedCannotAccessTheCamera_data() {
        QTest::addColumn<QString>("source");
        QTest::newRow("no such element") << QStringLiteral("nosuchcamerasrc");
        QTest::newRow("no such device") << QStringLiteral("v4l2src device=/dev/norvanebar-no-camera");
    }
    void aSourceThatCannotBeMadeOrOpenedCannotAccessTheCamera() {
        QFETCH(QString, source);
        GStreamerCameraFeed feed(source);
        QCOMPARE(startFailure(feed), QStringLiteral("Recording failed: Could not access the camera."));
        QVERIFY(!feed.isRunning());
    }

    void withoutACameraStartSaysNoneWasFound() {
        if (!QDir(QStringLiteral("/dev")).entryList({QStringLiteral("video*")}, QDir::System).isEmpty()) {
            QSKIP("This machine has a camera.");
        }
        GStreamerCameraFeed feed;
        QCOMPARE(startFailure(feed), QStringLiteral("Recording failed: No camera found."));
        QVERIFY(!feed.isRunning());
    }

    void theOverlayRunsOnTheFeed() {
        CameraOverlayCompositor compositor(
            FacecamStyle(), std::make_unique<GStreamerCameraFeed>(QStringLiteral("videotestsrc is-live=true")),
            PersonSegmenters::unavailable());
        runTask(compositor.start());
        QVERIFY(compositor.isRunning());
        QVERIFY(compositor.makePipImage(QSize(1920, 1080)));
        compositor.stop();
        QCOMPARE(compositor.makePipImage(QSize(1920, 1080)), std::nullopt);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(GStreamerCameraFeedTest)
#include "GStreamerCameraFeedTest.moc"
