#include "core/recording/CameraOverlayCompositor.h"
#include "core/recording/ScreenRecordingError.h"
#include "support/ClientTesting.h"
#include "support/FacecamTesting.h"
#include "support/RunTask.h"
#include "support/TestMain.h"

#include <QTest>

using ClientTesting::HeldSleeper;
using ClientTesting::RecordingSleeper;
using FacecamTesting::withBackground;

namespace {
// What the test's camera does and what was asked of it; shared with the feed the compositor owns.
struct Camera {
    QImage frame;
    // isRunning() says no this many times after a start.
    int pollsBeforeRunning = 0;
    bool everRuns = true;
    std::optional<ScreenRecordingError> failure;
    bool started = false;
    int starts = 0;
    int polls = 0;
};

class TestCameraFeed : public CameraFeed {
public:
    explicit TestCameraFeed(std::shared_ptr<Camera> camera)
        : m_camera(std::move(camera)) {}

    void start() override {
        ++m_camera->starts;
        if (m_camera->failure) {
            throw *m_camera->failure;
        }
        m_camera->started = true;
        m_camera->polls = 0;
    }
    void stop() override { m_camera->started = false; }
    bool isRunning() const override {
        ++m_camera->polls;
        return m_camera->started && m_camera->everRuns && m_camera->polls > m_camera->pollsBeforeRunning;
    }
    QImage latestFrame() const override { return m_camera->started ? m_camera->frame : QImage(); }

private:
    std::shared_ptr<Camera> m_camera;
};

// The person finder of the test: it counts its calls and keeps the images it was given.
struct Segmentation {
    bool findsPerson = true;
    int calls = 0;
    QList<QImage> images;

    static PersonSegmenter of(std::shared_ptr<Segmentation> segmentation) {
        return [segmentation](const QImage& image) -> std::optional<QImage> {
            ++segmentation->calls;
            segmentation->images.append(image);
            if (!segmentation->findsPerson) {
                return std::nullopt;
            }
            QImage mask(image.size(), QImage::Format_Grayscale8);
            mask.fill(Qt::white);
            return mask;
        };
    }
};

// A camera picture, red on the left half and blue on the right, as the camera delivers it.
QImage cameraFrame() {
    QImage frame(QSize(640, 480), QImage::Format_RGB32);
    frame.fill(Qt::blue);
    for (int y = 0; y < 480; ++y) {
        for (int x = 0; x < 320; ++x) {
            frame.setPixel(x, y, qRgb(255, 0, 0));
        }
    }
    return frame;
}

const QSize screen(1920, 1080);
} // namespace

// The compositor over a camera of the test's own: starting and its time limit, which overlay
// requests look for the person and what they keep, and the overlay the steps make.
class CameraOverlayCompositorTest : public QObject {
    Q_OBJECT

    std::shared_ptr<Camera> m_camera;
    std::shared_ptr<Segmentation> m_segmentation;
    RecordingSleeper m_sleeper;

    std::unique_ptr<CameraOverlayCompositor> compositor(FacecamStyle style = FacecamStyle()) {
        return std::make_unique<CameraOverlayCompositor>(std::move(style), std::make_unique<TestCameraFeed>(m_camera),
                                                         Segmentation::of(m_segmentation), m_sleeper.sleeper());
    }

    std::unique_ptr<CameraOverlayCompositor> started(FacecamStyle style = FacecamStyle()) {
        std::unique_ptr<CameraOverlayCompositor> made = compositor(std::move(style));
        runTask(made->start());
        return made;
    }

    // The requests, numbered from `first`, on which the person was looked for.
    QList<int> segmentedRequests(CameraOverlayCompositor& compositor, int first, int last) const {
        QList<int> segmented;
        for (int request = first; request <= last; ++request) {
            const int before = m_segmentation->calls;
            compositor.makePipImage(screen);
            if (m_segmentation->calls > before) {
                segmented.append(request);
            }
        }
        return segmented;
    }

    // One overlay of each, the same.
    static bool sameOverlay(CameraOverlayCompositor& one, CameraOverlayCompositor& other) {
        const std::optional<PlacedImage> first = one.makePipImage(screen);
        const std::optional<PlacedImage> second = other.makePipImage(screen);
        return first && second && first->extent == second->extent && first->pixels == second->pixels;
    }

