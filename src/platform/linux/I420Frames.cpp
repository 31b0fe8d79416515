#include "platform/linux/I420Frames.h"

#include <gst/video/video.h>
#include <libyuv/convert_from_argb.h>

namespace {
constexpr guint framesKeptAtLeast = 2;

GstVideoInfo videoInfo(QSize size, int framesPerSecond) {
    GstVideoInfo info;
    gst_video_info_set_format(&info, GST_VIDEO_FORMAT_I420, guint(size.width()), guint(size.height()));
    info.fps_n = framesPerSecond;
    info.fps_d = 1;
    gst_video_colorimetry_from_string(&info.colorimetry, GST_VIDEO_COLORIMETRY_BT601);
    return info;
}

// The picture as 32-bit pixels at `size`, B, G, R and a fourth byte in memory: what libyuv calls
// ARGB.
QImage asArgb(const QImage& pixels, QSize size) {
    const QImage sized = pixels.size() == size ? pixels : pixels.scaled(size);
    switch (sized.format()) {
    case QImage::Format_RGB32:
    case QImage::Format_ARGB32:
    case QImage::Format_ARGB32_Premultiplied:
        return sized;
    default:
        return sized.convertToFormat(QImage::Format_RGB32);
    }
}
uint8_t* plane(GstVideoFrame& frame, int index) {
    return static_cast<uint8_t*>(GST_VIDEO_FRAME_PLANE_DATA(&frame, index));
}
} // namespace

I420Frames::I420Frames(QSize size, int framesPerSecond)
    : m_size(size)
    , m_info(videoInfo(size, framesPerSecond))
    , m_pool(gst_video_buffer_pool_new()) {
    GstCaps* frameCaps = caps();
    GstStructure* config = gst_buffer_pool_get_config(m_pool);
    // No upper bound: the writer's input limits how many frames wait.
    gst_buffer_pool_config_set_params(config, frameCaps, guint(frameBytes()), framesKeptAtLeast, 0);
    gst_buffer_pool_set_config(m_pool, config);
    gst_caps_unref(frameCaps);
    gst_buffer_pool_set_active(m_pool, TRUE);
}

I420Frames::~I420Frames() {
    // Buffers still out return to a pool that frees them then.
    gst_buffer_pool_set_active(m_pool, FALSE);
    gst_object_unref(m_pool);
}

GstCaps* I420Frames::caps() const {
    return gst_video_info_to_caps(&m_info);
}

gsize I420Frames::frameBytes() const {
    return GST_VIDEO_INFO_SIZE(&m_info);
}

GstBuffer* I420Frames::converted(const QImage& pixels) {
    if (pixels.isNull()) {
        return nullptr;
    }
    const QImage argb = asArgb(pixels, m_size);
    GstBuffer* buffer = nullptr;
    if (gst_buffer_pool_acquire_buffer(m_pool, &buffer, nullptr) != GST_FLOW_OK) {
        return nullptr;
    }
    GstVideoFrame frame;
    if (!gst_video_frame_map(&frame, &m_info, buffer, GST_MAP_WRITE)) {
        gst_buffer_unref(buffer);
        return nullptr;
    }
    libyuv::ARGBToI420(argb.constBits(), int(argb.bytesPerLine()), plane(frame, 0),
                       GST_VIDEO_FRAME_PLANE_STRIDE(&frame, 0), plane(frame, 1),
                       GST_VIDEO_FRAME_PLANE_STRIDE(&frame, 1), plane(frame, 2),
                       GST_VIDEO_FRAME_PLANE_STRIDE(&frame, 2), m_size.width(), m_size.height());
    gst_video_frame_unmap(&frame);
    return buffer;
}
