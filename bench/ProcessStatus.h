#pragma once

#include <QByteArray>
#include <QFile>

// This process's figures from /proc/self/status, for the benchmarks' clients.
namespace ProcessStatus {

// A field of /proc/self/status in KiB, such as "VmRSS" or "VmHWM"; -1 when it can't be read.
inline qint64 kiB(const char* field) {
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly)) {
        return -1;
    }
    const QByteArray prefix = QByteArray(field) + ':';
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith(prefix)) {
            return line.mid(prefix.size()).trimmed().split(' ').first().toLongLong();
        }
    }
    return -1;
}

// Resets VmHWM to the current VmRSS, so that the next peak is what follows.
inline void resetPeak() {
    QFile refs(QStringLiteral("/proc/self/clear_refs"));
    if (refs.open(QIODevice::WriteOnly)) {
        refs.write("5");
    }
}

} // namespace ProcessStatus
