#include "core/support/FileInMemory.h"

#include "core/support/FileError.h"

#include <QCoreApplication>
#include <QFile>
#include <sys/mman.h>

namespace {
constexpr qsizetype hugePageBytes = qsizetype(2) << 20;

// Anonymous memory for `capacity` bytes, or null when the system has none to give.
void* mapMemory(qsizetype capacity) {
    void* data =
        ::mmap(nullptr, static_cast<size_t>(capacity), PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (data == MAP_FAILED) {
        return nullptr;
    }
    // Only advice: where the system keeps no huge pages, ordinary ones serve.
    ::madvise(data, static_cast<size_t>(capacity), MADV_HUGEPAGE);
    return data;
}
} // namespace

std::shared_ptr<const FileInMemory> FileInMemory::read(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        throw FileError(file.fileName(), file.errorString());
    }
    const qsizetype size = file.size();
    // Whole huge pages, and at least one, so that an empty file has memory too.
    const qsizetype capacity = (size / hugePageBytes + 1) * hugePageBytes;
    void* data = mapMemory(capacity);
    if (!data) {
        throw FileError(file.fileName(), QCoreApplication::translate("FileInMemory", "Not enough memory to read it."));
    }
    std::shared_ptr<const FileInMemory> read(new FileInMemory(data, capacity, size));
    qsizetype filled = 0;
    while (filled < size) {
        const qint64 count = file.read(static_cast<char*>(data) + filled, size - filled);
        if (count <= 0) {
            throw FileError(file.fileName(),
                            count < 0 ? file.errorString()
                                      : QCoreApplication::translate("FileInMemory", "The file ended early."));
        }
        filled += count;
    }
    return read;
}

FileInMemory::FileInMemory(void* data, qsizetype capacity, qsizetype size)
    : m_data(data)
    , m_capacity(capacity)
    , m_size(size) {}

FileInMemory::~FileInMemory() {
    ::munmap(m_data, static_cast<size_t>(m_capacity));
}
