#pragma once

#include <QCoreApplication>
#include <QFuture>
#include <QString>
#include <functional>
#include <gst/gst.h>
#include <memory>
#include <optional>

// A GStreamer pipeline made from a launch description. It runs on the monotonic system clock, so
// that the times of its buffers and those of any other such pipeline are of one clock that goes on
// across a stop and a start. Its bus messages are seen on the thread that posts them; none waits in
// the bus.
class GStreamerPipeline {
    Q_DECLARE_TR_FUNCTIONS(GStreamerPipeline)

public:
    // GStreamer's word on a failure: the GError's code and message.
    struct Failure {
        qint64 code = 0;
        QString message;
    };
    // Called with each error and end-of-stream message, on the thread that posts it.
    using MessageHandler = std::function<void(GstMessage*)>;

    // Throws ScreenRecordingError::writerFailed, naming `what` and GStreamer's message, when the
    // description names an element that isn't installed or doesn't parse.
    GStreamerPipeline(const QString& description, const QString& what, MessageHandler handler = {});
    // Stops the pipeline; no streaming thread runs after it.
    ~GStreamerPipeline();
    GStreamerPipeline(const GStreamerPipeline&) = delete;
    GStreamerPipeline& operator=(const GStreamerPipeline&) = delete;

    GstElement* pipeline() const { return m_pipeline; }
    // The element of that name in the pipeline (not a reference of its own), or null.
    GstElement* element(const char* name) const;

    // Starts again from the beginning; the future gets nothing once the pipeline plays, or the
    // message of the error that came first.
    QFuture<std::optional<QString>> play();
    // Holds a playing pipeline where it is: no data flows, and the elements keep what they hold
    // (an X11 capture its display and shared memory, which buffers still in use refer to).
    void pause();
    // Plays on from a pause, with play()'s future.
    QFuture<std::optional<QString>> resume();
    // Starts without waiting; false when an element refused at once.
    bool start();
    // To NULL: returns once every streaming thread has ended.
    void stop();

    static Failure failure(GstMessage* error);
    // Initializes GStreamer once; throws ScreenRecordingError::writerFailed naming `what` when it
    // can't.
    static void initialize(const QString& what);

private:
    struct Listener;
    QFuture<std::optional<QString>> playFromHere();

    GstElement* m_pipeline = nullptr;
    std::shared_ptr<Listener> m_listener;
};
