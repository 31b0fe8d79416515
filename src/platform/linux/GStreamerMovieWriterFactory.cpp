#include "platform/linux/GStreamerMovieWriterFactory.h"

#include "core/recording/ScreenRecordingError.h"
#include "platform/linux/GStreamerMovieWriter.h"
#include "platform/linux/GStreamerPipeline.h"

#include <gst/gst.h>

namespace {
bool installed(const char* element) {
    GstElementFactory* factory = gst_element_factory_find(element);
    if (factory) {
        gst_object_unref(factory);
    }
    return factory != nullptr;
}
} // namespace

std::unique_ptr<MovieWriter> GStreamerMovieWriterFactory::makeWriter(const QString& path) {
    GStreamerPipeline::initialize(tr("The movie could not be set up"));
    if (!installed("qtmux")) {
        throw ScreenRecordingError::writerFailed(
            tr("GStreamer's QuickTime muxer (qtmux, of gstreamer1.0-plugins-good) is not installed."));
    }
    // openh264enc gives Constrained Baseline only: x264enc's High profile comes first.
    for (const char* encoder : {"x264enc", "openh264enc"}) {
        if (installed(encoder)) {
            return std::make_unique<GStreamerMovieWriter>(path, QString::fromLatin1(encoder));
        }
    }
    throw ScreenRecordingError::writerFailed(
        tr("No H.264 encoder is installed for GStreamer (x264enc of "
           "gstreamer1.0-plugins-ugly, or openh264enc of gstreamer1.0-plugins-bad)."));
}
