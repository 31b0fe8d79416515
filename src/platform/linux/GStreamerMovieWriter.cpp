#include "platform/linux/GStreamerMovieWriter.h"

#include "core/recording/ScreenRecordingError.h"
#include "platform/linux/GStreamerPipeline.h"
#include "platform/linux/GStreamerSample.h"
#include "platform/linux/I420Frames.h"

#include <QFile>
#include <gst/app/gstappsrc.h>
#include <gst/audio/audio.h>
#include <mutex>

namespace {
// Frames the encoder may fall behind by before the input takes no more: a key frame takes a few
// frames' time.
constexpr guint64 framesQueued = 8;
constexpr qint64 bitsPerKilobit = 1000;

template <typename T> void deleteShared(gpointer data) {
    delete static_cast<std::shared_ptr<T>*>(data);
}

// The caps of a raw audio format, or null.
GstCaps* rawAudioCaps(const AudioFormat& format, GstAudioInfo* info) {
    GstCaps* caps = gst_caps_from_string(format.description.toUtf8().constData());
    if (caps && !gst_audio_info_from_caps(info, caps)) {
        gst_caps_unref(caps);
        return nullptr;
    }
    return caps;
}

} // namespace

// What GStreamer's threads learn about the movie, shared with them: they may still run while the
// writer goes.
struct GStreamerMovieWriter::State : std::enable_shared_from_this<State> {
    QString encoder;
    GstElement* pipeline = nullptr; // set when writing starts
    mutable std::mutex mutex;
    Status status = Status::unknown;
    std::optional<Error> error;
    std::function<void()> completion;
    QString profile;

    void setStatus(Status value) {
        const std::lock_guard lock(mutex);
        status = value;
    }

    // The movie has failed, unless it had ended; a finish that waits for the end has it now.
    void fail(const Error& failure) {
        const std::lock_guard lock(mutex);
        if (status == Status::unknown || status == Status::writing) {
            status = Status::failed;
            error = failure;
        }
        if (completion) {
            endSoon();
        }
    }

    // Calls `done` once the movie has been written or has failed.
    void awaitEnd(std::function<void()> done) {
        const std::lock_guard lock(mutex);
        completion = std::move(done);
        if (status != Status::writing) {
            endSoon();
        }
    }

    std::function<void()> cancel() {
        const std::lock_guard lock(mutex);
        if (status == Status::unknown || status == Status::writing) {
            status = Status::cancelled;
        }
        return std::exchange(completion, {});
    }

    // Stops the pipeline on a thread of GStreamer's own (not the streaming thread that told of the
    // end, which stopping waits for), then calls the completion.
    void endSoon() {
        gst_element_call_async(pipeline, &State::end, new std::shared_ptr<State>(shared_from_this()),
                               &deleteShared<State>);
    }

    static void end(GstElement* pipeline, gpointer data) {
        State& state = **static_cast<std::shared_ptr<State>*>(data);
        gst_element_set_state(pipeline, GST_STATE_NULL);
        std::function<void()> completion;
        {
            const std::lock_guard lock(state.mutex);
            if (state.status == Status::writing) {
                state.status = Status::completed;
            }
            completion = std::exchange(state.completion, {});
        }
        if (completion) {
            completion();
        }
    }

    void onMessage(GstMessage* message) {
        if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_EOS) {
            const std::lock_guard lock(mutex);
            endSoon();
        } else {
            const GStreamerPipeline::Failure failure = GStreamerPipeline::failure(message);
            fail({failure.code, failure.message});
        }
    }

    // The video as it enters the muxer, parsed: its caps name the profile the encoder chose.
    static void onVideoCaps(GstPad* pad, GParamSpec* /*property*/, gpointer data) {
        State& state = **static_cast<std::shared_ptr<State>*>(data);
        GstCaps* caps = gst_pad_get_current_caps(pad);
        if (!caps) {
            return;
        }
        if (const gchar* profile = gst_structure_get_string(gst_caps_get_structure(caps, 0), "profile")) {
            const std::lock_guard lock(state.mutex);
            if (state.profile.isEmpty()) {
                state.profile = QString::fromUtf8(profile);
                qInfo("Screen recordings are encoded by %s, H.264 profile %s", qPrintable(state.encoder), profile);
            }
        }
        gst_caps_unref(caps);
    }
};

GStreamerMovieWriter::GStreamerMovieWriter(QString path, QString encoder)
    : m_path(std::move(path))
    , m_encoder(std::move(encoder))
    , m_state(std::make_shared<State>()) {
    GStreamerPipeline::initialize(tr("The movie could not be set up"));
    m_state->encoder = m_encoder;
}

