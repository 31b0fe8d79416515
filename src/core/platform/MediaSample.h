#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>
#include <QVariant>
#include <memory>
#include <optional>

// Times of a sample, in nanoseconds on the capture's clock; a missing value is a time the source
// did not give.
struct SampleTiming {
    std::optional<qint64> presentation;
    std::optional<qint64> decode;
    std::optional<qint64> duration;

    bool operator==(const SampleTiming&) const = default;
};

// The source's own buffer behind a sample. A writer of the same platform may pass it on as it is,
// without copying; any other reads the sample's pixels or bytes.
class NativeSample {
public:
    virtual ~NativeSample() = default;
};

// One picture of the captured screen.
struct VideoFrame {
    SampleTiming timing;
    // False for a frame whose pixels are not there yet; such a frame is dropped on arrival.
    bool dataReady = true;
    // The source's word on the frame: absent, not an integer, or 0 mean a complete frame.
    std::optional<QVariant> status;
    // 32 bits a pixel (QImage::Format_RGB32 or ARGB32_Premultiplied), usually a view of `native`'s
    // memory; null when the source gave no picture.
    QImage pixels;
    std::shared_ptr<const NativeSample> native;
};

// How microphone samples are laid out, as the source describes them; written as they come.
struct AudioFormat {
    // The source's own description of the samples (for GStreamer its caps).
    QString description;
    int sampleRate = 0;
    int channels = 0;

    bool operator==(const AudioFormat&) const = default;
};

// A run of microphone samples.
struct AudioBuffer {
    SampleTiming timing;
    bool dataReady = true;
    // Absent when the source did not say how the samples are laid out.
    std::optional<AudioFormat> format;
    QByteArray data;
    std::shared_ptr<const NativeSample> native;
};
