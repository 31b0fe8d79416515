// Drives norvane-sandbox's request handling without a socket. An input is one request as text:
// "METHOD TARGET", header lines "Name: value", an empty line, then the body. A streamed upload
// body reaches the service as one part named "attachment", split into pieces by its first byte.
// Each input starts from the demo data again, so a crash replays from its input alone.
#include "sandbox/service/SandboxService.h"
#include "sandbox/store/DemoSeed.h"

#include <QTemporaryDir>

#include <cstdint>

namespace {

class BytesBody final : public StreamedBody {
public:
    BytesBody(QByteArray bytes, bool multipart)
        : m_bytes(std::move(bytes))
        , m_multipart(multipart) {}

    bool isMultipart() const override { return m_multipart; }
    void discard() override { m_bytes.clear(); }

protected:
    bool readParts(const PartStarted& onPart, const DataReceived& onData) override {
        if (m_bytes.isEmpty() || !onPart({"attachment", "fuzz.bin", "application/octet-stream"})) {
            return false;
        }
        const qsizetype piece = 1 + static_cast<unsigned char>(m_bytes.front());
        for (qsizetype offset = 0; offset < m_bytes.size(); offset += piece) {
            const QByteArray chunk = m_bytes.mid(offset, piece);
            if (!onData(chunk.constData(), static_cast<size_t>(chunk.size()))) {
                return false;
            }
        }
        return true;
    }

private:
    QByteArray m_bytes;
    bool m_multipart;
};

SandboxService& service() {
    static QTemporaryDir folder;
    // Made once: the reset before each input then only loads it.
    static const QJsonObject seed =
        DemoSeed::demo(QDateTime::fromSecsSinceEpoch(1'750'000'000), QStringLiteral("http://127.0.0.1:1"));
    static std::unique_ptr<SandboxService> instance = std::get<std::unique_ptr<SandboxService>>(SandboxService::create(
        SandboxSettings{QStringLiteral("http://127.0.0.1:1"), folder.path(), true, std::nullopt, [] { return seed; }}));
    return *instance;
}

ServiceRequest parse(const QByteArray& input) {
    const qsizetype headEnd = input.indexOf("\n\n");
    const QByteArray head = headEnd < 0 ? input : input.left(headEnd);
    QList<QByteArray> lines = head.split('\n');
    const QList<QByteArray> requestLine = lines.takeFirst().split(' ');
    ServiceRequest request = ServiceRequest::fromTarget(requestLine.value(0), requestLine.value(1));
    for (const QByteArray& line : lines) {
        const qsizetype colon = line.indexOf(':');
        request.headers.append({line.left(colon).trimmed(), colon < 0 ? QByteArray() : line.mid(colon + 1).trimmed()});
    }
    request.body = headEnd < 0 ? QByteArray() : input.mid(headEnd + 2);
    request.bodySize = request.body.size();
    return request;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    SandboxService& sandbox = service();
    sandbox.handle(ServiceRequest::fromTarget("POST", "/_sandbox/reset"));
    ServiceRequest request = parse(QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)));
    BytesBody body(request.body, request.header("Content-Type").startsWith("multipart/form-data"));
    if (sandbox.streamsBody(request)) {
        request.streamedBody = &body;
        request.body.clear();
    }
    sandbox.handle(request);
    return 0;
}