GStreamerMovieWriter::~GStreamerMovieWriter() = default;

QString GStreamerMovieWriter::profile() const {
    const std::lock_guard lock(m_state->mutex);
    return m_state->profile;
}

bool GStreamerMovieWriter::addVideoInput(const VideoSettings& settings) {
    // H.264 of 4:2:0 pictures wants even sizes.
    const QSize size = settings.size;
    if (m_pipeline || m_video || size.width() < 2 || size.height() < 2 || size.width() % 2 != 0 ||
        size.height() % 2 != 0 || settings.averageBitRate < bitsPerKilobit || settings.framesPerSecond < 1) {
        return false;
    }
    m_video = settings;
    m_frames = std::make_unique<I420Frames>(size, settings.framesPerSecond);
    m_videoLimit = framesQueued * m_frames->frameBytes();
    return true;
}

bool GStreamerMovieWriter::addAudioInput(const AudioFormat& sourceFormat) {
    GstAudioInfo info;
    GstCaps* caps = rawAudioCaps(sourceFormat, &info);
    if (m_pipeline || m_audio || !caps) {
        if (caps) {
            gst_caps_unref(caps);
        }
        return false;
    }
    gst_caps_unref(caps);
    m_audio = sourceFormat;
    m_audioLimit = guint64(GST_AUDIO_INFO_BPF(&info)) * guint64(GST_AUDIO_INFO_RATE(&info));
    return true;
}

QString GStreamerMovieWriter::description() const {
    const qint64 bitRate = m_video->averageBitRate;
    const QString encoding =
        m_encoder == QLatin1String("x264enc")
            // ultrafast would give Constrained Baseline whatever the caps ask for; veryfast gives High.
            // One thread encodes a 1080p frame in a fifth of a frame's time, and more threads
            // would each hold their own slice's memory (some 20 MB at 1080p) and cost their
            // hand-offs.
            ? QStringLiteral("x264enc bitrate=%1 speed-preset=veryfast tune=zerolatency threads=1"
                             " ! video/x-h264,profile=high")
                  .arg(bitRate / bitsPerKilobit)
            : QStringLiteral("openh264enc bitrate=%1 rate-control=bitrate complexity=low").arg(bitRate);
    // The frames' caps are the video input's own, set once it is there.
    QString description = QStringLiteral("appsrc name=video format=time is-live=true block=false max-bytes=0"
                                         " emit-signals=false ! %1 ! h264parse name=parser"
                                         " ! qtmux name=mux ! filesink name=file")
                              .arg(encoding);
    if (m_audio) {
        // Linked by hand once it has its caps, so that the muxer gives it an audio pad. The muxer
        // takes raw sound only as one unbroken run: audiorate fills a pause, or a microphone that
        // fell behind, with silence, so the sound keeps its place beside the pictures.
        description += QStringLiteral(" appsrc name=audio format=time is-live=true block=false max-bytes=0"
                                      " emit-signals=false ! audiorate name=gapless");
    }
    return description;
}

bool GStreamerMovieWriter::startWriting() {
    if (m_pipeline || !m_video || status() != Status::unknown) {
        return false;
    }
    try {
        m_pipeline =
            std::make_unique<GStreamerPipeline>(description(), tr("The movie could not be set up"),
                                                [state = m_state](GstMessage* message) { state->onMessage(message); });
    } catch (const ScreenRecordingError& failure) {
        m_state->fail({0, std::get<ScreenRecordingError::WriterFailed>(failure.failure()).message});
        return false;
    }
    m_state->pipeline = m_pipeline->pipeline();
    m_videoSource = m_pipeline->element("video");
    GstCaps* frameCaps = m_frames->caps();
    g_object_set(m_videoSource, "caps", frameCaps, nullptr);
    gst_caps_unref(frameCaps);
    g_object_set(m_pipeline->element("file"), "location", QFile::encodeName(m_path).constData(), nullptr);
    if (m_audio) {
        m_audioSource = m_pipeline->element("audio");
        GstAudioInfo info;
        GstCaps* caps = rawAudioCaps(*m_audio, &info);
        g_object_set(m_audioSource, "caps", caps, nullptr);
        gst_caps_unref(caps);
        if (!gst_element_link_pads(m_pipeline->element("gapless"), "src", m_pipeline->element("mux"), "audio_%u")) {
            m_state->fail({0, tr("The movie could not take the microphone's sound.")});
            return false;
        }
    }
    GstPad* parsed = gst_element_get_static_pad(m_pipeline->element("parser"), "src");
    g_signal_connect_data(
        parsed, "notify::caps", G_CALLBACK(&State::onVideoCaps), new std::shared_ptr<State>(m_state),
        [](gpointer data, GClosure*) { deleteShared<State>(data); }, GConnectFlags{});
    gst_object_unref(parsed);

    m_state->setStatus(Status::writing);
    if (!m_pipeline->start()) {
        // An element that refused has posted its error, which the movie keeps.
        m_state->fail({0, tr("The movie's pipeline did not start.")});
        return false;
    }
    return true;
}

