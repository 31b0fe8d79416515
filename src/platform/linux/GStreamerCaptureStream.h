#pragma once

#include "core/platform/CaptureStream.h"

#include <QCoreApplication>
#include <QFuture>
#include <atomic>
#include <gst/app/gstappsink.h>
#include <memory>
#include <optional>
#include <vector>

class GStreamerPipeline;

// A screen capture through GStreamer: ximagesrc for an X11 window or region, pipewiresrc for a
// PipeWire node of a ScreenCast session, and pulsesrc for the microphone (the sound server's
// default source, or $PULSE_SOURCE), all in one pipeline. Frames come as BGRx at the configured
// size, each a view of GStreamer's own buffer; microphone samples as signed 16-bit PCM. Their times
// are the monotonic clock's (running time plus base time), so they go on across a stop and a start.
// Outputs are added before the capture starts and are called on GStreamer's streaming threads.
class GStreamerCaptureStream : public CaptureStream {
    Q_DECLARE_TR_FUNCTIONS(GStreamerCaptureStream)

public:
    // Throws ScreenRecordingError::writerFailed when an element is missing.
    GStreamerCaptureStream(const CaptureTarget& target, const CaptureConfiguration& configuration);
    // Stops the capture; no output runs after it.
    ~GStreamerCaptureStream() override;
    GStreamerCaptureStream(const GStreamerCaptureStream&) = delete;
    GStreamerCaptureStream& operator=(const GStreamerCaptureStream&) = delete;

    void addScreenOutput(std::function<void(VideoFrame)> output) override;
    void addMicrophoneOutput(std::function<void(AudioBuffer)> output) override;
    // Plays the pipeline ahead of the start and holds back what it captures meanwhile, so that the
    // first frames come at once when the capture starts.
    void prepare();
    QCoro::Task<> startCapture() override;
    QCoro::Task<> stopCapture() override;

private:
    static GstFlowReturn onVideoSample(GstAppSink* sink, gpointer stream);
    static GstFlowReturn onAudioSample(GstAppSink* sink, gpointer stream);
    // The sample's times on the monotonic clock.
    SampleTiming timing(GstSample* sample) const;
    // A frame, or microphone samples, made of a sample whose reference they take over; no frame
    // while it precedes the microphone.
    std::optional<VideoFrame> videoFrame(GstSample* sample);
    std::optional<AudioBuffer> audioBuffer(GstSample* sample);
    // Whether a frame with this timing comes before the microphone has settled, a tenth of a
    // second after its first sample, within the capture's first second. A movie with sound begins
    // with its sound, and the frames that came before would only be lost further on while the
    // first of them stood still; a microphone still silent after a second holds nothing back.
    bool precedesMicrophone(const SampleTiming& timing);

    // A duplicate of the PipeWire remote's descriptor, which the pipeline reads from; -1 for X11.
    int m_pipeWireFd = -1;
    std::unique_ptr<GStreamerPipeline> m_pipeline;
    // Stopped, and held where it was rather than ended.
    bool m_held = false;
    // Played by prepare() and not started yet: whether the pipeline came to play.
    std::optional<QFuture<std::optional<QString>>> m_preparing;
    // The valve after a PipeWire source, null for X11. pipewiresrc (of PipeWire 0.3) can't be
    // paused and played again: played before its stream has told it streams once more, it ends
    // its streaming task as though flushed, and the pipeline plays on without a frame. A PipeWire
    // capture therefore plays from its first start to its end, and a stop closes the valve.
    GstElement* m_gate = nullptr;
    // Whether samples go to the outputs: from a start to a stop. Frames on their way at a stop are
    // dropped as they come.
    std::atomic<bool> m_delivering = false;
    const bool m_waitsForMicrophone;
    // The time of the microphone's first sample, once it has come.
    static constexpr qint64 notHeard = -1;
    std::atomic<qint64> m_microphoneHeardAt = notHeard;
    // The time of the capture's first frame, and whether frames go on now, on the video's
    // streaming thread.
    std::optional<qint64> m_firstFrameTime;
    bool m_microphoneSettled = false;
    std::vector<std::function<void(VideoFrame)>> m_screenOutputs;
    std::vector<std::function<void(AudioBuffer)>> m_microphoneOutputs;
};
