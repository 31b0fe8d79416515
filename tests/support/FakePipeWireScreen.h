#pragma once

#include "support/ProcessEnding.h"

#include <QProcess>
#include <QTest>

// A Wayland screen without a compositor: a private PipeWire with WirePlumber and a fake screen node
// fed by videotestsrc's SMPTE bars, BGRx 1280×720 (tests/harness/pipewire_screen.py, the script
// given), in the session's runtime folder.
class FakePipeWireScreen {
public:
    explicit FakePipeWireScreen(QString script)
        : m_script(std::move(script)) {}

    // Starts it and waits for the node; false when it didn't come up.
    bool start() {
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(QStringLiteral("/usr/bin/python3"), {m_script, qEnvironmentVariable("NORVANEBAR_SESSION_DIR")});
        if (!QTest::qWaitFor([this] { return m_process.canReadLine() || m_process.state() == QProcess::NotRunning; },
                             30'000)) {
            return false;
        }
        bool number = false;
        m_nodeId = m_process.readLine().trimmed().toUInt(&number);
        return number;
    }
    // Stops it; true when it ended on its own.
    bool stop() { return terminateProcess(m_process, 5000); }

    // The id of the fake screen's node.
    quint32 nodeId() const { return m_nodeId; }

private:
    QString m_script;
    QProcess m_process;
    quint32 m_nodeId = 0;
};
