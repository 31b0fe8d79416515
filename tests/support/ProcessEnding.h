#pragma once

#include <QProcess>
#include <csignal>

// Ends a fixture's server as its own shutdown would: SIGTERM, then up to `waitMs` for it to end, and
// SIGKILL after that. True when it ended on its own with exit code 0; false also when it wasn't running.
inline bool terminateProcess(QProcess& process, int waitMs) {
    if (process.state() == QProcess::NotRunning) {
        return false;
    }
    ::kill(static_cast<pid_t>(process.processId()), SIGTERM);
    if (!process.waitForFinished(waitMs)) {
        process.kill();
        process.waitForFinished();
        return false;
    }
    return process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}
