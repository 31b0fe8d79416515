#include "core/recording/ScreenRecordingError.h"
#include "platform/linux/GStreamerScreenCapture.h"
#include "support/CaptureTesting.h"
#include "support/EnvironmentOverride.h"
#include "support/RunTask.h"
#include "support/TestMain.h"

#include <QAtomicInt>
#include <QPainter>
#include <QRasterWindow>
#include <QTest>
#include <thread>

namespace {
constexpr qint64 frameInterval = oneSecond / 30;

// A window filled with red, where the test puts it (the session has no window manager).
class RedWindow : public QRasterWindow {
protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(QRect(QPoint(), size()), Qt::red); }
};

CaptureConfiguration configuration(QSize size) {
    CaptureConfiguration result;
    result.size = size;
    result.framesPerSecond = 30;
    result.showsCursor = false;
    return result;
}

// (CaptureTarget has no default constructor: its variant's first case has default member
// initializers, which count only once CaptureTarget is complete.)
CaptureTarget x11Target(quint32 window = 0, QRect region = {}) {
    return CaptureTarget{QRectF(), 1.0, CaptureTarget::X11Window{window, region}};
}
} // namespace

// Screen capture through GStreamer on the session's X server (Xvfb, 1280×800): frames at the
// configured size and rate, of a region or a window, on the monotonic clock across a stop and a
// start.
class ScreenCaptureTest : public QObject {
    Q_OBJECT

    GStreamerScreenCapture m_capture{GStreamerScreenCapture::Screens::x11};

    std::unique_ptr<CaptureStream> makeStream(const CaptureTarget& target, QSize size) {
        return m_capture.makeStream(target, configuration(size));
    }

    // A red window at `geometry`, on screen.
    static std::unique_ptr<RedWindow> shownWindow(QRect geometry) {
        auto window = std::make_unique<RedWindow>();
        window->setGeometry(geometry);
        window->show();
        return QTest::qWaitForWindowExposed(window.get()) ? std::move(window) : nullptr;
    }

private slots:
    void framesComeAtTheConfiguredSizeAndRate() {
        const std::unique_ptr<CaptureStream> stream = makeStream(x11Target(), {640, 400});
        CaptureLog log(*stream);
        QVERIFY(log.capture(31));

        const std::vector<CaptureLog::Frame> frames = log.frames();
        std::vector<qint64> intervals;
        for (size_t i = 0; i < frames.size(); ++i) {
            const CaptureLog::Frame& frame = frames[i];
            QCOMPARE(frame.size, QSize(640, 400));
            QCOMPARE(frame.format, QImage::Format_RGB32);
            QVERIFY(frame.native);
            QVERIFY(!frame.status);
            // A time of the monotonic clock, at or a little before the frame came.
            QVERIFY(frame.presentation);
            QVERIFY(*frame.presentation <= frame.arrival);
            QVERIFY2(frame.arrival - *frame.presentation < mostLateness,
                     qPrintable(QString::number(frame.arrival - *frame.presentation)));
            if (i > 0) {
                intervals.push_back(*frame.presentation - *frames[i - 1].presentation);
            }
        }
        // At most 30 a second, and mostly right at it, each frame later than the one before. (ximagesrc
        // times its first few frames as they were taken, then stands on a grid of 1/30 s.)
        QVERIFY(*std::min_element(intervals.begin(), intervals.end()) > 0);
        const qint64 span = *frames.back().presentation - *frames.front().presentation;
        QVERIFY2(span >= qint64(intervals.size()) * (frameInterval - oneMillisecond),
                 qPrintable(QString::number(span)));
        std::nth_element(intervals.begin(), intervals.begin() + intervals.size() / 2, intervals.end());
        QVERIFY2(intervals[intervals.size() / 2] < frameInterval + frameInterval / 2,
                 qPrintable(QString::number(intervals[intervals.size() / 2])));
    }

    void aRegionIsCapturedAlone() {
        const std::unique_ptr<RedWindow> window = shownWindow({200, 150, 300, 200});
        QVERIFY(window);

        // Inside the window, scaled down to half.
        const std::unique_ptr<CaptureStream> inside = makeStream(x11Target(0, {220, 170, 200, 120}), {100, 60});
        CaptureLog insideLog(*inside);
        runTask(inside->startCapture());
        QVERIFY(insideLog.waitForFrame([](const CaptureLog::Frame& frame) {
            return frame.size == QSize(100, 60) && isRed(frame.topLeft) && isRed(frame.centre) &&
                   isRed(frame.bottomRight);
        }));

        // Beside it: none of the window.
        const std::unique_ptr<CaptureStream> beside = makeStream(x11Target(0, {600, 150, 200, 120}), {200, 120});
        CaptureLog besideLog(*beside);
        QVERIFY(besideLog.capture(3));
        for (const CaptureLog::Frame& frame : besideLog.frames()) {
            QCOMPARE(frame.size, QSize(200, 120));
            QVERIFY(!isRed(frame.topLeft) && !isRed(frame.centre) && !isRed(frame.bottomRight));
        }
    }

