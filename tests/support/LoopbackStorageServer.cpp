#include "support/LoopbackStorageServer.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <httplib.h>

LoopbackStorageServer::LoopbackStorageServer()
    : m_server(std::make_unique<httplib::Server>()) {}

LoopbackStorageServer::~LoopbackStorageServer() {
    m_server->stop();
    if (m_thread && m_thread->joinable()) {
        m_thread->join();
    }
}

bool LoopbackStorageServer::start() {
    m_server->set_tcp_nodelay(true);
    // One request per connection: a connection kept alive would hold up stop() for its whole timeout.
    m_server->set_keep_alive_max_count(1);
    m_server->Put(R"(/files/(.+))", [this](const httplib::Request& request, httplib::Response& response) {
        const QString filename = QString::fromStdString(request.matches[1].str());
        const std::lock_guard lock(m_mutex);
        if (m_refusesAll || m_refused.contains(filename)) {
            response.status = 500;
            response.set_content("storage refused " + filename.toStdString(), "text/plain");
            return;
        }
        m_received.append({filename, QString::fromStdString(request.get_header_value("Content-Type")),
                           QByteArray::fromStdString(request.body)});
        const QUrl publicURL = m_baseUrl.resolved(QUrl(QStringLiteral("public/") + filename));
        const QJsonObject answer{{QStringLiteral("url"), publicURL.toString(QUrl::FullyEncoded)}};
        response.set_content(QJsonDocument(answer).toJson(QJsonDocument::Compact).toStdString(), "application/json");
    });
    const int port = m_server->bind_to_any_port("127.0.0.1");
    if (port <= 0) {
        return false;
    }
    m_baseUrl = QUrl(QStringLiteral("http://127.0.0.1:%1/").arg(port));
    m_thread = std::make_unique<std::thread>([this] { m_server->listen_after_bind(); });
    return true;
}

QList<LoopbackStorageServer::Received> LoopbackStorageServer::received() const {
    const std::lock_guard lock(m_mutex);
    return m_received;
}

void LoopbackStorageServer::refuse(const QString& filename) {
    const std::lock_guard lock(m_mutex);
    m_refused.insert(filename);
}

void LoopbackStorageServer::refuseAll() {
    const std::lock_guard lock(m_mutex);
    m_refusesAll = true;
}

void LoopbackStorageServer::reset() {
    const std::lock_guard lock(m_mutex);
    m_received.clear();
    m_refused.clear();
    m_refusesAll = false;
}
