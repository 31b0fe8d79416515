#pragma once

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

// What the header of one part of a multipart body tells.
struct MultipartPartHeader {
    QByteArray name;
    QByteArray filename;
    QByteArray contentType;
};

// A request body read piece by piece instead of being held in memory: the attachment upload.
// The server reads it from the connection; the fuzz target from bytes. The parts seen are kept
// for the request log.
class StreamedBody {
public:
    using PartStarted = std::function<bool(const MultipartPartHeader&)>;
    using DataReceived = std::function<bool(const char* data, size_t size)>;

    struct Part {
        MultipartPartHeader header;
        qint64 size = 0;
    };

    virtual ~StreamedBody() = default;
    virtual bool isMultipart() const = 0;
    // Reads and drops the rest of the body, so that the answer reaches a client still sending.
    virtual void discard() = 0;

    // Reads the body as multipart/form-data; false when it is malformed or a callback said stop.
    bool readMultipart(const PartStarted& onPart, const DataReceived& onData);
    const std::vector<Part>& parts() const { return m_parts; }

protected:
    virtual bool readParts(const PartStarted& onPart, const DataReceived& onData) = 0;

private:
    std::vector<Part> m_parts;
};

using QueryItems = QList<QPair<QString, QString>>;
using HeaderItems = QList<QPair<QByteArray, QByteArray>>;

// One HTTP request as the service sees it, apart from the socket it came through.
struct ServiceRequest {
    QByteArray method;
    QString path;
    QStringList segments;
    QueryItems query;
    HeaderItems headers;
    QByteArray body;
    qint64 bodySize = 0;
    bool bodyTooLarge = false;
    StreamedBody* streamedBody = nullptr;

    // Splits a request target into the decoded path, its segments and the query items in order.
    static ServiceRequest fromTarget(const QByteArray& method, const QByteArray& target);

    QByteArray header(QByteArrayView name) const;
    QStringList queryValues(QStringView name) const;
    // Reads and drops a body that the answer does not need.
    void discardBody() const;
};