    void aWindowIsCapturedByItsId() {
        const std::unique_ptr<RedWindow> window = shownWindow({700, 500, 240, 160});
        QVERIFY(window);
        const std::unique_ptr<CaptureStream> stream = makeStream(x11Target(quint32(window->winId())), {120, 80});
        CaptureLog log(*stream);
        runTask(stream->startCapture());
        QVERIFY(log.waitForFrame([](const CaptureLog::Frame& frame) {
            return frame.size == QSize(120, 80) && isRed(frame.topLeft) && isRed(frame.centre) &&
                   isRed(frame.bottomRight);
        }));
    }

    void timesGoOnAcrossAStopAndAStart() {
        const std::unique_ptr<CaptureStream> stream = makeStream(x11Target(), {320, 200});
        CaptureLog log(*stream);
        QVERIFY(log.capture(3));
        const size_t before = log.frames().size();
        const qint64 stoppedAt = monotonicNow();
        QVERIFY(log.capture(3));

        // The time the stream stood still is kept whole.
        const std::vector<CaptureLog::Frame> frames = log.frames();
        QVERIFY(*frames[before].presentation > stoppedAt);
        for (size_t i = 1; i < frames.size(); ++i) {
            QVERIFY(*frames[i].presentation > *frames[i - 1].presentation);
        }
    }

    void stoppingTwiceDoesNothing() {
        const std::unique_ptr<CaptureStream> stream = makeStream(x11Target(), {320, 200});
        CaptureLog log(*stream);
        // Never started.
        runTask(stream->stopCapture());
        QVERIFY(log.capture(1));
        runTask(stream->stopCapture());
        // And it starts again.
        QVERIFY(log.capture(1));
    }

    void theEndOfTheStreamWaitsForItsOutputs() {
        std::unique_ptr<CaptureStream> stream = makeStream(x11Target(), {320, 200});
        QAtomicInt calls = 0;
        QAtomicInt inside = 0;
        stream->addScreenOutput([&](const VideoFrame&) {
            inside.storeRelaxed(1);
            // A slow receiver.
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            calls.fetchAndAddRelaxed(1);
            inside.storeRelaxed(0);
        });
        runTask(stream->startCapture());
        QVERIFY(QTest::qWaitFor([&] { return calls.loadRelaxed() >= 3; }));
        stream.reset();
        QCOMPARE(inside.loadRelaxed(), 0);
    }

    void aCaptureThatCannotStartFails() {
        const EnvironmentOverride display("DISPLAY", QByteArray(":987"));
        const std::unique_ptr<CaptureStream> stream = makeStream(x11Target(), {320, 200});
        try {
            runTask(stream->startCapture());
            QFAIL("the capture started without a display");
        } catch (const ScreenRecordingError& error) {
            QVERIFY(error.is<ScreenRecordingError::WriterFailed>());
            QVERIFY2(error.errorDescription()->contains(QStringLiteral("The screen capture did not start: ")),
                     error.what());
        }
        // Stopping what never started is fine too.
        runTask(stream->stopCapture());
    }

    void accessNeedsTheDisplay() {
        runTask(m_capture.checkAccess());
        {
            const EnvironmentOverride display("DISPLAY", std::nullopt);
            try {
                runTask(m_capture.checkAccess());
                QFAIL("access without a display");
            } catch (const ScreenRecordingError& error) {
                QVERIFY(error.is<ScreenRecordingError::PermissionDenied>());
                QVERIFY2(error.errorDescription()->startsWith(QStringLiteral("The screen cannot be captured")),
                         error.what());
            }
            // PipeWire's screens are the portal's to grant.
            GStreamerScreenCapture pipeWire(GStreamerScreenCapture::Screens::pipeWire);
            runTask(pipeWire.checkAccess());
        }
        runTask(m_capture.checkAccess());
    }
};

NORVANEBAR_TEST_MAIN(ScreenCaptureTest)
#include "ScreenCaptureTest.moc"
