#include "core/api/OneShotBody.h"

#include <algorithm>
#include <cstring>

OneShotBody::OneShotBody(QByteArray bytes, QObject* parent)
    : QIODevice(parent)
    , m_bytes(std::move(bytes)) {
    open(QIODevice::ReadOnly);
}

qint64 OneShotBody::bytesAvailable() const {
    return m_bytes.size() - m_read + QIODevice::bytesAvailable();
}

qint64 OneShotBody::readData(char* data, qint64 maxSize) {
    const qint64 count = std::min(maxSize, m_bytes.size() - m_read);
    if (count <= 0) {
        return -1;
    }
    std::memcpy(data, m_bytes.constData() + m_read, static_cast<size_t>(count));
    m_read += count;
    return count;
}

qint64 OneShotBody::writeData(const char* /*data*/, qint64 /*maxSize*/) {
    return -1;
}
