#include "core/recording/FramePool.h"

#include <QMutex>
#include <QMutexLocker>
#include <vector>

namespace {
constexpr int mostBlocks = 8;
} // namespace

// The memory of the pictures and which of them are held. A picture lets go of its block from
// whatever thread drops it last, so the list is locked.
struct FramePool::Blocks {
    struct Release {
        std::shared_ptr<Blocks> blocks;
        size_t index;
    };

    QMutex lock;
    qsizetype bytesPerBlock = 0;
    std::vector<std::unique_ptr<uchar[]>> memory;
    std::vector<bool> held;

    static void release(void* info) {
        std::unique_ptr<Release> release(static_cast<Release*>(info));
        const QMutexLocker locker(&release->blocks->lock);
        release->blocks->held[release->index] = false;
    }

    // The index of a free block, made when there is none and the pool may grow; none otherwise.
    std::optional<size_t> freeBlock() {
        for (size_t index = 0; index < held.size(); ++index) {
            if (!held[index]) {
                return index;
            }
        }
        if (memory.size() >= mostBlocks) {
            return std::nullopt;
        }
        memory.push_back(std::make_unique<uchar[]>(bytesPerBlock));
        held.push_back(false);
        return memory.size() - 1;
    }
};

std::unique_ptr<FramePool> FramePool::create(QSize size) {
    if (size.isEmpty()) {
        return nullptr;
    }
    auto blocks = std::make_shared<Blocks>();
    blocks->bytesPerBlock = qsizetype(size.width()) * size.height() * 4;
    return std::unique_ptr<FramePool>(new FramePool(size, std::move(blocks)));
}

FramePool::FramePool(QSize size, std::shared_ptr<Blocks> blocks)
    : m_size(size)
    , m_blocks(std::move(blocks)) {}

std::optional<QImage> FramePool::take() {
    const QMutexLocker locker(&m_blocks->lock);
    const std::optional<size_t> index = m_blocks->freeBlock();
    if (!index) {
        return std::nullopt;
    }
    m_blocks->held[*index] = true;
    auto* release = new Blocks::Release{m_blocks, *index};
    return QImage(m_blocks->memory[*index].get(), m_size.width(), m_size.height(), m_size.width() * 4,
                  QImage::Format_RGB32, &Blocks::release, release);
}

int FramePool::pictureCount() const {
    const QMutexLocker locker(&m_blocks->lock);
    return int(m_blocks->memory.size());
}
