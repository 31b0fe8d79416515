#include "core/api/HttpResponseReader.h"

#include <algorithm>
#include <cctype>

namespace {
// No server sends a head anywhere near this; one that does is not answering HTTP.
constexpr qsizetype maximumHeadBytes = qsizetype{64} * 1024;

QByteArray headerValue(const QList<HttpResponseReader::Header>& headers, QByteArrayView name) {
    QByteArrayList values;
    for (const auto& [field, value] : headers) {
        if (field.compare(name, Qt::CaseInsensitive) == 0) {
            values.append(value);
        }
    }
    return values.join(", ");
}

bool listsToken(const QByteArray& value, QByteArrayView token) {
    return std::ranges::any_of(value.split(','), [token](const QByteArray& item) {
        return item.trimmed().compare(token, Qt::CaseInsensitive) == 0;
    });
}

// A decimal or hexadecimal count with nothing else in it, or none.
std::optional<qint64> count(const QByteArray& text, int base) {
    bool ok = false;
    const qint64 value = text.toLongLong(&ok, base);
    const bool digitsOnly = !text.isEmpty() && std::all_of(text.begin(), text.end(), [base](char c) {
        return base == 16 ? std::isxdigit(static_cast<unsigned char>(c)) : std::isdigit(static_cast<unsigned char>(c));
    });
    return ok && digitsOnly && value >= 0 ? std::optional(value) : std::nullopt;
}
} // namespace

QByteArray HttpResponseReader::feed(QByteArrayView bytes) {
    QByteArray body;
    if (failed() || complete()) {
        return body;
    }
    m_pending.append(bytes);
    while (!failed() && !complete()) {
        if (m_state == State::Body || m_state == State::ChunkData || m_state == State::BodyToEnd) {
            takeBodyBytes(body);
            if (m_pending.isEmpty()) {
                break;
            }
            continue;
        }
        const std::optional<QByteArray> line = takeLine();
        if (!line) {
            break;
        }
        switch (m_state) {
        case State::StatusLine:
            readStatusLine(*line);
            break;
        case State::Headers:
            readHeaderLine(*line);
            break;
        case State::ChunkSize:
            readChunkSize(*line);
            break;
        case State::ChunkEnd:
            if (line->isEmpty()) {
                m_state = State::ChunkSize;
            } else {
                fail();
            }
            break;
        case State::Trailers:
            if (line->isEmpty()) {
                m_state = State::Complete;
            }
            break;
        default:
            break;
        }
    }
    return body;
}

void HttpResponseReader::endOfStream() {
    if (m_state == State::BodyToEnd) {
        m_state = State::Complete;
    } else if (!complete()) {
        fail();
    }
}

bool HttpResponseReader::keepsConnection() const {
    if (!complete() || m_http10) {
        return false;
    }
    return !listsToken(headerValue(m_headers, "Connection"), "close") && (m_chunked || m_contentLength);
}

std::optional<QByteArray> HttpResponseReader::takeLine() {
    const qsizetype end = m_pending.indexOf('\n');
    const bool inHead = m_state == State::StatusLine || m_state == State::Headers || m_state == State::Trailers;
    if (end < 0) {
        if (inHead ? m_headBytes + m_pending.size() > maximumHeadBytes : m_pending.size() > maximumHeadBytes) {
            fail();
        }
        return std::nullopt;
    }
    if (inHead) {
        m_headBytes += end + 1;
        if (m_headBytes > maximumHeadBytes) {
            fail();
            return std::nullopt;
        }
    }
    QByteArray line = m_pending.left(end);
    m_pending.remove(0, end + 1);
    if (line.endsWith('\r')) {
        line.chop(1);
    }
    return line;
}

void HttpResponseReader::readStatusLine(const QByteArray& line) {
    // "HTTP/1.1 200 OK": the version, three digits, and a reason that may be empty or missing.
    const QList<QByteArray> parts = line.split(' ');
    const bool knownVersion = parts.value(0) == "HTTP/1.1" || parts.value(0) == "HTTP/1.0";
    const QByteArray code = parts.value(1);
    const std::optional<qint64> status = code.size() == 3 ? count(code, 10) : std::nullopt;
    if (!knownVersion || !status || *status < 100) {
        fail();
        return;
    }
    m_http10 = parts.value(0) == "HTTP/1.0";
    m_status = static_cast<int>(*status);
    m_reason = line.mid(parts.value(0).size() + 1 + code.size() + 1);
    m_headers.clear();
    m_state = State::Headers;
}

void HttpResponseReader::readHeaderLine(const QByteArray& line) {
    if (line.isEmpty()) {
        startBody();
        return;
    }
    const qsizetype colon = line.indexOf(':');
    if (colon <= 0 || line.front() == ' ' || line.front() == '\t') {
        // No name, or a folded continuation line, which HTTP/1.1 no longer allows.
        fail();
        return;
    }
    m_headers.append({line.left(colon), line.mid(colon + 1).trimmed()});
}

void HttpResponseReader::startBody() {
    if (m_status < 200) {
        // An interim answer; the real one follows.
        m_state = State::StatusLine;
        return;
    }
    m_chunked = listsToken(headerValue(m_headers, "Transfer-Encoding"), "chunked");
    const QByteArray length = headerValue(m_headers, "Content-Length");
    if (m_status == 204 || m_status == 304) {
        m_state = State::Complete;
    } else if (m_chunked) {
        m_state = State::ChunkSize;
    } else if (!length.isEmpty()) {
        m_contentLength = count(length, 10);
        if (!m_contentLength) {
            fail();
            return;
        }
        m_remaining = *m_contentLength;
        m_state = m_remaining == 0 ? State::Complete : State::Body;
    } else {
        m_state = State::BodyToEnd;
    }
}

void HttpResponseReader::readChunkSize(const QByteArray& line) {
    // The size in hexadecimal, then any extensions after ";", which mean nothing here.
    const qsizetype extensions = line.indexOf(';');
    const std::optional<qint64> size = count((extensions < 0 ? line : line.left(extensions)).trimmed(), 16);
    if (!size) {
        fail();
        return;
    }
    m_remaining = *size;
    m_state = m_remaining == 0 ? State::Trailers : State::ChunkData;
}

void HttpResponseReader::takeBodyBytes(QByteArray& body) {
    if (m_state == State::BodyToEnd) {
        body.append(m_pending);
        m_pending.clear();
        return;
    }
    const qsizetype taken = static_cast<qsizetype>(std::min<qint64>(m_remaining, m_pending.size()));
    body.append(m_pending.left(taken));
    m_pending.remove(0, taken);
    m_remaining -= taken;
    if (m_remaining == 0) {
        m_state = m_state == State::ChunkData ? State::ChunkEnd : State::Complete;
    }
}
