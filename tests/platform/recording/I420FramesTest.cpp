#include "platform/linux/I420Frames.h"
#include "support/TestMain.h"

#include <QPainter>
#include <QTest>
#include <gst/video/video.h>

namespace {
// The Y, U and V of a frame's pixel.
struct Yuv {
    int y = 0;
    int u = 0;
    int v = 0;
};

Yuv pixelOf(GstBuffer* buffer, QSize size, QPoint at) {
    GstVideoInfo info;
    gst_video_info_set_format(&info, GST_VIDEO_FORMAT_I420, guint(size.width()), guint(size.height()));
    GstVideoFrame frame;
    if (!gst_video_frame_map(&frame, &info, buffer, GST_MAP_READ)) {
        return {-1, -1, -1};
    }
    const auto sample = [&](int plane, int x, int y) {
        const auto* row = static_cast<const uchar*>(GST_VIDEO_FRAME_PLANE_DATA(&frame, plane)) +
                          qsizetype(y) * GST_VIDEO_FRAME_PLANE_STRIDE(&frame, plane);
        return int(row[x]);
    };
    const Yuv yuv{sample(0, at.x(), at.y()), sample(1, at.x() / 2, at.y() / 2), sample(2, at.x() / 2, at.y() / 2)};
    gst_video_frame_unmap(&frame);
    return yuv;
}

bool near(const Yuv& found, const Yuv& expected) {
    constexpr int tolerance = 2;
    return std::abs(found.y - expected.y) <= tolerance && std::abs(found.u - expected.u) <= tolerance &&
           std::abs(found.v - expected.v) <= tolerance;
}

QString described(const Yuv& yuv) {
    return QStringLiteral("Y %1 U %2 V %3").arg(yuv.y).arg(yuv.u).arg(yuv.v);
}

// White, red and blue in BT.601's limited range.
constexpr Yuv white{235, 128, 128};
constexpr Yuv red{82, 90, 240};
constexpr Yuv blue{41, 240, 110};

// A picture red on its left half and blue on its right.
QImage halves(QSize size, QImage::Format format = QImage::Format_RGB32) {
    QImage picture(size, format);
    QPainter painter(&picture);
    painter.fillRect(0, 0, size.width() / 2, size.height(), QColor(255, 0, 0));
    painter.fillRect(size.width() / 2, 0, size.width() - size.width() / 2, size.height(), QColor(0, 0, 255));
    painter.end();
    return picture;
}
} // namespace

// The encoder's 4:2:0 frames made of captured pictures.
class I420FramesTest : public QObject {
    Q_OBJECT

    static constexpr QSize size{64, 32};

    // Checks that `frame` is red at `left` and blue at `right`, and lets go of it.
    static void verifyRedAndBlue(GstBuffer* frame, QPoint left, QPoint right) {
        QVERIFY(frame);
        const Yuv onTheLeft = pixelOf(frame, size, left);
        const Yuv onTheRight = pixelOf(frame, size, right);
        gst_buffer_unref(frame);
        QVERIFY2(near(onTheLeft, red), qPrintable(described(onTheLeft)));
        QVERIFY2(near(onTheRight, blue), qPrintable(described(onTheRight)));
    }

private slots:
    void initTestCase() { gst_init(nullptr, nullptr); }

    void capsSayWhatTheFramesAre() {
        I420Frames frames(size, 30);
        GstCaps* caps = frames.caps();
        gchar* text = gst_caps_to_string(caps);
        const QString described = QString::fromUtf8(text);
        g_free(text);
        gst_caps_unref(caps);
        QVERIFY2(described.contains(QStringLiteral("format=(string)I420")), qPrintable(described));
        QVERIFY2(described.contains(QStringLiteral("width=(int)64, height=(int)32")), qPrintable(described));
        QVERIFY2(described.contains(QStringLiteral("framerate=(fraction)30/1")), qPrintable(described));
        QVERIFY2(described.contains(QStringLiteral("colorimetry=(string)bt601")), qPrintable(described));
        QCOMPARE(frames.frameBytes(), gsize(64 * 32 * 3 / 2));
    }

    void coloursBecomeTheirLimitedRangeValues() {
        I420Frames frames(size, 30);
        QImage picture(size, QImage::Format_RGB32);
        picture.fill(Qt::white);
        GstBuffer* whiteFrame = frames.converted(picture);
        QVERIFY(whiteFrame);
        const Yuv foundWhite = pixelOf(whiteFrame, size, {10, 10});
        gst_buffer_unref(whiteFrame);
        QVERIFY2(near(foundWhite, white), qPrintable(described(foundWhite)));

        verifyRedAndBlue(frames.converted(halves(size)), {4, 4}, {60, 28});
    }

    void aPictureWithPaddedRowsConvertsAsATightOne() {
        QImage wide = halves({80, 32});
        // A view of its left 64 columns: each row still 80 pixels long in memory.
        const QImage padded(wide.constBits(), 64, 32, wide.bytesPerLine(), QImage::Format_RGB32);
        QVERIFY(padded.bytesPerLine() > 64 * 4);
        I420Frames frames(size, 30);
        // Columns 40 to 63 of the wide picture are blue.
        verifyRedAndBlue(frames.converted(padded), {4, 4}, {60, 4});
    }

    void anotherSizeOrFormatIsMadeToFit() {
        I420Frames frames(size, 30);
        GstBuffer* frame = frames.converted(halves({33, 17}, QImage::Format_RGB888));
        QVERIFY(frame);
        QCOMPARE(gst_buffer_get_size(frame), frames.frameBytes());
        verifyRedAndBlue(frame, {4, 16}, {60, 16});
    }

    void framesLetGoAreUsedAgain() {
        I420Frames frames(size, 30);
        QImage picture(size, QImage::Format_RGB32);
        picture.fill(Qt::white);
        GstBuffer* first = frames.converted(picture);
        GstMapInfo map;
        QVERIFY(gst_buffer_map(first, &map, GST_MAP_READ));
        const guint8* memory = map.data;
        gst_buffer_unmap(first, &map);
        gst_buffer_unref(first);
        GstBuffer* second = frames.converted(picture);
        GstBuffer* third = frames.converted(picture);
        QVERIFY(gst_buffer_map(second, &map, GST_MAP_READ));
        const guint8* again = map.data;
        gst_buffer_unmap(second, &map);
        QVERIFY(gst_buffer_map(third, &map, GST_MAP_READ));
        const guint8* another = map.data;
        gst_buffer_unmap(third, &map);
        gst_buffer_unref(second);
        gst_buffer_unref(third);
        QVERIFY(again == memory || another == memory);
        QVERIFY(again != another);
    }

    void noPictureMakesNoFrame() {
        I420Frames frames(size, 30);
        QVERIFY(!frames.converted(QImage()));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(I420FramesTest)
#include "I420FramesTest.moc"
