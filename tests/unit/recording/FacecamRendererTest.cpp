#include "core/recording/FacecamRenderer.h"
#include "core/recording/GaussianBlur.h"
#include "support/FacecamTesting.h"
#include "support/TemporaryFolderTesting.h"
#include "support/TestMain.h"

#include <QTemporaryDir>
#include <QTest>
#include <cmath>

using FacecamTesting::pattern;
using FacecamTesting::solid;
using FacecamTesting::withBackground;

namespace {

// Bands of colour across a picture, `bandWidth` pixels each: red, green, blue, yellow from the left,
// or from the top when `rows`.
QImage bands(int bandWidth, bool rows) {
    const QList<QColor> colors{Qt::red, Qt::green, Qt::blue, Qt::yellow};
    const QSize size = rows ? QSize(bandWidth * 2, bandWidth * 4) : QSize(bandWidth * 4, bandWidth / 2);
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            image.setPixelColor(x, y, colors.at((rows ? y : x) / bandWidth));
        }
    }
    return image;
}

// How much of a pixel's alpha is missing, from 0 (opaque) to 1.
double missing(QRgb pixel) {
    return (255 - qAlpha(pixel)) / 255.0;
}

// The alpha missing from the square of `reach` pixels at a corner of `image`.
double missingAtCorner(const QImage& image, int reach, bool right, bool bottom) {
    double sum = 0;
    for (int y = 0; y < reach; ++y) {
        for (int x = 0; x < reach; ++x) {
            sum += missing(image.pixel(right ? image.width() - 1 - x : x, bottom ? image.height() - 1 - y : y));
        }
    }
    return sum;
}

bool near(QRgb pixel, QColor color, int tolerance = 8) {
    return std::abs(qRed(pixel) - color.red()) <= tolerance && std::abs(qGreen(pixel) - color.green()) <= tolerance &&
           std::abs(qBlue(pixel) - color.blue()) <= tolerance;
}

// A mask that shows only the background.
PlacedImage blackMask(const QRectF& extent) {
    return {solid(QSize(1, 1), Qt::black), extent};
}
} // namespace

// The image work of the camera overlay: rounded corners and circles, the person's mask, blurred and
// replaced backgrounds, and where the floating preview stands.
class FacecamRendererTest : public QObject {
    Q_OBJECT

    const QRectF m_square{0, 0, 194, 194};

private slots:
    void mirroringEndsBetweenMinusTwiceAndMinusOnceTheWidth() {
        const QImage pixels = pattern(QSize(64, 48));
        const PlacedImage mirrored = FacecamRenderer::mirrored(PlacedImage::atOrigin(pixels));
        QCOMPARE(mirrored.extent, QRectF(-128, 0, 64, 48));
        QCOMPARE(mirrored.pixels, pixels.mirrored(true, false));
    }

    void aCornerRadiusOfZeroGivesTheSquareCroppedWithoutABlend_data() {
        QTest::addColumn<double>("radius");
        QTest::newRow("0") << 0.0;
        QTest::newRow("half a pixel") << 0.5;
    }
    void aCornerRadiusOfZeroGivesTheSquareCroppedWithoutABlend() {
        QFETCH(double, radius);
        const QImage pixels = pattern(QSize(200, 200));
        const PlacedImage square = FacecamRenderer::applyRoundedMask(PlacedImage::atOrigin(pixels), m_square, radius);
        QCOMPARE(square.extent, m_square);
        // Every pixel as it was, the corners opaque: the lowest 194 rows, the first 194 columns.
        QCOMPARE(square.pixels, pixels.copy(0, 6, 194, 194));
    }

    void aCornerRadiusOf035AtSide194RoundsBy3395() {
        const double radius = 194 * 0.5 * 0.35;
        QCOMPARE(radius, 33.95);
        const PlacedImage rounded =
            FacecamRenderer::applyRoundedMask(PlacedImage::atOrigin(solid(QSize(194, 194), Qt::red)), m_square, radius);
        QCOMPARE(rounded.extent, m_square);
        // Each corner lacks the area between a square of the radius and its quarter circle.
        const double lacking = radius * radius * (1 - M_PI / 4);
        for (const bool right : {false, true}) {
            for (const bool bottom : {false, true}) {
                const double measured = missingAtCorner(rounded.pixels, 60, right, bottom);
                QVERIFY2(std::abs(measured - lacking) < 3, qPrintable(QString::number(measured)));
            }
        }
        QCOMPARE(rounded.pixels.pixel(0, 0), qRgba(0, 0, 0, 0));
        QCOMPARE(rounded.pixels.pixel(97, 0), qRgb(255, 0, 0));
        QCOMPARE(rounded.pixels.pixel(0, 97), qRgb(255, 0, 0));
        QCOMPARE(rounded.pixels.pixel(97, 97), qRgb(255, 0, 0));
    }

