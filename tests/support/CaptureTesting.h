#pragma once

#include "core/platform/CaptureStream.h"
#include "core/platform/MediaSample.h"
#include "support/RunTask.h"

#include <QImage>
#include <QMutex>
#include <QMutexLocker>
#include <QTest>
#include <algorithm>
#include <chrono>
#include <functional>
#include <memory>
#include <vector>

// Capture times are in nanoseconds.
constexpr qint64 oneMillisecond = 1'000'000;
constexpr qint64 oneSecond = 1'000'000'000;
// How long after its time a sample may reach a test on a loaded machine. A time of another clock
// would be off by far more: the pipeline's running time alone counts from zero.
constexpr qint64 mostLateness = 10 * oneSecond;

// Now on the monotonic clock (CLOCK_MONOTONIC), in nanoseconds: the clock of capture times.
inline qint64 monotonicNow() {
    return std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

inline bool isRed(QRgb colour) {
    return qRed(colour) > 200 && qGreen(colour) < 60 && qBlue(colour) < 60;
}

// What a capture stream hands to its outputs, noted on its streaming threads: of each frame its
// times, size, format and three pixels; of each run of microphone samples its times, format and a
// copy of its bytes. Nothing of the stream's buffers is kept, and the notes live on as long as the
// stream may call.
class CaptureLog {
public:
    struct Frame {
        std::optional<qint64> presentation;
        qint64 arrival = 0;
        QSize size;
        QImage::Format format = QImage::Format_Invalid;
        bool native = false;
        std::optional<QVariant> status;
        QRgb topLeft = 0;
        QRgb centre = 0;
        QRgb bottomRight = 0;
    };
    struct Sound {
        std::optional<qint64> presentation;
        std::optional<qint64> duration;
        qint64 arrival = 0;
        std::optional<AudioFormat> format;
        QByteArray data;
        bool native = false;
    };

    // Notes what `stream` delivers from now on.
    explicit CaptureLog(CaptureStream& stream)
        : m_stream(stream) {
        stream.addScreenOutput([notes = m_notes](const VideoFrame& frame) {
            Frame noted{frame.timing.presentation, monotonicNow(),          frame.pixels.size(),
                        frame.pixels.format(),     frame.native != nullptr, frame.status};
            if (!frame.pixels.isNull()) {
                const QImage& pixels = frame.pixels;
                noted.topLeft = pixels.pixel(0, 0);
                noted.centre = pixels.pixel(pixels.width() / 2, pixels.height() / 2);
                noted.bottomRight = pixels.pixel(pixels.width() - 1, pixels.height() - 1);
            }
            const QMutexLocker lock(&notes->mutex);
            notes->frames.push_back(noted);
        });
        stream.addMicrophoneOutput([notes = m_notes](const AudioBuffer& buffer) {
            Sound noted{buffer.timing.presentation,
                        buffer.timing.duration,
                        monotonicNow(),
                        buffer.format,
                        QByteArray(buffer.data.constData(), buffer.data.size()),
                        buffer.native != nullptr};
            const QMutexLocker lock(&notes->mutex);
            notes->sounds.push_back(noted);
        });
    }

    // Starts the stream, waits until `frames` more frames and `sounds` more runs of microphone
    // samples have come, and stops it; false when they didn't come in time.
    bool capture(size_t frames, size_t sounds = 0) {
        const size_t framesBefore = this->frames().size();
        const size_t soundsBefore = this->sounds().size();
        runTask(m_stream.startCapture());
        const bool came = waitForFrames(framesBefore + frames) && waitForSounds(soundsBefore + sounds);
        runTask(m_stream.stopCapture());
        return came;
    }

    std::vector<Frame> frames() const {
        const QMutexLocker lock(&m_notes->mutex);
        return m_notes->frames;
    }
    std::vector<Sound> sounds() const {
        const QMutexLocker lock(&m_notes->mutex);
        return m_notes->sounds;
    }

    // Waits until `count` frames (sounds) have come in all.
    bool waitForFrames(size_t count, int timeoutMs = 15000) const {
        return QTest::qWaitFor([&] { return frames().size() >= count; }, timeoutMs);
    }
    bool waitForSounds(size_t count, int timeoutMs = 15000) const {
        return QTest::qWaitFor([&] { return sounds().size() >= count; }, timeoutMs);
    }
    // Waits for a frame that `wanted` accepts.
    bool waitForFrame(const std::function<bool(const Frame&)>& wanted, int timeoutMs = 15000) const {
        return QTest::qWaitFor(
            [&] {
                const std::vector<Frame> all = frames();
                return std::any_of(all.begin(), all.end(), wanted);
            },
            timeoutMs);
    }

private:
    struct Notes {
        QMutex mutex;
        std::vector<Frame> frames;
        std::vector<Sound> sounds;
    };

    CaptureStream& m_stream;
    std::shared_ptr<Notes> m_notes = std::make_shared<Notes>();
};
