#include "platform/linux/GStreamerCameraFeed.h"

#include "core/recording/ScreenRecordingError.h"

#include <QCoreApplication>
#include <gst/app/gstappsink.h>
#include <gst/gst.h>
#include <gst/video/video.h>

namespace {
// After the source: 640 × 480 asked of it first, any size else; mirrored left to right; BGRx (the
// bytes of QImage::Format_RGB32 on a little-endian machine), shrunk to fit 640 × 480 where larger;
// a sink that drops every frame but the newest.
constexpr const char* outputDescription =
    "capsfilter caps=\"video/x-raw,width=640,height=480;video/x-raw\" "
    "! videoflip video-direction=horiz ! videoconvert ! videoscale "
    "! video/x-raw,format=BGRx,width=[1,640],height=[1,480],pixel-aspect-ratio=1/1 "
    "! appsink name=frames drop=true max-buffers=1 sync=false";

QString translated(const char* text) {
    return QCoreApplication::translate("GStreamerCameraFeed", text);
}

// The elements of a gst-launch-1.0 description as one bin with its open pads; null when the
// description doesn't make one.
GstElement* binOf(const char* description) {
    GError* error = nullptr;
    GstElement* bin = gst_parse_bin_from_description(description, TRUE, &error);
    if (error) {
        g_error_free(error);
        if (bin) {
            gst_object_unref(gst_object_ref_sink(bin));
        }
        return nullptr;
    }
    return bin;
}

// The first camera the desktop lists, as the source element its device makes.
GstElement* firstCamera() {
    GstDeviceMonitor* monitor = gst_device_monitor_new();
    gst_device_monitor_add_filter(monitor, "Video/Source", nullptr);
    GList* devices = gst_device_monitor_get_devices(monitor);
    gst_object_unref(monitor);
    if (!devices) {
        throw ScreenRecordingError::writerFailed(translated("No camera found."));
    }
    GstElement* source = gst_device_create_element(GST_DEVICE(devices->data), nullptr);
    g_list_free_full(devices, gst_object_unref);
    if (!source) {
        throw ScreenRecordingError::writerFailed(translated("Could not access the camera."));
    }
    return source;
}

// A copy of the sample's picture; null when it holds none.
QImage imageOf(GstSample* sample) {
    GstCaps* caps = gst_sample_get_caps(sample);
    GstBuffer* buffer = gst_sample_get_buffer(sample);
    GstVideoInfo info;
    GstVideoFrame frame;
    if (!caps || !buffer || !gst_video_info_from_caps(&info, caps) ||
        !gst_video_frame_map(&frame, &info, buffer, GST_MAP_READ)) {
        return {};
    }
    const QImage view(static_cast<const uchar*>(GST_VIDEO_FRAME_PLANE_DATA(&frame, 0)), GST_VIDEO_FRAME_WIDTH(&frame),
                      GST_VIDEO_FRAME_HEIGHT(&frame), GST_VIDEO_FRAME_PLANE_STRIDE(&frame, 0), QImage::Format_RGB32);
    QImage copy = view.copy();
    gst_video_frame_unmap(&frame);
    return copy;
}
} // namespace

struct GStreamerCameraFeed::Pipeline {
    GstElement* element = GST_ELEMENT(gst_object_ref_sink(gst_pipeline_new("camera")));

    Pipeline() = default;
    Pipeline(const Pipeline&) = delete;
    Pipeline& operator=(const Pipeline&) = delete;
    // Setting the pipeline to NULL waits for its threads to leave the callbacks.
    ~Pipeline() {
        gst_element_set_state(element, GST_STATE_NULL);
        gst_object_unref(element);
    }

    // On the streaming thread, for each frame.
    static GstFlowReturn onSample(GstAppSink* sink, gpointer data) {
        auto* delivery = static_cast<Delivery*>(data);
        GstSample* sample = gst_app_sink_pull_sample(sink);
        if (!sample) {
            return GST_FLOW_OK;
        }
        QImage frame = imageOf(sample);
        gst_sample_unref(sample);
        if (!frame.isNull()) {
            const std::lock_guard lock(delivery->mutex);
            delivery->latestFrame = std::move(frame);
            delivery->delivering = true;
        }
        return GST_FLOW_OK;
    }

    // On whichever thread posts a message; nobody else reads the bus, so each is dropped here.
    static GstBusSyncReply onMessage(GstBus* /*bus*/, GstMessage* message, gpointer data) {
        if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_EOS || GST_MESSAGE_TYPE(message) == GST_MESSAGE_ERROR) {
            static_cast<Delivery*>(data)->ended = true;
        }
        return GST_BUS_DROP;
    }
};

GStreamerCameraFeed::GStreamerCameraFeed() = default;

GStreamerCameraFeed::GStreamerCameraFeed(QString sourceDescription)
    : m_sourceDescription(std::move(sourceDescription)) {}

GStreamerCameraFeed::~GStreamerCameraFeed() {
    stop();
}

void GStreamerCameraFeed::start() {
    if (m_pipeline) {
        return;
    }
    gst_init(nullptr, nullptr);
    // Each element joins the pipeline as soon as it is made, which then owns it.
    auto pipeline = std::make_unique<Pipeline>();
    GstElement* source = m_sourceDescription ? binOf(m_sourceDescription->toUtf8().constData()) : firstCamera();
    if (!source) {
        throw ScreenRecordingError::writerFailed(translated("Could not access the camera."));
    }
    gst_bin_add(GST_BIN(pipeline->element), source);
    GstElement* output = binOf(outputDescription);
    if (!output) {
        throw ScreenRecordingError::writerFailed(translated("Could not configure camera output."));
    }
    gst_bin_add(GST_BIN(pipeline->element), output);
    GstElement* sink = gst_bin_get_by_name(GST_BIN(output), "frames");
    if (!sink || !gst_element_link(source, output)) {
        if (sink) {
            gst_object_unref(sink);
        }
        throw ScreenRecordingError::writerFailed(translated("Could not configure camera output."));
    }
    GstAppSinkCallbacks callbacks = {};
    callbacks.new_sample = Pipeline::onSample;
    gst_app_sink_set_callbacks(GST_APP_SINK(sink), &callbacks, &m_delivery, nullptr);
    gst_object_unref(sink);
    GstBus* bus = gst_element_get_bus(pipeline->element);
    gst_bus_set_sync_handler(bus, Pipeline::onMessage, &m_delivery, nullptr);
    gst_object_unref(bus);

    m_delivery.ended = false;
    // The source opens its device on the way to PLAYING, which is refused at once when it can't.
    if (gst_element_set_state(pipeline->element, GST_STATE_PLAYING) == GST_STATE_CHANGE_FAILURE) {
        throw ScreenRecordingError::writerFailed(translated("Could not access the camera."));
    }
    m_pipeline = std::move(pipeline);
}

void GStreamerCameraFeed::stop() {
    m_pipeline.reset();
    const std::lock_guard lock(m_delivery.mutex);
    m_delivery.latestFrame = QImage();
    m_delivery.delivering = false;
}

bool GStreamerCameraFeed::isRunning() const {
    return m_pipeline && m_delivery.delivering && !m_delivery.ended;
}

QImage GStreamerCameraFeed::latestFrame() const {
    const std::lock_guard lock(m_delivery.mutex);
    return m_delivery.latestFrame;
}
