#pragma once

#include "core/platform/MediaSample.h"

#include <QSize>
#include <QString>
#include <functional>
#include <memory>
#include <optional>

// How the video of a movie is encoded: H.264, High profile at the level the size needs.
struct VideoSettings {
    QSize size;
    qint64 averageBitRate = 0;
    // The rate the frames come at, which the encoder's rate control works from; each frame still
    // keeps its own time.
    int framesPerSecond = 30;

    bool operator==(const VideoSettings&) const = default;
};

// Writes one QuickTime movie from timestamped samples, in real time: an input that is not ready
// takes nothing, and nothing blocks. Inputs are added before writing starts. Safe to call from one
// thread at a time; status() and error() from any.
class MovieWriter {
public:
    enum class Status { unknown, writing, completed, failed, cancelled };
    struct Error {
        qint64 code = 0;
        QString description;
    };

    virtual ~MovieWriter() = default;

    // False when the writer can't take such an input.
    virtual bool addVideoInput(const VideoSettings& settings) = 0;
    // The samples are written as they come, without re-encoding.
    virtual bool addAudioInput(const AudioFormat& sourceFormat) = 0;
    virtual bool startWriting() = 0;
    // Source time `sourceTime` is the start of the movie.
    virtual void startSession(qint64 sourceTime) = 0;
    virtual bool isReadyForMoreVideo() const = 0;
    virtual bool isReadyForMoreAudio() const = 0;
    // Whether the sample was taken.
    virtual bool appendVideo(const VideoFrame& frame) = 0;
    virtual bool appendAudio(const AudioBuffer& buffer) = 0;
    virtual void markVideoFinished() = 0;
    virtual void markAudioFinished() = 0;
    // Ends the movie; `completion` runs once it is written or has failed, on any thread.
    virtual void finishWriting(std::function<void()> completion) = 0;
    virtual void cancelWriting() = 0;
    virtual Status status() const = 0;
    virtual std::optional<Error> error() const = 0;
};

// Makes the writer of a movie at a path; throws ScreenRecordingError when it can't.
class MovieWriterFactory {
public:
    virtual ~MovieWriterFactory() = default;

    virtual std::unique_ptr<MovieWriter> makeWriter(const QString& path) = 0;
};
