#include "platform/linux/SingleInstance.h"

#include <QDir>
#include <QLocalSocket>
#include <QStandardPaths>

namespace {
constexpr int handOverTimeoutMs = 1000;
}

SingleInstance::SingleInstance(QObject* parent)
    : QObject(parent) {
    connect(&m_server, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket* socket = m_server.nextPendingConnection()) {
            readFrom(socket);
        }
    });
}

QString SingleInstance::socketPath() {
    QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (folder.isEmpty()) {
        folder = QDir::tempPath();
    }
    return folder + QStringLiteral("/norvanebar.socket");
}

bool SingleInstance::handOver(const InstanceMessage& message) {
    QLocalSocket socket;
    socket.connectToServer(socketPath());
    if (!socket.waitForConnected(handOverTimeoutMs)) {
        return false;
    }
    socket.write(InstanceMessages::encode(message));
    const bool written = socket.waitForBytesWritten(handOverTimeoutMs);
    socket.disconnectFromServer();
    return written;
}

bool SingleInstance::listen() {
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    QLocalServer::removeServer(socketPath());
    return m_server.listen(socketPath());
}

void SingleInstance::readFrom(QLocalSocket* socket) {
    connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
    connect(socket, &QLocalSocket::readyRead, this, [this, socket] {
        if (!socket->canReadLine()) {
            if (socket->bytesAvailable() > InstanceMessages::maximumSize) {
                socket->abort();
            }
            return;
        }
        const auto message = InstanceMessages::decode(socket->readLine());
        socket->disconnectFromServer();
        if (message) {
            emit messageReceived(*message);
        }
    });
}
