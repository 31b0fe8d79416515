#pragma once

#include "core/platform/MovieWriter.h"

#include <QCoreApplication>
#include <gst/gst.h>
#include <memory>

class GStreamerPipeline;
class I420Frames;

// A QuickTime movie written through GStreamer: the video's appsrc (BGRx at the configured size)
// → videoconvert → the H.264 encoder → qtmux → filesink, and the microphone's appsrc straight into
// qtmux, as raw PCM. Frames captured by GStreamer go in as their own buffers, others as copies of
// their pixels. The encoder is x264enc (High profile, veryfast, tuned for zero latency) or
// openh264enc, as the factory found.
class GStreamerMovieWriter : public MovieWriter {
    Q_DECLARE_TR_FUNCTIONS(GStreamerMovieWriter)

public:
    // A movie at `path`, its video encoded by the element `encoder`: "x264enc" or "openh264enc".
    GStreamerMovieWriter(QString path, QString encoder);
    // Stops the pipeline at once, as a cancel does.
    ~GStreamerMovieWriter() override;
    GStreamerMovieWriter(const GStreamerMovieWriter&) = delete;
    GStreamerMovieWriter& operator=(const GStreamerMovieWriter&) = delete;

    QString encoder() const { return m_encoder; }
    // The H.264 profile the encoder's stream was negotiated with; empty until it has been.
    QString profile() const;

    bool addVideoInput(const VideoSettings& settings) override;
    bool addAudioInput(const AudioFormat& sourceFormat) override;
    bool startWriting() override;
    void startSession(qint64 sourceTime) override;
    bool isReadyForMoreVideo() const override;
    bool isReadyForMoreAudio() const override;
    bool appendVideo(const VideoFrame& frame) override;
    bool appendAudio(const AudioBuffer& buffer) override;
    void markVideoFinished() override;
    void markAudioFinished() override;
    void finishWriting(std::function<void()> completion) override;
    void cancelWriting() override;
    Status status() const override;
    std::optional<Error> error() const override;

private:
    struct State;

    QString description() const;
    // The movie's time of a sample's `time`, counted from the session's start; none for a time
    // before it, or none at all.
    std::optional<GstClockTime> sessionTime(std::optional<qint64> time) const;
    bool push(GstElement* source, GstBuffer* buffer, GstClockTime presentation, const SampleTiming& timing) const;
    bool isReady(GstElement* source, bool finished, guint64 limit) const;

    QString m_path;
    QString m_encoder;
    std::optional<VideoSettings> m_video;
    std::unique_ptr<I420Frames> m_frames;
    std::optional<AudioFormat> m_audio;
    // How many bytes an input may hold before it takes no more: 8 frames, 1 s of sound.
    guint64 m_videoLimit = 0;
    guint64 m_audioLimit = 0;
    std::shared_ptr<State> m_state;
    std::unique_ptr<GStreamerPipeline> m_pipeline;
    GstElement* m_videoSource = nullptr;
    GstElement* m_audioSource = nullptr;
    std::optional<qint64> m_sessionStart;
    bool m_videoFinished = false;
    bool m_audioFinished = false;
};