void GStreamerMovieWriter::startSession(qint64 sourceTime) {
    m_sessionStart = sourceTime;
}

bool GStreamerMovieWriter::isReady(GstElement* source, bool finished, guint64 limit) const {
    return source && !finished && status() == Status::writing &&
           gst_app_src_get_current_level_bytes(GST_APP_SRC(source)) < limit;
}

bool GStreamerMovieWriter::isReadyForMoreVideo() const {
    return isReady(m_videoSource, m_videoFinished, m_videoLimit);
}

bool GStreamerMovieWriter::isReadyForMoreAudio() const {
    return isReady(m_audioSource, m_audioFinished, m_audioLimit);
}

std::optional<GstClockTime> GStreamerMovieWriter::sessionTime(std::optional<qint64> time) const {
    if (!time || !m_sessionStart || *time < *m_sessionStart) {
        return std::nullopt;
    }
    return static_cast<GstClockTime>(*time - *m_sessionStart);
}

bool GStreamerMovieWriter::push(GstElement* source, GstBuffer* buffer, GstClockTime presentation,
                                const SampleTiming& timing) const {
    GST_BUFFER_PTS(buffer) = presentation;
    GST_BUFFER_DTS(buffer) = sessionTime(timing.decode).value_or(GST_CLOCK_TIME_NONE);
    GST_BUFFER_DURATION(buffer) =
        timing.duration && *timing.duration >= 0 ? static_cast<GstClockTime>(*timing.duration) : GST_CLOCK_TIME_NONE;
    // The source takes the buffer over.
    return gst_app_src_push_buffer(GST_APP_SRC(source), buffer) == GST_FLOW_OK;
}

bool GStreamerMovieWriter::appendVideo(const VideoFrame& frame) {
    const std::optional<GstClockTime> presentation = sessionTime(frame.timing.presentation);
    if (!presentation || !isReadyForMoreVideo()) {
        return false;
    }
    GstBuffer* buffer = m_frames->converted(frame.pixels);
    return buffer && push(m_videoSource, buffer, *presentation, frame.timing);
}

bool GStreamerMovieWriter::appendAudio(const AudioBuffer& buffer) {
    const std::optional<GstClockTime> presentation = sessionTime(buffer.timing.presentation);
    if (!presentation || !isReadyForMoreAudio() || buffer.data.isEmpty()) {
        return false;
    }
    const auto* native = dynamic_cast<const GStreamerSample*>(buffer.native.get());
    GstBuffer* samples = native && native->holds(buffer.data.constData()) && native->size() == buffer.data.size()
                             ? gst_buffer_copy(native->buffer())
                             : gst_buffer_new_memdup(buffer.data.constData(), buffer.data.size());
    return push(m_audioSource, samples, *presentation, buffer.timing);
}

void GStreamerMovieWriter::markVideoFinished() {
    if (m_videoSource && !m_videoFinished) {
        gst_app_src_end_of_stream(GST_APP_SRC(m_videoSource));
    }
    m_videoFinished = true;
}

void GStreamerMovieWriter::markAudioFinished() {
    if (m_audioSource && !m_audioFinished) {
        gst_app_src_end_of_stream(GST_APP_SRC(m_audioSource));
    }
    m_audioFinished = true;
}

void GStreamerMovieWriter::finishWriting(std::function<void()> completion) {
    if (!m_pipeline) {
        completion();
        return;
    }
    // The completion is in place before the end of the stream can come.
    m_state->awaitEnd(std::move(completion));
    markVideoFinished();
    markAudioFinished();
}

void GStreamerMovieWriter::cancelWriting() {
    const std::function<void()> completion = m_state->cancel();
    if (m_pipeline) {
        m_pipeline->stop();
    }
    if (completion) {
        completion();
    }
}

MovieWriter::Status GStreamerMovieWriter::status() const {
    const std::lock_guard lock(m_state->mutex);
    return m_state->status;
}

std::optional<MovieWriter::Error> GStreamerMovieWriter::error() const {
    const std::lock_guard lock(m_state->mutex);
    return m_state->error;
}