    static std::optional<ScreenRecordingError> failureOf(QCoro::Task<> task) {
        try {
            runTask(std::move(task));
        } catch (const ScreenRecordingError& error) {
            return error;
        }
        return std::nullopt;
    }

private slots:
    void init() {
        m_camera = std::make_shared<Camera>();
        m_camera->frame = cameraFrame();
        m_segmentation = std::make_shared<Segmentation>();
        m_sleeper = RecordingSleeper();
    }

    void startWaitsForTheCameraAskingEvery50Milliseconds() {
        m_camera->pollsBeforeRunning = 3;
        std::unique_ptr<CameraOverlayCompositor> overlay = compositor();
        QVERIFY(!overlay->isRunning());
        runTask(overlay->start());
        QVERIFY(overlay->isRunning());
        QCOMPARE(m_sleeper.waits(), QList<std::chrono::milliseconds>(3, std::chrono::milliseconds(50)));
        QCOMPARE(m_camera->polls, 4);
    }

    void aCameraThatNeverRunsFailsAfter795SecondsOfWaiting() {
        m_camera->everRuns = false;
        std::unique_ptr<CameraOverlayCompositor> overlay = compositor();
        const std::optional<ScreenRecordingError> failure = failureOf(overlay->start());
        QVERIFY(failure);
        QCOMPARE(failure->errorDescription(), QStringLiteral("Recording failed: Camera failed to start."));
        QCOMPARE(m_sleeper.waits(), QList<std::chrono::milliseconds>(159, std::chrono::milliseconds(50)));
        QCOMPARE(m_camera->polls, 160);
        QVERIFY(!overlay->isRunning());
        QCOMPARE(overlay->makePipImage(screen), std::nullopt);
    }

    void theCamerasOwnFailureReachesTheCaller() {
        m_camera->failure = ScreenRecordingError::writerFailed(QStringLiteral("No camera found."));
        std::unique_ptr<CameraOverlayCompositor> overlay = compositor();
        QCOMPARE(failureOf(overlay->start()), m_camera->failure);
        QVERIFY(m_sleeper.waits().isEmpty());
        QVERIFY(!overlay->isRunning());
    }

    void startingWhileRunningDoesNothing() {
        std::unique_ptr<CameraOverlayCompositor> overlay = started();
        runTask(overlay->start());
        QCOMPARE(m_camera->starts, 1);
    }

    void aCompositorGoneWhileWaitingEndsItsStartAsCancelled() {
        m_camera->everRuns = false;
        HeldSleeper held;
        auto overlay =
            std::make_unique<CameraOverlayCompositor>(FacecamStyle(), std::make_unique<TestCameraFeed>(m_camera),
                                                      Segmentation::of(m_segmentation), held.sleeper());
        QCoro::Task<> starting = overlay->start();
        QCOMPARE(held.held(), 1);
        overlay.reset();
        held.release();
        const std::optional<ScreenRecordingError> failure = failureOf(std::move(starting));
        QVERIFY(failure && failure->is<ScreenRecordingError::Cancelled>());
        QCOMPARE(m_camera->polls, 1);
    }

    void noOverlayWhileStoppedHiddenOrBeforeTheFirstFrame() {
        std::unique_ptr<CameraOverlayCompositor> overlay = compositor();
        QCOMPARE(overlay->makePipImage(screen), std::nullopt);
        runTask(overlay->start());
        QVERIFY(overlay->makePipImage(screen));

        FacecamStyle hidden;
        hidden.isVisible = false;
        overlay->setStyle(hidden);
        QCOMPARE(overlay->style(), hidden);
        QCOMPARE(overlay->makePipImage(screen), std::nullopt);
        overlay->setStyle(FacecamStyle());

        const QImage frame = std::exchange(m_camera->frame, QImage());
        QCOMPARE(overlay->makePipImage(screen), std::nullopt);
        m_camera->frame = frame;

        overlay->stop();
        QVERIFY(!overlay->isRunning());
        QVERIFY(!m_camera->started);
        QCOMPARE(overlay->makePipImage(screen), std::nullopt);
    }

    // The overlay lies left of the origin when the rounding crops it at the origin: nothing is left.
    void theOverlayAsTheStepsStandIsEmpty_data() {
        QTest::addColumn<double>("cornerRadius");
        QTest::addColumn<FacecamBackgroundKind>("background");
        QTest::newRow("square") << 0.0 << FacecamBackgroundKind::none;
        QTest::newRow("rounded") << 0.35 << FacecamBackgroundKind::none;
        QTest::newRow("circle") << 1.0 << FacecamBackgroundKind::none;
        QTest::newRow("circle, blurred behind a person") << 1.0 << FacecamBackgroundKind::blur;
        QTest::newRow("square, blurred behind a person") << 0.0 << FacecamBackgroundKind::blur;
    }
    void theOverlayAsTheStepsStandIsEmpty() {
        QFETCH(double, cornerRadius);
        QFETCH(FacecamBackgroundKind, background);
        FacecamStyle style = withBackground(background);
        style.cornerRadius = cornerRadius;
        std::unique_ptr<CameraOverlayCompositor> overlay = started(style);
        const std::optional<PlacedImage> image = overlay->makePipImage(screen);
        QVERIFY(image);
        QVERIFY(image->isEmpty());
        QVERIFY(image->extent.isEmpty());
    }

