#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <optional>
#include <utility>

// Reads one HTTP/1.1 answer from the bytes of a connection as they arrive, in pieces of any size:
// the status line, the header fields, and a body framed by Content-Length, by chunks, or by the end
// of the connection. Interim answers (1xx) are passed over. The bytes are the server's: anything
// malformed or oversized ends the reading as failed, and nothing more is taken.
class HttpResponseReader {
public:
    using Header = std::pair<QByteArray, QByteArray>;

    // Takes the next bytes of the connection; returns the body bytes among them.
    QByteArray feed(QByteArrayView bytes);
    // The connection ended: an answer whose body runs to the end of the connection is complete now;
    // any other that is not complete is failed.
    void endOfStream();

    bool headComplete() const { return m_state > State::Headers && !failed(); }
    bool complete() const { return m_state == State::Complete; }
    bool failed() const { return m_state == State::Failed; }

    int status() const { return m_status; }
    const QByteArray& reasonPhrase() const { return m_reason; }
    // In the order received, names as sent.
    const QList<Header>& headers() const { return m_headers; }
    // The body's announced length, when the answer has one.
    std::optional<qint64> contentLength() const { return m_contentLength; }
    // Whether the connection can carry another request once this answer is complete.
    bool keepsConnection() const;

private:
    enum class State {
        StatusLine,
        Headers,
        Body,
        ChunkSize,
        ChunkData,
        ChunkEnd,
        Trailers,
        BodyToEnd,
        Complete,
        Failed
    };

    // The next line from the pending bytes without its CRLF (or bare LF), if a whole one is there.
    std::optional<QByteArray> takeLine();
    void readStatusLine(const QByteArray& line);
    void readHeaderLine(const QByteArray& line);
    void startBody();
    void readChunkSize(const QByteArray& line);
    // Moves up to the remaining count of body bytes from the pending ones into `body`.
    void takeBodyBytes(QByteArray& body);
    void fail() { m_state = State::Failed; }

    State m_state = State::StatusLine;
    QByteArray m_pending;
    qsizetype m_headBytes = 0;
    bool m_http10 = false;
    int m_status = 0;
    QByteArray m_reason;
    QList<Header> m_headers;
    std::optional<qint64> m_contentLength;
    bool m_chunked = false;
    qint64 m_remaining = 0;
};
