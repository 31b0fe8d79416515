#pragma once

#include <QImage>
#include <QSize>
#include <gst/video/video.h>

// Turns pictures into the 4:2:0 frames the encoder takes, in buffers used again once the encoder
// lets go of them. The conversion is libyuv's: a tenth of the time of GStreamer's videoconvert on
// a 1080p frame, which on a screen recording is most of the work beside the encoder's.
class I420Frames {
public:
    // Frames of `size`, whose width and height are even, coming `framesPerSecond` a second.
    I420Frames(QSize size, int framesPerSecond);
    ~I420Frames();
    I420Frames(const I420Frames&) = delete;
    I420Frames& operator=(const I420Frames&) = delete;

    // The caps of the frames: I420 of the size and rate, BT.601 limited range as libyuv writes
    // them.
    GstCaps* caps() const;
    // The bytes of one frame.
    gsize frameBytes() const;
    // `pixels` as a frame of the size, scaled first when it is another size; null without a
    // picture or a buffer.
    GstBuffer* converted(const QImage& pixels);

private:
    QSize m_size;
    GstVideoInfo m_info;
    GstBufferPool* m_pool = nullptr;
};
