#pragma once

#include "core/shell/InstanceMessage.h"

#include <QLocalServer>
#include <QObject>

// One NorvaneBar per user: a later launch hands its request to the running instance over a
// local socket in the user's runtime folder, then exits.
class SingleInstance : public QObject {
    Q_OBJECT

public:
    explicit SingleInstance(QObject* parent = nullptr);

    // True when a running instance took the message; blocks for at most a moment.
    static bool handOver(const InstanceMessage& message);
    // Becomes the running instance, replacing a socket left behind by a crash.
    bool listen();

signals:
    void messageReceived(const InstanceMessage& message);

private:
    static QString socketPath();
    void readFrom(QLocalSocket* socket);

    QLocalServer m_server;
};
