#pragma once

#include <QByteArray>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QFile>
#include <QString>
#include <optional>
#include <sys/types.h>

// The gnome-keyring-daemon of a test's own desktop session, for the tests that stop, lock or
// restart it: they signal no other process.
namespace KeyringDaemon {
// The password tests/harness/desktop-session unlocks the session's keyring with.
inline const QByteArray password = QByteArrayLiteral("norvanebar-test-keyring");
inline const QString busName = QStringLiteral("org.freedesktop.secrets");

// Field 22 of /proc/PID/stat: when the process started, so that a reused PID is never taken for it.
inline QByteArray startTimeOf(qint64 pid) {
    QFile stat(QStringLiteral("/proc/%1/stat").arg(pid));
    if (!stat.open(QIODevice::ReadOnly)) {
        return {};
    }
    const QByteArray line = stat.readAll();
    return line.mid(line.lastIndexOf(')') + 2).split(' ').value(19);
}

// The "keyring" piece in the session's pids file, alive with its recorded start time, and the very
// process that owns org.freedesktop.secrets on the session's bus. Absent unless all of that holds.
inline std::optional<pid_t> ofOwnSession() {
    QFile pids(qEnvironmentVariable("NORVANEBAR_SESSION_DIR") + QStringLiteral("/pids"));
    if (!pids.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    std::optional<qint64> recorded;
    for (const QByteArray& line : pids.readAll().split('\n')) {
        const QList<QByteArray> fields = line.split(' ');
        if (fields.value(2) == "keyring" && startTimeOf(fields.value(0).toLongLong()) == fields.value(1)) {
            recorded = fields.value(0).toLongLong();
        }
    }
    const auto owner = QDBusConnection::sessionBus().interface()->servicePid(busName);
    if (!recorded || !owner.isValid() || qint64(owner.value()) != *recorded) {
        return std::nullopt;
    }
    return static_cast<pid_t>(*recorded);
}
} // namespace KeyringDaemon
