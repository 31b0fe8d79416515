#pragma once

#include <QByteArray>
#include <QList>
#include <QSet>
#include <QString>
#include <QUrl>
#include <memory>
#include <mutex>
#include <thread>

namespace httplib {
class Server;
}

// A storage service on 127.0.0.1 for the external upload path: PUT /files/<name> stores the body
// and answers {"url": "<base>/public/<name>"}, as the test provider expects. It writes down every
// file it receives, and refuses the names it is told to with a 500. Runs on a thread of its own
// from start() until it is destroyed.
class LoopbackStorageServer {
public:
    struct Received {
        QString filename;
        QString contentType;
        QByteArray body;
        bool operator==(const Received&) const = default;
    };

    LoopbackStorageServer();
    ~LoopbackStorageServer();
    LoopbackStorageServer(const LoopbackStorageServer&) = delete;
    LoopbackStorageServer& operator=(const LoopbackStorageServer&) = delete;

    // False when it could not listen.
    bool start();
    QUrl baseUrl() const { return m_baseUrl; }

    // The files stored so far, in the order they arrived.
    QList<Received> received() const;
    // From now on files of this name get a 500 and are not stored.
    void refuse(const QString& filename);
    // Every file gets a 500.
    void refuseAll();
    // Forgets the files and the refusals.
    void reset();

private:
    std::unique_ptr<httplib::Server> m_server;
    std::unique_ptr<std::thread> m_thread;
    QUrl m_baseUrl;
    mutable std::mutex m_mutex;
    QList<Received> m_received;
    QSet<QString> m_refused;
    bool m_refusesAll = false;
};
