#include "platform/linux/GStreamerCaptureStream.h"

#include "core/recording/ScreenRecordingError.h"
#include "core/support/Overloaded.h"
#include "platform/linux/GStreamerPipeline.h"
#include "platform/linux/GStreamerSample.h"

#include <QCoroFuture>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <gst/audio/audio.h>
#include <gst/video/video.h>
#include <unistd.h>

namespace {
constexpr int bytesPerPixel = 4;
// How long frames wait for the microphone's first sample, and how long after it the screen source
// and the sound server take to settle: the screen source catches up in a burst after the sound
// server's slow start, while the sound comes in fits.
constexpr qint64 microphoneWait = GST_SECOND;
constexpr qint64 microphoneSettling = 100 * GST_MSECOND;

QString boolean(bool value) {
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

// The window, or a region of it, at the configured rate, from the X server of $DISPLAY (ximagesrc's
// default). Damage events would only save work on a screen that stands still.
QString x11Source(const CaptureTarget::X11Window& window, const CaptureConfiguration& configuration) {
    QString source = QStringLiteral("ximagesrc name=screen use-damage=false show-pointer=%1")
                         .arg(boolean(configuration.showsCursor));
    if (window.window != 0) {
        source += QStringLiteral(" xid=%1").arg(window.window);
    }
    if (!window.region.isEmpty()) {
        // Its end coordinates are those of the last pixel, as QRect's right() and bottom().
        const QRect& region = window.region;
        source += QStringLiteral(" startx=%1 starty=%2 endx=%3 endy=%4")
                      .arg(region.left())
                      .arg(region.top())
                      .arg(region.right())
                      .arg(region.bottom());
    }
    return source + QStringLiteral(" ! video/x-raw,framerate=%1/1").arg(configuration.framesPerSecond);
}

// The node's frames as they come, timestamped on arrival (pipewiresrc gives none otherwise); a
// node that sends faster than the configured rate loses the frames in between. A screen sends a
// frame only when something on it changes: while it stands still, its last frame comes again each
// frame's time, so that the movie goes on. Without the caps filter right after the source,
// WirePlumber finds no target for the stream and destroys it. While the capture is stopped, the
// gate drops the frames before they are converted.
QString pipeWireSource(int fd, quint32 nodeId, const CaptureConfiguration& configuration) {
    return QStringLiteral("pipewiresrc name=screen fd=%1 path=%2 do-timestamp=true keepalive-time=%3"
                          " ! video/x-raw ! videorate drop-only=true max-rate=%4"
                          " ! valve name=gate drop-mode=forward-sticky-events")
        .arg(fd)
        .arg(nodeId)
        .arg(1000 / configuration.framesPerSecond)
        .arg(configuration.framesPerSecond);
}

// Converted and scaled (stretched, without borders) to BGRx at the configured size; the newest
// frame only, handed over on the streaming thread.
QString videoTail(const CaptureConfiguration& configuration) {
    return QStringLiteral("videoconvert ! videoscale add-borders=false"
                          " ! video/x-raw,format=BGRx,width=%1,height=%2,pixel-aspect-ratio=1/1"
                          " ! appsink name=video drop=true max-buffers=1 sync=false")
        .arg(configuration.size.width())
        .arg(configuration.size.height());
}

// The sound server's default source ($PULSE_SOURCE where set) as signed 16-bit PCM at 48 kHz (the
// server converts), which the movie takes as it is. Left to itself, pulsesrc would settle on
// GStreamer's default of 44.1 kHz.
QString microphoneBranch() {
    return QStringLiteral("pulsesrc name=microphone client-name=NorvaneBar"
                          " ! audio/x-raw,format=S16LE,layout=interleaved,rate=48000"
                          " ! appsink name=audio drop=true max-buffers=1 sync=false");
}

// A view of the sample's picture that keeps the sample alive as long as the image (or a copy of
// it) lives; null when the buffer doesn't hold the picture its caps describe.
QImage pixelsOf(const std::shared_ptr<const GStreamerSample>& native) {
    GstVideoInfo info;
    GstCaps* caps = gst_sample_get_caps(native->sample());
    if (!caps || !native->data() || !gst_video_info_from_caps(&info, caps)) {
        return {};
    }
    const int width = GST_VIDEO_INFO_WIDTH(&info);
    const int height = GST_VIDEO_INFO_HEIGHT(&info);
    auto offset = static_cast<qsizetype>(GST_VIDEO_INFO_PLANE_OFFSET(&info, 0));
    qsizetype stride = GST_VIDEO_INFO_PLANE_STRIDE(&info, 0);
    if (const GstVideoMeta* meta = gst_buffer_get_video_meta(native->buffer())) {
        offset = static_cast<qsizetype>(meta->offset[0]);
        stride = meta->stride[0];
    }
    if (width < 1 || height < 1 || stride < qsizetype(width) * bytesPerPixel ||
        offset + stride * (height - 1) + qsizetype(width) * bytesPerPixel > native->size()) {
        return {};
    }
    using Keeper = std::shared_ptr<const NativeSample>;
    return {native->data() + offset,
            width,
            height,
            stride,
            QImage::Format_RGB32,
            [](void* keeper) { delete static_cast<Keeper*>(keeper); },
            new Keeper(native)};
}

std::optional<AudioFormat> audioFormatOf(GstCaps* caps) {
    GstAudioInfo info;
    if (!caps || !gst_audio_info_from_caps(&info, caps)) {
        return std::nullopt;
    }
    gchar* description = gst_caps_to_string(caps);
    AudioFormat format{QString::fromUtf8(description), GST_AUDIO_INFO_RATE(&info), GST_AUDIO_INFO_CHANNELS(&info)};
    g_free(description);
    return format;
}

// Takes the sample that came to `sink` and hands what `make` makes of it, if anything, to each
// output, while the capture delivers. A prepared capture makes its samples too, and so learns when
// the microphone has settled before it delivers.
template <typename Value, typename Make>
GstFlowReturn handOver(GstAppSink* sink, bool delivering, const std::vector<std::function<void(Value)>>& outputs,
                       Make make) {
    GstSample* sample = gst_app_sink_pull_sample(sink);
    if (!sample) {
        return GST_FLOW_FLUSHING;
    }
    const std::optional<Value> value = make(sample);
    if (!value || !delivering) {
        return GST_FLOW_OK;
    }
    for (const auto& output : outputs) {
        output(*value);
    }
    return GST_FLOW_OK;
}

void setSampleCallback(GstElement* sink, GstFlowReturn (*onSample)(GstAppSink*, gpointer), gpointer stream) {
    GstAppSinkCallbacks callbacks{};
    callbacks.new_sample = onSample;
    gst_app_sink_set_callbacks(GST_APP_SINK(sink), &callbacks, stream, nullptr);
}
} // namespace

GStreamerCaptureStream::GStreamerCaptureStream(const CaptureTarget& target, const CaptureConfiguration& configuration)
    : m_waitsForMicrophone(configuration.captureMicrophone) {
    const QString source =
        std::visit(Overloaded{
                       [&](const CaptureTarget::X11Window& window) { return x11Source(window, configuration); },
                       [&](const CaptureTarget::PipeWireNode& node) {
                           // The session may close its descriptor while the pipeline still reads from it.
                           m_pipeWireFd = fcntl(node.fd, F_DUPFD_CLOEXEC, 3);
                           return pipeWireSource(m_pipeWireFd, node.nodeId, configuration);
                       },
                   },
                   target.surface);
    if (std::holds_alternative<CaptureTarget::PipeWireNode>(target.surface) && m_pipeWireFd < 0) {
        throw ScreenRecordingError::writerFailed(tr("The screen capture could not use the PipeWire connection: %1")
                                                     .arg(QString::fromLocal8Bit(strerror(errno))));
    }
    QString description = source + QStringLiteral(" ! ") + videoTail(configuration);
    if (configuration.captureMicrophone) {
        description += QLatin1Char(' ') + microphoneBranch();
    }
    try {
        m_pipeline = std::make_unique<GStreamerPipeline>(description, tr("The screen capture could not be set up"));
    } catch (...) {
        if (m_pipeWireFd >= 0) {
            close(m_pipeWireFd);
        }
        throw;
    }
    m_gate = m_pipeline->element("gate");
    setSampleCallback(m_pipeline->element("video"), &GStreamerCaptureStream::onVideoSample, this);
    if (configuration.captureMicrophone) {
        setSampleCallback(m_pipeline->element("audio"), &GStreamerCaptureStream::onAudioSample, this);
    }
}

GStreamerCaptureStream::~GStreamerCaptureStream() {
    // The streaming threads end here, while the outputs they call are still there.
    m_pipeline->stop();
    m_pipeline.reset();
    if (m_pipeWireFd >= 0) {
        close(m_pipeWireFd);
    }
}

void GStreamerCaptureStream::addScreenOutput(std::function<void(VideoFrame)> output) {
    m_screenOutputs.push_back(std::move(output));
}

void GStreamerCaptureStream::addMicrophoneOutput(std::function<void(AudioBuffer)> output) {
    m_microphoneOutputs.push_back(std::move(output));
}

void GStreamerCaptureStream::prepare() {
    m_preparing = m_pipeline->play();
}

QCoro::Task<> GStreamerCaptureStream::startCapture() {
    m_delivering = true;
    if (m_held && m_gate) {
        g_object_set(m_gate, "drop", FALSE, nullptr);
        m_held = false;
        co_return;
    }
    // After a stop the capture plays on from where it was held, so the frames still in use keep
    // the memory they were captured into.
    QFuture<std::optional<QString>> playing = m_preparing ? *std::exchange(m_preparing, std::nullopt)
                                              : m_held    ? m_pipeline->resume()
                                                          : m_pipeline->play();
    m_held = false;
    co_await playing;
    // Only the future is read after the wait: the stream may have gone meanwhile.
    if (const std::optional<QString> failure = playing.result()) {
        throw ScreenRecordingError::writerFailed(tr("The screen capture did not start: %1").arg(*failure));
    }
}

QCoro::Task<> GStreamerCaptureStream::stopCapture() {
    m_delivering = false;
    if (m_gate) {
        g_object_set(m_gate, "drop", TRUE, nullptr);
    } else {
        m_pipeline->pause();
    }
    m_held = true;
    co_return;
}

SampleTiming GStreamerCaptureStream::timing(GstSample* sample) const {
    const GstClockTime baseTime = gst_element_get_base_time(m_pipeline->pipeline());
    const GstSegment* segment = gst_sample_get_segment(sample);
    const auto onClock = [&](GstClockTime position) -> std::optional<qint64> {
        if (!segment || !GST_CLOCK_TIME_IS_VALID(position)) {
            return std::nullopt;
        }
        const GstClockTime running = gst_segment_to_running_time(segment, GST_FORMAT_TIME, position);
        if (!GST_CLOCK_TIME_IS_VALID(running)) {
            return std::nullopt;
        }
        return static_cast<qint64>(running + baseTime);
    };
    GstBuffer* buffer = gst_sample_get_buffer(sample);
    SampleTiming timing;
    timing.presentation = onClock(GST_BUFFER_PTS(buffer));
    timing.decode = onClock(GST_BUFFER_DTS(buffer));
    if (GST_BUFFER_DURATION_IS_VALID(buffer)) {
        timing.duration = static_cast<qint64>(GST_BUFFER_DURATION(buffer));
    }
    return timing;
}

bool GStreamerCaptureStream::precedesMicrophone(const SampleTiming& timing) {
    if (!m_waitsForMicrophone || m_microphoneSettled || !timing.presentation) {
        return false;
    }
    const qint64 time = *timing.presentation;
    if (!m_firstFrameTime) {
        m_firstFrameTime = time;
    }
    const qint64 heard = m_microphoneHeardAt.load();
    m_microphoneSettled =
        heard != notHeard ? time >= heard + microphoneSettling : time - *m_firstFrameTime >= microphoneWait;
    return !m_microphoneSettled;
}

std::optional<VideoFrame> GStreamerCaptureStream::videoFrame(GstSample* sample) {
    VideoFrame frame;
    frame.timing = timing(sample);
    if (precedesMicrophone(frame.timing)) {
        gst_sample_unref(sample);
        return std::nullopt;
    }
    auto native = std::make_shared<const GStreamerSample>(sample);
    frame.pixels = pixelsOf(native);
    if (GST_BUFFER_FLAG_IS_SET(native->buffer(), GST_BUFFER_FLAG_CORRUPTED)) {
        frame.status = QVariant(1);
    }
    frame.native = std::move(native);
    return frame;
}

std::optional<AudioBuffer> GStreamerCaptureStream::audioBuffer(GstSample* sample) {
    AudioBuffer buffer;
    buffer.timing = timing(sample);
    qint64 expected = notHeard;
    m_microphoneHeardAt.compare_exchange_strong(expected, buffer.timing.presentation.value_or(notHeard));
    buffer.format = audioFormatOf(gst_sample_get_caps(sample));
    auto native = std::make_shared<const GStreamerSample>(sample);
    // A view of the mapped buffer, valid as long as `native` lives.
    buffer.data = QByteArray::fromRawData(reinterpret_cast<const char*>(native->data()), native->size());
    buffer.native = std::move(native);
    return buffer;
}

GstFlowReturn GStreamerCaptureStream::onVideoSample(GstAppSink* sink, gpointer stream) {
    auto* self = static_cast<GStreamerCaptureStream*>(stream);
    return handOver(sink, self->m_delivering.load(), self->m_screenOutputs,
                    [self](GstSample* sample) { return self->videoFrame(sample); });
}

GstFlowReturn GStreamerCaptureStream::onAudioSample(GstAppSink* sink, gpointer stream) {
    auto* self = static_cast<GStreamerCaptureStream*>(stream);
    return handOver(sink, self->m_delivering.load(), self->m_microphoneOutputs,
                    [self](GstSample* sample) { return self->audioBuffer(sample); });
}
