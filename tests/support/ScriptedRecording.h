#pragma once

#include "core/async/OneShot.h"
#include "core/async/Sleeper.h"
#include "core/platform/CaptureStream.h"
#include "core/platform/MicrophoneAccess.h"
#include "core/platform/MovieWriter.h"
#include "core/recording/FacecamOverlay.h"
#include "core/recording/ScreenRecordingEngine.h"
#include "core/recording/ScreenRecordingError.h"

#include <QColor>
#include <QDateTime>
#include <QList>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>

// The pieces a screen recording is made through, driven by the test: a capture stream that
// delivers the frames and samples the test hands it, a movie writer that notes what it is given and
// refuses or fails when told, a microphone whose answer the test sets, a facecam of one colour, and
// waits that last until the test ends them. What each stream, writer and facecam did is kept in a
// record that outlives it, so a test reads it after the engine has let it go.
namespace ScriptedRecording {

qint64 nanoseconds(double seconds);
// A frame of `size` in one colour, presented at `seconds`.
VideoFrame frame(double seconds, QSize size = {64, 48}, QColor colour = Qt::darkBlue);
// Ten milliseconds of 48 kHz stereo microphone sound presented at `seconds`.
AudioBuffer microphone(double seconds);

// A capture stream's record.
struct StreamRecord {
    CaptureConfiguration configuration;
    std::function<void(VideoFrame)> screen;
    std::function<void(AudioBuffer)> microphone;
    int starts = 0;
    int stops = 0;
    bool capturing = false;
    std::optional<ScreenRecordingError> startFails;
    // Thrown by every stop of a stream that has stopped already.
    std::optional<ScreenRecordingError> stopOfStoppedStreamFails;

    // Hands a sample to the engine, as the source's thread would.
    void deliver(VideoFrame frame) const { screen(std::move(frame)); }
    void deliver(AudioBuffer buffer) const { microphone(std::move(buffer)); }
};

class CaptureService : public ScreenCaptureService {
public:
    QCoro::Task<> checkAccess() override;
    std::unique_ptr<CaptureStream> makeStream(const CaptureTarget& target,
                                              const CaptureConfiguration& configuration) override;
    void prepareStream(const CaptureTarget& target, const CaptureConfiguration& configuration) override {
        prepared.append({target, configuration});
    }

    // What was prepared, oldest first.
    QList<std::pair<CaptureTarget, CaptureConfiguration>> prepared;
    std::optional<ScreenRecordingError> accessFails;
    std::optional<ScreenRecordingError> streamsFailToStart;
    // The streams made, newest last.
    QList<std::shared_ptr<StreamRecord>> streams;
};

// A movie writer's record.
struct WriterRecord {
    QString path;
    std::optional<VideoSettings> video;
    std::optional<AudioFormat> audio;
    QList<qint64> sessionStarts;
    QList<VideoFrame> frames;
    QList<AudioBuffer> samples;
    MovieWriter::Status status = MovieWriter::Status::unknown;
    std::optional<MovieWriter::Error> error;
    bool videoReady = true;
    bool audioReady = true;
    // Refuses the next this many microphone samples.
    int refuseSamples = 0;
    // Ends as completed but leaves no file.
    bool losesTheFile = false;
    // The size of the movie it leaves, in bytes; a large one takes no room on the disk.
    qint64 movieBytes = 5;
    bool videoFinished = false;
    bool audioFinished = false;
    bool finished = false;
    bool cancelled = false;

    // Fails as a writer does when its disk is full.
    void fail(MovieWriter::Error failure) {
        status = MovieWriter::Status::failed;
        error = std::move(failure);
    }
};

class WriterFactory : public MovieWriterFactory {
public:
    std::unique_ptr<MovieWriter> makeWriter(const QString& path) override;

    // Applied to each writer's record as it is made.
    std::function<void(WriterRecord&)> prepare;
    // The writers made, newest last.
    QList<std::shared_ptr<WriterRecord>> writers;
};

class Microphone : public MicrophoneAccess {
public:
    QCoro::Task<Status> authorizationStatus() override;
    QCoro::Task<bool> requestAccess() override;

    Status status = Status::authorized;
    bool allowsWhenAsked = true;
    int requests = 0;
};

// A camera overlay's record: a square of one colour, as large as the style asks.
struct FacecamRecord {
    FacecamStyle style;
    bool running = false;
    QColor colour = Qt::red;
    std::optional<ScreenRecordingError> startFails;
};

// Makes facecams and keeps their records, newest last.
class Facecams {
public:
    std::unique_ptr<FacecamOverlay> make(const FacecamStyle& style);

    std::optional<ScreenRecordingError> startFails;
    QList<std::shared_ptr<FacecamRecord>> made;
};

// Holds each wait until the test ends the waits of its length.
class Waits {
public:
    Sleeper sleeper() const;
    // The lengths of the waits held now, in the order they began.
    QList<std::chrono::milliseconds> held() const;
    // Ends the waits of that length held now.
    void release(std::chrono::milliseconds length);
    // Ends every wait held now, so no waiting task outlives the test.
    void releaseAll();

private:
    struct Wait {
        std::chrono::milliseconds length;
        OneShot<bool> ended;
    };
    static QCoro::Task<> wait(std::shared_ptr<QList<Wait>> waits, std::chrono::milliseconds length);

    std::shared_ptr<QList<Wait>> m_waits = std::make_shared<QList<Wait>>();
};

// The scripted pieces of a recording together, with the clock the test moves.
struct Rig {
    CaptureService capture;
    WriterFactory writers;
    Microphone microphone;
    Facecams facecams;
    Waits waits;
    QDateTime now = QDateTime(QDate(2026, 11, 26), QTime(9, 0), Qt::UTC);

    // An engine's services of these pieces, on the test's own thread.
    ScreenRecordingEngine::Services engineServices();
    void advance(double seconds) { now = now.addMSecs(qRound64(seconds * 1000)); }
};

} // namespace ScriptedRecording
