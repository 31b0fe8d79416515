#include "desktop/recording/FacecamPreviewWindow.h"

#include "core/recording/FacecamRenderer.h"
#include "support/TestMain.h"

#include <QGuiApplication>
#include <QPainter>
#include <QRasterWindow>
#include <QScreen>
#include <QTest>

namespace {
// A camera whose picture the test sets.
class Camera : public FacecamOverlay {
public:
    QCoro::Task<> start() override { co_return; }
    void stop() override {}
    bool isRunning() const override { return true; }
    void setStyle(const FacecamStyle&) override {}
    std::optional<PlacedImage> makePipImage(QSize) override { return std::nullopt; }
    QImage latestCameraFrame() const override { return picture; }

    QImage picture;
};

// A 16:9 picture, one colour on its left half and another on its right.
QImage halves(const QColor& left, const QColor& right) {
    QImage picture(160, 90, QImage::Format_RGB32);
    picture.fill(left);
    QPainter(&picture).fillRect(80, 0, 80, 90, right);
    return picture;
}

// A window over the whole screen in one colour, which shows where the preview lets it through.
class Backdrop : public QRasterWindow {
protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(QRect(QPoint(), size()), Qt::green); }
};

bool looksLike(QRgb pixel, const QColor& colour) {
    return std::abs(qRed(pixel) - colour.red()) < 40 && std::abs(qGreen(pixel) - colour.green()) < 40 &&
           std::abs(qBlue(pixel) - colour.blue()) < 40;
}
} // namespace

// The camera's preview on the test's X display, read back from the screen: its place in the
// style's corner, its shape, the mirrored picture that fills it, the camera's newer pictures, and
// its going.
class FacecamPreviewWindowTest : public QObject {
    Q_OBJECT

    Camera m_camera;
    Backdrop m_backdrop;
    std::unique_ptr<FacecamPreviewWindow> m_preview;

    static QRect placeOf(const FacecamStyle& style) {
        return FacecamRenderer::livePreviewScreenFrame(style, QGuiApplication::primaryScreen()->availableGeometry())
            .toRect();
    }
    // The pixel at `point` of the preview's place, as the screen shows it.
    static QRgb shownAt(const QRect& place, QPoint point) {
        const QImage screen = QGuiApplication::primaryScreen()
                                  ->grabWindow(0, place.x(), place.y(), place.width(), place.height())
                                  .toImage();
        return screen.pixel(point);
    }

private slots:
    void initTestCase() {
        m_backdrop.setGeometry(QGuiApplication::primaryScreen()->geometry());
        m_backdrop.show();
        QVERIFY(QTest::qWaitForWindowExposed(&m_backdrop));
    }

    void init() {
        m_camera.picture = halves(Qt::red, Qt::blue);
        m_preview = std::make_unique<FacecamPreviewWindow>();
    }

    void cleanup() { m_preview.reset(); }

    void aRoundPreviewStandsInTheStylesCornerMirrored() {
        FacecamStyle style;
        style.corner = FacecamCorner::topLeft;
        m_preview->present(m_camera, style);
        QVERIFY(QTest::qWaitForWindowExposed(m_preview.get()));
        const QRect place = placeOf(style);
        QCOMPARE(m_preview->geometry(), place);
        QVERIFY(m_preview->flags().testFlag(Qt::WindowTransparentForInput));
        QVERIFY(m_preview->flags().testFlag(Qt::WindowDoesNotAcceptFocus));
        QVERIFY(m_preview->flags().testFlag(Qt::WindowStaysOnTopHint));
        // The picture's right half shows on the left, as in a mirror.
        QTRY_VERIFY(looksLike(shownAt(place, {place.width() / 4, place.height() / 2}), Qt::blue));
        QVERIFY(looksLike(shownAt(place, {place.width() * 3 / 4, place.height() / 2}), Qt::red));
        // Round: the backdrop shows in its corners.
        QVERIFY(looksLike(shownAt(place, {1, 1}), Qt::green));
        QVERIFY(looksLike(shownAt(place, {place.width() - 2, place.height() - 2}), Qt::green));
    }

    void aSquarePreviewIsFilledToItsCorners() {
        FacecamStyle style;
        style.cornerRadius = 0;
        style.corner = FacecamCorner::bottomRight;
        m_preview->present(m_camera, style);
        QVERIFY(QTest::qWaitForWindowExposed(m_preview.get()));
        const QRect place = placeOf(style);
        QCOMPARE(m_preview->geometry(), place);
        QTRY_VERIFY(looksLike(shownAt(place, {1, 1}), Qt::blue));
        QVERIFY(looksLike(shownAt(place, {place.width() - 2, place.height() - 2}), Qt::red));
    }

    void theCamerasNewerPicturesShow() {
        const FacecamStyle style;
        m_preview->present(m_camera, style);
        QVERIFY(QTest::qWaitForWindowExposed(m_preview.get()));
        const QRect place = placeOf(style);
        const QPoint centre(place.width() / 2, place.height() / 2);
        QTRY_VERIFY(!looksLike(shownAt(place, centre), Qt::yellow));
        m_camera.picture = halves(Qt::yellow, Qt::yellow);
        QTRY_VERIFY(looksLike(shownAt(place, centre), Qt::yellow));
    }

    void aDismissOrAHiddenStyleTakesThePreviewAway() {
        FacecamStyle style;
        m_preview->present(m_camera, style);
        QVERIFY(m_preview->isVisible());
        m_preview->dismiss();
        QVERIFY(!m_preview->isVisible());
        style.isVisible = false;
        m_preview->present(m_camera, style);
        QVERIFY(!m_preview->isVisible());
    }
};

NORVANEBAR_TEST_MAIN(FacecamPreviewWindowTest)
#include "FacecamPreviewWindowTest.moc"
