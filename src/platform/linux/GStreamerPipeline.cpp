#include "platform/linux/GStreamerPipeline.h"

#include "core/recording/ScreenRecordingError.h"

#include <QPromise>
#include <mutex>

// What the bus tells, shared with the bus's sync handler, which may still run on another thread
// while the pipeline goes.
struct GStreamerPipeline::Listener {
    GstElement* pipeline = nullptr; // compared with message sources only
    MessageHandler handler;
    std::mutex mutex;
    std::shared_ptr<QPromise<std::optional<QString>>> starting;

    // Ends the wait of play(), if one waits.
    void started(const std::optional<QString>& failure) {
        const std::lock_guard lock(mutex);
        if (starting) {
            starting->addResult(failure);
            starting->finish();
            starting.reset();
        }
    }

    static GstBusSyncReply onMessage(GstBus* /*bus*/, GstMessage* message, gpointer data) {
        auto& listener = **static_cast<std::shared_ptr<Listener>*>(data);
        switch (GST_MESSAGE_TYPE(message)) {
        case GST_MESSAGE_ERROR:
            listener.started(failure(message).message);
            [[fallthrough]];
        case GST_MESSAGE_EOS:
            if (listener.handler) {
                listener.handler(message);
            }
            break;
        case GST_MESSAGE_STATE_CHANGED:
            if (GST_MESSAGE_SRC(message) == GST_OBJECT_CAST(listener.pipeline)) {
                GstState state = GST_STATE_NULL;
                gst_message_parse_state_changed(message, nullptr, &state, nullptr);
                if (state == GST_STATE_PLAYING) {
                    listener.started(std::nullopt);
                }
            }
            break;
        default:
            break;
        }
        return GST_BUS_DROP;
    }
};

void GStreamerPipeline::initialize(const QString& what) {
    GError* error = nullptr;
    if (!gst_init_check(nullptr, nullptr, &error)) {
        const QString message = QString::fromUtf8(error->message);
        g_error_free(error);
        throw ScreenRecordingError::writerFailed(tr("%1: GStreamer could not start (%2).").arg(what, message));
    }
}

GStreamerPipeline::GStreamerPipeline(const QString& description, const QString& what, MessageHandler handler)
    : m_listener(std::make_shared<Listener>()) {
    initialize(what);
    GError* error = nullptr;
    m_pipeline = gst_parse_launch_full(description.toUtf8().constData(), nullptr, GST_PARSE_FLAG_FATAL_ERRORS, &error);
    if (!m_pipeline) {
        const QString message = QString::fromUtf8(error->message);
        g_error_free(error);
        throw ScreenRecordingError::writerFailed(QStringLiteral("%1: %2").arg(what, message));
    }
    gst_object_ref_sink(m_pipeline);
    GstClock* clock = gst_system_clock_obtain();
    gst_pipeline_use_clock(GST_PIPELINE(m_pipeline), clock);
    gst_object_unref(clock);

    m_listener->pipeline = m_pipeline;
    m_listener->handler = std::move(handler);
    GstBus* bus = gst_pipeline_get_bus(GST_PIPELINE(m_pipeline));
    gst_bus_set_sync_handler(bus, &Listener::onMessage, new std::shared_ptr<Listener>(m_listener),
                             [](gpointer data) { delete static_cast<std::shared_ptr<Listener>*>(data); });
    gst_object_unref(bus);
}

GStreamerPipeline::~GStreamerPipeline() {
    stop();
    GstBus* bus = gst_pipeline_get_bus(GST_PIPELINE(m_pipeline));
    gst_bus_set_sync_handler(bus, nullptr, nullptr, nullptr);
    gst_object_unref(bus);
    gst_object_unref(m_pipeline);
}

GstElement* GStreamerPipeline::element(const char* name) const {
    GstElement* element = gst_bin_get_by_name(GST_BIN(m_pipeline), name);
    if (element) {
        gst_object_unref(element); // the pipeline holds it as long as it lives
    }
    return element;
}

QFuture<std::optional<QString>> GStreamerPipeline::play() {
    // A pipeline that failed before keeps elements in odd states: it starts from NULL.
    stop();
    return playFromHere();
}

void GStreamerPipeline::pause() {
    gst_element_set_state(m_pipeline, GST_STATE_PAUSED);
}

QFuture<std::optional<QString>> GStreamerPipeline::resume() {
    return playFromHere();
}

QFuture<std::optional<QString>> GStreamerPipeline::playFromHere() {
    auto promise = std::make_shared<QPromise<std::optional<QString>>>();
    QFuture<std::optional<QString>> future = promise->future();
    promise->start();
    {
        const std::lock_guard lock(m_listener->mutex);
        m_listener->starting = promise;
    }
    if (!start()) {
        // An element that refused has posted its error, which has ended the wait; this is for one
        // that didn't say why.
        m_listener->started(tr("The pipeline did not start."));
    }
    return future;
}

bool GStreamerPipeline::start() {
    return gst_element_set_state(m_pipeline, GST_STATE_PLAYING) != GST_STATE_CHANGE_FAILURE;
}

void GStreamerPipeline::stop() {
    gst_element_set_state(m_pipeline, GST_STATE_NULL);
    m_listener->started(tr("The pipeline was stopped before it played."));
}

GStreamerPipeline::Failure GStreamerPipeline::failure(GstMessage* error) {
    GError* gerror = nullptr;
    gst_message_parse_error(error, &gerror, nullptr);
    Failure result{gerror ? gerror->code : 0, gerror ? QString::fromUtf8(gerror->message) : QString()};
    if (gerror) {
        g_error_free(gerror);
    }
    return result;
}
