#include "core/recording/PlacedImage.h"
#include "support/FacecamTesting.h"
#include "support/TestMain.h"

#include <QTest>

using FacecamTesting::pattern;
using FacecamTesting::solid;

// Images on the overlay's plane (y up): moving, scaling and mirroring move the extent, cropping and
// blending keep to where the images lie.
class PlacedImageTest : public QObject {
    Q_OBJECT

private slots:
    void anImageAtTheOriginCoversItsSize() {
        const PlacedImage image = PlacedImage::atOrigin(pattern(QSize(4, 3)));
        QCOMPARE(image.extent, QRectF(0, 0, 4, 3));
        QVERIFY(!image.isEmpty());
    }

    void scalingMovesTheExtentAndANegativeFactorMirrorsThePixels() {
        const QImage pixels = pattern(QSize(4, 3));
        const PlacedImage image = PlacedImage{pixels, QRectF(1, 2, 4, 3)};
        const PlacedImage doubled = image.scaled(2, 3);
        QCOMPARE(doubled.extent, QRectF(2, 6, 8, 9));
        QCOMPARE(doubled.pixels, pixels);
        const PlacedImage flipped = image.scaled(-1, 1);
        QCOMPARE(flipped.extent, QRectF(-5, 2, 4, 3));
        QCOMPARE(flipped.pixels.pixel(0, 0), pixels.pixel(3, 0));
        QCOMPARE(flipped.pixels.pixel(3, 2), pixels.pixel(0, 2));
        const PlacedImage upsideDown = image.scaled(1, -1);
        QCOMPARE(upsideDown.extent, QRectF(1, -5, 4, 3));
        QCOMPARE(upsideDown.pixels.pixel(0, 0), pixels.pixel(0, 2));
    }

    void translatingMovesOnlyTheExtent() {
        const PlacedImage image = PlacedImage::atOrigin(pattern(QSize(4, 3))).translated(-7.5, 2);
        QCOMPARE(image.extent, QRectF(-7.5, 2, 4, 3));
        QCOMPARE(image.pixels, pattern(QSize(4, 3)));
    }

    void croppingKeepsThePartInsideCountingRowsFromTheTop() {
        const QImage pixels = pattern(QSize(4, 4));
        const PlacedImage corner = PlacedImage::atOrigin(pixels).cropped(QRectF(0, 0, 2, 2));
        QCOMPARE(corner.extent, QRectF(0, 0, 2, 2));
        // The lower left of the plane is the image's last rows.
        QCOMPARE(corner.pixels, pixels.copy(0, 2, 2, 2));
        const PlacedImage beyond = PlacedImage::atOrigin(pixels).cropped(QRectF(3, 3, 10, 10));
        QCOMPARE(beyond.extent, QRectF(3, 3, 1, 1));
        QCOMPARE(beyond.pixels.pixel(0, 0), pixels.pixel(3, 0));
    }

    void croppingWhereTheImageDoesNotLieLeavesNothing() {
        const PlacedImage image = PlacedImage::atOrigin(pattern(QSize(4, 4))).translated(-10, 0);
        const PlacedImage cropped = image.cropped(QRectF(0, 0, 4, 4));
        QVERIFY(cropped.isEmpty());
        QVERIFY(cropped.pixels.isNull());
    }

    void renderingDrawsTheImageWhereItLiesAndLeavesTheRestTransparent() {
        const PlacedImage image{solid(QSize(2, 2), Qt::red), QRectF(2, 0, 4, 2)};
        const QImage rendered = image.rendered(QRectF(0, 0, 8, 4));
        QCOMPARE(rendered.size(), QSize(8, 4));
        QCOMPARE(rendered.pixel(3, 3), qRgb(255, 0, 0));
        QCOMPARE(rendered.pixel(5, 2), qRgb(255, 0, 0));
        QCOMPARE(qAlpha(rendered.pixel(1, 3)), 0);
        QCOMPARE(qAlpha(rendered.pixel(3, 1)), 0);
        QCOMPARE(qAlpha(rendered.pixel(6, 3)), 0);
        QCOMPARE(image.rendered(QRectF(0, 0, 2.2, 1)).size(), QSize(3, 1));
    }

    void blendingTakesTheInputWhereTheMaskIsWhiteAndTheBackgroundWhereBlack() {
        QImage mask(QSize(3, 1), QImage::Format_ARGB32_Premultiplied);
        mask.setPixel(0, 0, qRgb(255, 255, 255));
        mask.setPixel(1, 0, qRgb(0, 0, 0));
        mask.setPixel(2, 0, qRgb(128, 128, 128));
        const PlacedImage blended =
            blendedWithMask(PlacedImage::atOrigin(solid(QSize(3, 1), Qt::red)),
                            PlacedImage::atOrigin(solid(QSize(3, 1), Qt::blue)), PlacedImage::atOrigin(mask));
        QCOMPARE(blended.extent, QRectF(0, 0, 3, 1));
        QCOMPARE(blended.pixels.pixel(0, 0), qRgb(255, 0, 0));
        QCOMPARE(blended.pixels.pixel(1, 0), qRgb(0, 0, 255));
        QCOMPARE(blended.pixels.pixel(2, 0), qRgb(128, 0, 127));
    }

    void blendingCoversTheBackgroundAndWhereInputAndMaskMeet() {
        const PlacedImage input{solid(QSize(10, 10), Qt::red), QRectF(0, 0, 10, 10)};
        const PlacedImage mask{solid(QSize(10, 10), Qt::white), QRectF(5, 5, 10, 10)};
        QCOMPARE(blendedWithMask(input, PlacedImage(), mask).extent, QRectF(5, 5, 5, 5));
        const PlacedImage background{solid(QSize(2, 2), Qt::blue), QRectF(20, 20, 2, 2)};
        const PlacedImage both = blendedWithMask(input, background, mask);
        QCOMPARE(both.extent, QRectF(5, 5, 17, 17));
        // Between the two, outside every image: transparent.
        QCOMPARE(qAlpha(both.pixels.pixel(10, 5)), 0);
    }

    void blendingImagesThatDoNotMeetWithoutABackgroundLeavesNothing() {
        const PlacedImage input{solid(QSize(10, 10), Qt::red), QRectF(-20, 0, 10, 10)};
        const PlacedImage mask{solid(QSize(10, 10), Qt::white), QRectF(0, 0, 10, 10)};
        QVERIFY(blendedWithMask(input, PlacedImage(), mask).isEmpty());
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(PlacedImageTest)
#include "PlacedImageTest.moc"
