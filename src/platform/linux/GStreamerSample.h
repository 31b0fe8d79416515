#pragma once

#include "core/platform/MediaSample.h"

#include <gst/gst.h>

// A GStreamer sample behind a frame or a run of microphone samples: the sample and its buffer,
// mapped for reading as long as this lives. A GStreamer movie writer passes the buffer on as it is.
class GStreamerSample : public NativeSample {
public:
    // Takes over the reference to `sample`.
    explicit GStreamerSample(GstSample* sample);
    ~GStreamerSample() override;
    GStreamerSample(const GStreamerSample&) = delete;
    GStreamerSample& operator=(const GStreamerSample&) = delete;

    GstSample* sample() const { return m_sample; }
    GstBuffer* buffer() const { return gst_sample_get_buffer(m_sample); }
    // The buffer's bytes; null when it could not be mapped.
    const uchar* data() const { return m_mapped ? m_map.data : nullptr; }
    qsizetype size() const { return m_mapped ? static_cast<qsizetype>(m_map.size) : 0; }
    // Whether `bytes` point into the buffer's memory.
    bool holds(const void* bytes) const;

private:
    GstSample* m_sample;
    GstMapInfo m_map{};
    bool m_mapped = false;
};