    void aCornerRadiusOfOneIsACircleFadingOverOnePixelBeyondHalfTheSide() {
        const double radius = 194 * 0.5 * 1.0;
        const PlacedImage circle = FacecamRenderer::applyRoundedMask(
            PlacedImage::atOrigin(solid(QSize(194, 194), Qt::white)), m_square, radius);
        QCOMPARE(circle.extent, m_square);
        int fading = 0;
        for (int y = 0; y < 194; ++y) {
            for (int x = 0; x < 194; ++x) {
                const double distance = std::hypot(x + 0.5 - 97, y + 0.5 - 97);
                const double expected = 255 * (1 - std::clamp(distance - 97, 0.0, 1.0));
                const int alpha = qAlpha(circle.pixels.pixel(x, y));
                QVERIFY2(std::abs(alpha - expected) <= 1.5,
                         qPrintable(QStringLiteral("%1,%2: %3 for %4").arg(x).arg(y).arg(alpha).arg(expected)));
                fading += alpha > 0 && alpha < 255 ? 1 : 0;
            }
        }
        QVERIFY(fading > 100);
    }

    void halfAPixelShortOfHalfTheSideIsStillTheCircleOfHalfTheSide() {
        const PlacedImage image = PlacedImage::atOrigin(solid(QSize(194, 194), Qt::white));
        const QImage circle = FacecamRenderer::applyRoundedMask(image, m_square, 97).pixels;
        QCOMPARE(FacecamRenderer::applyRoundedMask(image, m_square, 96.5).pixels, circle);
        QVERIFY(FacecamRenderer::applyRoundedMask(image, m_square, 96.4).pixels != circle);
    }

    void theRoundedMaskIsWhiteInsideAndClearAtTheCorners() {
        const PlacedImage mask = FacecamRenderer::roundedRectMaskImage(QRectF(0, 0, 100, 60), 12);
        QCOMPARE(mask.extent, QRectF(0, 0, 100, 60));
        QCOMPARE(mask.pixels.size(), QSize(100, 60));
        for (const QPoint corner : {QPoint(0, 0), QPoint(99, 0), QPoint(0, 59), QPoint(99, 59)}) {
            QCOMPARE(qAlpha(mask.pixels.pixel(corner)), 0);
        }
        for (const QPoint inside : {QPoint(50, 30), QPoint(50, 0), QPoint(0, 30), QPoint(99, 30), QPoint(50, 59)}) {
            QCOMPARE(mask.pixels.pixel(inside), qRgb(255, 255, 255));
        }
        const double lacking = 12 * 12 * (1 - M_PI / 4);
        QVERIFY(std::abs(missingAtCorner(mask.pixels, 20, false, false) - lacking) < 2);
        QVERIFY(std::abs(missingAtCorner(mask.pixels, 20, true, true) - lacking) < 2);
    }

    void theRoundedMaskOfAFractionalRectangleIsDrawnRoundedUpAtItsOrigin() {
        const PlacedImage mask = FacecamRenderer::roundedRectMaskImage(QRectF(10, 20, 100.5, 60.2), 12);
        QCOMPARE(mask.pixels.size(), QSize(101, 61));
        QCOMPARE(mask.extent, QRectF(10, 20, 101, 61));
        // The rectangle stands on the bitmap's bottom edge: the top row is mostly above it.
        QVERIFY(qAlpha(mask.pixels.pixel(50, 0)) < 64);
        QCOMPARE(mask.pixels.pixel(50, 60), qRgb(255, 255, 255));
    }

    void aRectangleTooSmallToDrawGivesAWhiteMask() {
        const PlacedImage mask = FacecamRenderer::roundedRectMaskImage(QRectF(5, 5, 0, 40), 3);
        QCOMPARE(mask.extent, QRectF(5, 5, 0, 40));
        QCOMPARE(mask.pixels.pixel(0, 0), qRgb(255, 255, 255));
    }

    void thePersonMaskIsMirroredAndScaledToTheExtent() {
        QImage found(QSize(8, 4), QImage::Format_Grayscale8);
        found.fill(0);
        for (int y = 0; y < 4; ++y) {
            for (int x = 0; x < 4; ++x) {
                found.setPixelColor(x, y, Qt::white); // the person on the left
            }
        }
        const PlacedImage camera = FacecamRenderer::mirrored(PlacedImage::atOrigin(pattern(QSize(32, 16))));
        QList<QImage> seen;
        const PersonSegmenter segmenter = [&seen, found](const QImage& image) {
            seen.append(image);
            return std::optional(found);
        };
        const std::optional<PlacedImage> mask =
            FacecamRenderer::generatePersonMask(camera, QRectF(-20, 0, 10, 10), segmenter);
        QVERIFY(mask);
        QCOMPARE(seen, QList<QImage>{camera.pixels});
        QCOMPARE(mask->extent, QRectF(-20, 0, 10, 10));
        QCOMPARE(qGray(mask->pixels.pixel(0, 0)), 0);
        QCOMPARE(qGray(mask->pixels.pixel(7, 0)), 255);
    }

