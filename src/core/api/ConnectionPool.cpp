#include "core/api/ConnectionPool.h"

#include <QTcpSocket>
#include <QUrl>

namespace {
QString originOf(const QUrl& url) {
    return url.adjusted(QUrl::RemoveUserInfo | QUrl::RemovePath | QUrl::RemoveQuery | QUrl::RemoveFragment)
        .toString(QUrl::FullyEncoded);
}
} // namespace

ConnectionPool::ConnectionPool(std::chrono::milliseconds idleLimit, QObject* parent)
    : QObject(parent)
    , m_idleLimit(idleLimit) {}

std::unique_ptr<QTcpSocket> ConnectionPool::take(const QUrl& url) {
    const Idle idle = m_idle.take(originOf(url));
    std::unique_ptr<QTcpSocket> connection(idle.connection);
    if (!connection) {
        return nullptr;
    }
    connection->disconnect(this);
    connection->setParent(nullptr);
    if (connection->state() != QAbstractSocket::ConnectedState || connection->bytesAvailable() > 0 ||
        std::chrono::milliseconds(idle.since.elapsed()) >= m_idleLimit) {
        // Closed, holding bytes no request asked for, or idle for too long: not one to send on.
        return nullptr;
    }
    return connection;
}

void ConnectionPool::keep(const QUrl& url, std::unique_ptr<QTcpSocket> connection) {
    const QString origin = originOf(url);
    delete m_idle.take(origin).connection;
    QTcpSocket* idle = connection.release();
    idle->setParent(this);
    QElapsedTimer since;
    since.start();
    m_idle.insert(origin, {idle, since});
    const auto letGo = [this, origin, idle] {
        if (m_idle.value(origin).connection == idle) {
            m_idle.remove(origin);
            idle->deleteLater();
        }
    };
    connect(idle, &QAbstractSocket::disconnected, this, letGo);
    connect(idle, &QIODevice::readyRead, this, letGo);
}
