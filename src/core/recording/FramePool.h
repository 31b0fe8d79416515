#pragma once

#include <QImage>
#include <QSize>
#include <memory>
#include <optional>

// Pictures of one size to draw composed frames into, used again once nobody holds them, so a
// recording doesn't allocate a frame's memory thirty times a second.
class FramePool {
public:
    // A pool that makes its pictures as they are first needed, so that a recording that never
    // composes a frame pays nothing for it, up to a few while all are held; none for an empty size.
    static std::unique_ptr<FramePool> create(QSize size);

    // A picture nobody else holds (32 bits a pixel), or none when every one is held.
    std::optional<QImage> take();

    // How many pictures the pool has made so far.
    int pictureCount() const;

private:
    struct Blocks;
    FramePool(QSize size, std::shared_ptr<Blocks> blocks);

    QSize m_size;
    std::shared_ptr<Blocks> m_blocks;
};