    void nobodyFoundGivesNoMask() {
        const PlacedImage camera = PlacedImage::atOrigin(pattern(QSize(32, 16)));
        QCOMPARE(
            FacecamRenderer::generatePersonMask(camera, camera.extent, PersonSegmenters::unavailable()).has_value(),
            false);
    }

    void theBlurChangesPixelsAndKeepsTheEdgesOpaque() {
        QImage halves = solid(QSize(64, 64), Qt::black);
        for (int y = 0; y < 64; ++y) {
            for (int x = 32; x < 64; ++x) {
                halves.setPixel(x, y, qRgb(255, 255, 255));
            }
        }
        const PlacedImage image = PlacedImage::atOrigin(halves);
        FacecamStyle style = withBackground(FacecamBackgroundKind::blur);
        style.blurRadius = 4;
        const PlacedImage blurred = FacecamRenderer::applyBackground(image, blackMask(image.extent), style);
        QCOMPARE(blurred.extent, image.extent);
        const QImage& pixels = blurred.pixels;
        QVERIFY(qGray(pixels.pixel(31, 32)) > 40 && qGray(pixels.pixel(31, 32)) < 215);
        QVERIFY(qGray(pixels.pixel(32, 32)) > 40 && qGray(pixels.pixel(32, 32)) < 215);
        QVERIFY(qGray(pixels.pixel(26, 32)) > 0);
        QCOMPARE(qGray(pixels.pixel(0, 32)), 0);
        QCOMPARE(qGray(pixels.pixel(63, 32)), 255);
        for (const QPoint border : {QPoint(0, 0), QPoint(63, 0), QPoint(0, 63), QPoint(63, 63), QPoint(40, 0)}) {
            QCOMPARE(qAlpha(pixels.pixel(border)), 255);
        }
        // A smaller radius reaches less far.
        style.blurRadius = 1;
        const QImage sharper = FacecamRenderer::applyBackground(image, blackMask(image.extent), style).pixels;
        QCOMPARE(qGray(sharper.pixel(26, 32)), 0);
    }

    // A Gaussian of standard deviation σ spreads a black-to-white edge to 16% of white one σ before it
    // and to 84% one σ after it.
    void theBlurSpreadsAnEdgeByOneRadiusEachWay() {
        QImage halves = solid(QSize(128, 8), Qt::black);
        for (int y = 0; y < 8; ++y) {
            for (int x = 64; x < 128; ++x) {
                halves.setPixel(x, y, qRgb(255, 255, 255));
            }
        }
        const QImage blurred = gaussianBlurred(halves, 6);
        QCOMPARE(blurred.size(), halves.size());
        const auto firstReaching = [&blurred](double share) {
            int x = 0;
            while (x < blurred.width() && qGray(blurred.pixel(x, 4)) < share * 255) {
                ++x;
            }
            return x;
        };
        // Pixels are taken at their middles: the edge lies at 64, pixel x at x + 0.5.
        QVERIFY2(std::abs(firstReaching(0.1587) - 58) <= 1, qPrintable(QString::number(firstReaching(0.1587))));
        QVERIFY2(std::abs(firstReaching(0.5) - 64) <= 1, qPrintable(QString::number(firstReaching(0.5))));
        QVERIFY2(std::abs(firstReaching(0.8413) - 70) <= 1, qPrintable(QString::number(firstReaching(0.8413))));
        QCOMPARE(gaussianBlurred(halves, 0), halves);
    }

    void thePersonStaysSharpWhereTheMaskIsWhite() {
        const PlacedImage image = PlacedImage::atOrigin(pattern(QSize(40, 40)));
        const PlacedImage white{solid(QSize(1, 1), Qt::white), image.extent};
        const PlacedImage person =
            FacecamRenderer::applyBackground(image, white, withBackground(FacecamBackgroundKind::blur));
        QCOMPARE(person.pixels, image.pixels);
    }

