#pragma once

#include <QElapsedTimer>
#include <QHash>
#include <QObject>
#include <QString>
#include <chrono>
#include <memory>

class QTcpSocket;
class QUrl;

// Idle connections of the direct upload session, at most one for each scheme, host and port, so the
// files of one task go one after another down one connection as they would through Qt's session.
// A connection the server closes while it waits is let go, and one idle for longer than `idleLimit`
// is not used again: a link that went away without a word (a laptop asleep, a router's table
// cleared) would swallow the next upload until its stall limit.
class ConnectionPool : public QObject {
    Q_OBJECT

public:
    explicit ConnectionPool(std::chrono::milliseconds idleLimit, QObject* parent = nullptr);

    // The idle connection to where `url` points, still open, or none.
    std::unique_ptr<QTcpSocket> take(const QUrl& url);
    // Keeps `connection`, idle after a complete answer, for the next request to where `url` points.
    void keep(const QUrl& url, std::unique_ptr<QTcpSocket> connection);

private:
    struct Idle {
        QTcpSocket* connection = nullptr;
        QElapsedTimer since;
    };

    std::chrono::milliseconds m_idleLimit;
    QHash<QString, Idle> m_idle;
};