    void theBackgroundNoneNeverLooksForThePersonNorKeepsAMask() {
        std::unique_ptr<CameraOverlayCompositor> overlay = started(withBackground(FacecamBackgroundKind::none));
        QCOMPARE(segmentedRequests(*overlay, 1, 5), QList<int>());
        // Request 6 is not one of every third: only the missing mask makes it look.
        overlay->setStyle(withBackground(FacecamBackgroundKind::blur));
        QCOMPARE(segmentedRequests(*overlay, 6, 6), QList<int>{6});
    }

    void thePersonIsLookedForOnEveryThirdRequestFromTheFirst() {
        std::unique_ptr<CameraOverlayCompositor> overlay = started(withBackground(FacecamBackgroundKind::blur));
        QCOMPARE(segmentedRequests(*overlay, 1, 10), (QList<int>{1, 4, 7, 10}));
    }

    void withBlurAndNobodyFoundTheOverlayIsThePlainCameraAndTheNextRequestLooksAgain() {
        m_segmentation->findsPerson = false;
        std::unique_ptr<CameraOverlayCompositor> blurred = started(withBackground(FacecamBackgroundKind::blur));
        std::unique_ptr<CameraOverlayCompositor> plain = started(withBackground(FacecamBackgroundKind::none));
        for (int request = 1; request <= 3; ++request) {
            QVERIFY(sameOverlay(*blurred, *plain));
            QCOMPARE(m_segmentation->calls, request);
        }
    }

    void aMaskLostOnADueRequestIsLookedForOnTheNext() {
        std::unique_ptr<CameraOverlayCompositor> overlay = started(withBackground(FacecamBackgroundKind::blur));
        QCOMPARE(segmentedRequests(*overlay, 1, 3), QList<int>{1});
        m_segmentation->findsPerson = false;
        QCOMPARE(segmentedRequests(*overlay, 4, 5), (QList<int>{4, 5}));
        m_segmentation->findsPerson = true;
        QCOMPARE(segmentedRequests(*overlay, 6, 8), (QList<int>{6, 7}));
    }

    void stoppingForgetsTheMask() {
        std::unique_ptr<CameraOverlayCompositor> overlay = started(withBackground(FacecamBackgroundKind::blur));
        QCOMPARE(segmentedRequests(*overlay, 1, 2), QList<int>{1});
        overlay->stop();
        runTask(overlay->start());
        QCOMPARE(segmentedRequests(*overlay, 3, 3), QList<int>{3});
    }

    void thePersonIsLookedForInTheWholeCameraPictureTheRightWayRound() {
        std::unique_ptr<CameraOverlayCompositor> overlay = started(withBackground(FacecamBackgroundKind::customImage));
        overlay->makePipImage(screen);
        QCOMPARE(m_segmentation->images.size(), 1);
        const QImage& seen = m_segmentation->images.constFirst();
        QCOMPARE(seen.size(), QSize(640, 480));
        // The camera's mirror image turned back: blue on the left.
        QCOMPARE(seen.pixel(0, 240), qRgb(0, 0, 255));
        QCOMPARE(seen.pixel(639, 240), qRgb(255, 0, 0));
    }

    void aMissingCustomPictureLeavesTheCameraBackgroundWithoutFailing() {
        FacecamStyle style = withBackground(FacecamBackgroundKind::customImage);
        style.customImagePath = QStringLiteral("/nonexistent/norvanebar/beach.png");
        std::unique_ptr<CameraOverlayCompositor> overlay = started(style);
        std::unique_ptr<CameraOverlayCompositor> plain = started(withBackground(FacecamBackgroundKind::none));
        for (int request = 1; request <= 3; ++request) {
            QVERIFY(sameOverlay(*overlay, *plain));
        }
        QCOMPARE(m_segmentation->calls, 1);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(CameraOverlayCompositorTest)
#include "CameraOverlayCompositorTest.moc"
