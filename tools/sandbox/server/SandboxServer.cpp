#include "sandbox/server/SandboxServer.h"

#include "sandbox/server/ConnectionDrop.h"
#include "sandbox/service/SandboxService.h"

#include <httplib.h>

#include <QFile>

namespace {

constexpr qsizetype maximumInMemoryBody = qsizetype{16} * 1024 * 1024;
constexpr size_t workerThreads = 32;
constexpr size_t fileChunkSize = size_t{1024} * 1024;

// A request body read from the connection while the service asks for it.
class ConnectionBody final : public StreamedBody {
public:
    ConnectionBody(const httplib::Request& request, const httplib::ContentReader& reader)
        : m_request(request)
        , m_reader(reader) {}

    bool isMultipart() const override { return m_request.is_multipart_form_data(); }

    void discard() override {
        if (isMultipart()) {
            readParts([](const MultipartPartHeader&) { return true; }, [](const char*, size_t) { return true; });
        } else if (!m_consumed) {
            m_consumed = true;
            m_reader([](const char*, size_t) { return true; });
        }
    }

protected:
    bool readParts(const PartStarted& onPart, const DataReceived& onData) override {
        // The library reads a body once; a second read would wait for bytes that never come.
        if (m_consumed) {
            return false;
        }
        m_consumed = true;
        return m_reader(
            [&](const httplib::MultipartFormData& part) {
                return onPart(MultipartPartHeader{QByteArray::fromStdString(part.name),
                                                  QByteArray::fromStdString(part.filename),
                                                  QByteArray::fromStdString(part.content_type)});
            },
            [&](const char* data, size_t size) { return onData(data, size); });
    }

private:
    const httplib::Request& m_request;
    const httplib::ContentReader& m_reader;
    bool m_consumed = false;
};

ServiceRequest toServiceRequest(const httplib::Request& request) {
    ServiceRequest converted = ServiceRequest::fromTarget(QByteArray::fromStdString(request.method),
                                                          QByteArray::fromStdString(request.target));
    for (const auto& [name, value] : request.headers) {
        converted.headers.append({QByteArray::fromStdString(name), QByteArray::fromStdString(value)});
    }
    converted.body = QByteArray::fromStdString(request.body);
    converted.bodySize = converted.body.size();
    return converted;
}

// Reads a body into memory up to a limit; past it the rest is read and dropped.
void readIntoMemory(const httplib::ContentReader& reader, ServiceRequest& request) {
    reader([&](const char* data, size_t size) {
        request.bodySize += static_cast<qint64>(size);
        if (request.body.size() + static_cast<qsizetype>(size) > maximumInMemoryBody) {
            request.bodyTooLarge = true;
        } else {
            request.body.append(data, static_cast<qsizetype>(size));
        }
        return true;
    });
}

void streamFile(const QString& path, const QByteArray& contentType, httplib::Response& response) {
    auto file = std::make_shared<QFile>(path);
    if (!file->open(QIODevice::ReadOnly)) {
        response.status = 404;
        return;
    }
    response.set_content_provider(
        static_cast<size_t>(file->size()), contentType.toStdString(),
        [file](size_t offset, size_t length, httplib::DataSink& sink) {
            const QByteArray chunk = file->seek(static_cast<qint64>(offset))
                                         ? file->read(static_cast<qint64>(std::min(length, fileChunkSize)))
                                         : QByteArray();
            return !chunk.isEmpty() && sink.write(chunk.constData(), static_cast<size_t>(chunk.size()));
        });
}

void write(const ServiceResponse& answer, const httplib::Request& request, httplib::Response& response) {
    if (answer.dropConnection) {
        ConnectionDrop::drop(request.local_port, request.remote_port);
        response.status = 500;
        return;
    }
    response.status = answer.status;
    for (const auto& [name, value] : answer.headers) {
        response.set_header(name.toStdString(), value.toStdString());
    }
    if (!answer.filePath.isEmpty()) {
        streamFile(answer.filePath, answer.contentType, response);
    } else {
        response.set_content(answer.body.toStdString(), answer.contentType.toStdString());
    }
}

} // namespace

SandboxServer::SandboxServer()
    : m_server(std::make_unique<httplib::Server>()) {
    m_server->new_task_queue = [] { return new httplib::ThreadPool(workerThreads); };
    m_server->set_address_family(AF_INET);
    // Headers and body go out in separate writes; without this, Nagle's algorithm holds the body
    // back until the client's delayed acknowledgement, some 40 ms per answer.
    m_server->set_tcp_nodelay(true);
    // Uploads of any size are streamed, so the library sets no limit of its own.
    m_server->set_payload_max_length(std::numeric_limits<size_t>::max());
}

SandboxServer::~SandboxServer() = default;

int SandboxServer::bind(int port) {
    static const std::string loopback = "127.0.0.1";
    if (port == 0) {
        return m_server->bind_to_any_port(loopback);
    }
    return m_server->bind_to_port(loopback, port) ? port : -1;
}

void SandboxServer::run(SandboxService& service) {
    const auto withoutReader = [&service](const httplib::Request& request, httplib::Response& response) {
        write(service.handle(toServiceRequest(request)), request, response);
    };
    const auto withReader = [&service](const httplib::Request& request, httplib::Response& response,
                                       const httplib::ContentReader& reader) {
        ServiceRequest converted = toServiceRequest(request);
        ConnectionBody body(request, reader);
        if (service.streamsBody(converted)) {
            converted.streamedBody = &body;
            converted.bodySize = QByteArray::fromStdString(request.get_header_value("Content-Length")).toLongLong();
        } else {
            readIntoMemory(reader, converted);
        }
        write(service.handle(converted), request, response);
    };
    // Every path goes to the service, which routes by itself.
    static const std::string everything = ".*";
    m_server->Get(everything, withoutReader);
    m_server->Post(everything, withoutReader);
    m_server->Put(everything, withoutReader);
    m_server->Patch(everything, withoutReader);
    m_server->Delete(everything, withoutReader);
    m_server->Options(everything, withoutReader);
    m_server->Post(everything, withReader);
    m_server->Put(everything, withReader);
    m_server->Patch(everything, withReader);
    m_server->Delete(everything, withReader);
    {
        std::lock_guard lock(m_mutex);
        if (m_stopRequested) {
            return;
        }
        m_state = State::Running;
    }
    m_server->listen_after_bind();
    std::lock_guard lock(m_mutex);
    m_state = State::Finished;
    m_changed.notify_all();
}

void SandboxServer::stop() {
    std::unique_lock lock(m_mutex);
    m_stopRequested = true;
    // The library ignores a stop that comes before its listening loop has begun, so the stop is
    // repeated until run() is over.
    while (m_state == State::Running) {
        m_server->stop();
        m_changed.wait_for(lock, std::chrono::milliseconds(10));
    }
}
