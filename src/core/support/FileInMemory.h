#pragma once

#include <QByteArray>
#include <QString>
#include <memory>

// A whole file read into memory of its own. The memory is asked to be backed by huge pages: a file of
// a hundred megabytes then fills and hashes several times faster than in ordinary 4 KiB pages, which
// each cost a fault to fill and a TLB entry to read.
class FileInMemory {
public:
    // Reads the file at `path`; throws FileError when it can't be opened or read whole.
    static std::shared_ptr<const FileInMemory> read(const QString& path);

    FileInMemory(const FileInMemory&) = delete;
    FileInMemory& operator=(const FileInMemory&) = delete;
    ~FileInMemory();

    // The bytes, without a copy: valid while this object lives.
    QByteArray bytes() const { return QByteArray::fromRawData(static_cast<const char*>(m_data), m_size); }

private:
    FileInMemory(void* data, qsizetype capacity, qsizetype size);

    void* m_data;
    qsizetype m_capacity;
    qsizetype m_size;
};