    void aCustomPictureFillsTheImageCentredAndCropped_data() {
        QTest::addColumn<bool>("rows");
        QTest::addColumn<QPoint>("first");
        QTest::addColumn<QPoint>("second");
        // 10 × 20 into 100 × 50: ten times, 100 × 200, of which the middle quarter of the rows shows.
        QTest::newRow("taller picture") << true << QPoint(50, 12) << QPoint(50, 37);
        // 40 × 5 into 100 × 50: ten times, 400 × 50, of which the middle quarter of the columns shows.
        QTest::newRow("wider picture") << false << QPoint(6, 25) << QPoint(93, 25);
    }
    void aCustomPictureFillsTheImageCentredAndCropped() {
        QFETCH(bool, rows);
        QFETCH(QPoint, first);
        QFETCH(QPoint, second);
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("beach.png"));
        QVERIFY(bands(rows ? 5 : 10, rows).save(path));
        const PlacedImage image = PlacedImage::atOrigin(solid(QSize(100, 50), Qt::black));
        FacecamStyle style = withBackground(FacecamBackgroundKind::customImage);
        style.customImagePath = path;
        const PlacedImage replaced = FacecamRenderer::applyBackground(image, blackMask(image.extent), style);
        QCOMPARE(replaced.extent, image.extent);
        // Only the picture's green and blue bands show, one in each half.
        QVERIFY2(near(replaced.pixels.pixel(first), Qt::green),
                 qPrintable(QColor(replaced.pixels.pixel(first)).name()));
        QVERIFY2(near(replaced.pixels.pixel(second), Qt::blue),
                 qPrintable(QColor(replaced.pixels.pixel(second)).name()));
    }

    void aMissingOrUnreadablePictureLeavesTheCameraBackground_data() {
        QTest::addColumn<QString>("name");
        QTest::newRow("no path") << QString();
        QTest::newRow("missing file") << QStringLiteral("gone.png");
        QTest::newRow("not a picture") << QStringLiteral("notes.png");
    }
    void aMissingOrUnreadablePictureLeavesTheCameraBackground() {
        QFETCH(QString, name);
        QTemporaryDir folder;
        writtenFile(folder.filePath(QStringLiteral("notes.png")), "not a picture");
        const PlacedImage image = PlacedImage::atOrigin(pattern(QSize(40, 30)));
        FacecamStyle style = withBackground(FacecamBackgroundKind::customImage);
        if (!name.isEmpty()) {
            style.customImagePath = folder.filePath(name);
        }
        const PlacedImage kept = FacecamRenderer::applyBackground(image, blackMask(image.extent), style);
        QCOMPARE(kept.extent, image.extent);
        QCOMPARE(kept.pixels, image.pixels);
    }

    void thePreviewStandsInTheStylesCornerSixteenFromTheEdges_data() {
        QTest::addColumn<FacecamCorner>("corner");
        QTest::addColumn<QPointF>("origin");
        // A free area from (100, 50), 1920 × 1000, y down.
        QTest::newRow("top left") << FacecamCorner::topLeft << QPointF(116, 66);
        QTest::newRow("top right") << FacecamCorner::topRight << QPointF(1844, 66);
        QTest::newRow("bottom left") << FacecamCorner::bottomLeft << QPointF(116, 874);
        QTest::newRow("bottom right") << FacecamCorner::bottomRight << QPointF(1844, 874);
    }
    void thePreviewStandsInTheStylesCornerSixteenFromTheEdges() {
        QFETCH(FacecamCorner, corner);
        QFETCH(QPointF, origin);
        FacecamStyle style;
        style.corner = corner;
        QCOMPARE(FacecamRenderer::livePreviewScreenFrame(style, QRectF(100, 50, 1920, 1000)),
                 QRectF(origin, QSizeF(160, 160)));
    }

    void thePreviewsOutlineFollowsTheRoundness_data() {
        QTest::addColumn<double>("cornerRadius");
        // Points inside a 160 × 160 outline: its corner, and one just inside a 28-point rounding.
        QTest::addColumn<bool>("cornerInside");
        QTest::addColumn<bool>("nearCornerInside");
        QTest::newRow("square") << 0.0 << true << true;
        QTest::newRow("half a point stays square") << 0.5 / 80 << true << true;
        QTest::newRow("rounded") << 0.35 << false << true;
        QTest::newRow("circle") << 1.0 << false << false;
        QTest::newRow("nearly a circle") << (79.5 / 80) << false << false;
    }
    void thePreviewsOutlineFollowsTheRoundness() {
        QFETCH(double, cornerRadius);
        QFETCH(bool, cornerInside);
        QFETCH(bool, nearCornerInside);
        const QPainterPath outline = FacecamRenderer::previewMaskPath(QSizeF(160, 160), cornerRadius);
        QCOMPARE(outline.boundingRect(), QRectF(0, 0, 160, 160));
        QCOMPARE(outline.contains(QPointF(0.2, 0.2)), cornerInside);
        QCOMPARE(outline.contains(QPointF(14, 14)), nearCornerInside);
        QVERIFY(outline.contains(QPointF(80, 80)));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(FacecamRendererTest)
#include "FacecamRendererTest.moc"
