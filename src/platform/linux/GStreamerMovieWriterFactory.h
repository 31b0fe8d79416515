#pragma once

#include "core/platform/MovieWriter.h"

#include <QCoreApplication>

// Makes GStreamerMovieWriters, with x264enc where it is installed and openh264enc otherwise.
class GStreamerMovieWriterFactory : public MovieWriterFactory {
    Q_DECLARE_TR_FUNCTIONS(GStreamerMovieWriterFactory)

public:
    // Throws ScreenRecordingError::writerFailed when GStreamer lacks an H.264 encoder or qtmux.
    std::unique_ptr<MovieWriter> makeWriter(const QString& path) override;
};
