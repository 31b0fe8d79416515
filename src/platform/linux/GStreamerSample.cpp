#include "platform/linux/GStreamerSample.h"

#include <functional>

GStreamerSample::GStreamerSample(GstSample* sample)
    : m_sample(sample) {
    if (GstBuffer* mapped = buffer()) {
        m_mapped = gst_buffer_map(mapped, &m_map, GST_MAP_READ);
    }
}

GStreamerSample::~GStreamerSample() {
    if (m_mapped) {
        gst_buffer_unmap(buffer(), &m_map);
    }
    gst_sample_unref(m_sample);
}

bool GStreamerSample::holds(const void* bytes) const {
    const auto* byte = static_cast<const uchar*>(bytes);
    // Pointers into different objects compare through std::less only.
    return m_mapped && std::less_equal<>()(data(), byte) && std::less<>()(byte, data() + size());
}
