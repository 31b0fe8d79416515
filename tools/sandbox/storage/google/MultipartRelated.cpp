#include "sandbox/storage/google/MultipartRelated.h"

namespace MultipartRelated {
namespace {
std::optional<QMap<QByteArray, QByteArray>> headersOf(const QByteArray& block) {
    QMap<QByteArray, QByteArray> headers;
    for (const QByteArray& line : block.split('\n')) {
        const QByteArray header = line.endsWith('\r') ? line.chopped(1) : line;
        const qsizetype colon = header.indexOf(':');
        if (colon <= 0) {
            return std::nullopt;
        }
        headers.insert(header.left(colon).trimmed().toLower(), header.mid(colon + 1).trimmed());
    }
    return headers;
}
} // namespace

std::optional<QByteArray> boundaryOf(const QByteArray& contentType) {
    const QList<QByteArray> pieces = contentType.split(';');
    if (pieces.value(0).trimmed().toLower() != "multipart/related") {
        return std::nullopt;
    }
    for (const QByteArray& piece : pieces.mid(1)) {
        const QByteArray parameter = piece.trimmed();
        if (parameter.toLower().startsWith("boundary=")) {
            QByteArray boundary = parameter.mid(9);
            if (boundary.size() >= 2 && boundary.startsWith('"') && boundary.endsWith('"')) {
                boundary = boundary.mid(1, boundary.size() - 2);
            }
            return boundary.isEmpty() ? std::nullopt : std::optional(boundary);
        }
    }
    return std::nullopt;
}

std::optional<QList<Part>> parse(const QByteArray& body, const QByteArray& boundary) {
    const QByteArray delimiter = "\r\n--" + boundary;
    if (!body.startsWith("--" + boundary + "\r\n")) {
        return std::nullopt;
    }
    QList<Part> parts;
    qsizetype position = boundary.size() + 4;
    while (true) {
        const qsizetype headersEnd = body.indexOf("\r\n\r\n", position);
        const qsizetype contentEnd = headersEnd < 0 ? -1 : body.indexOf(delimiter, headersEnd + 4);
        if (contentEnd < 0) {
            return std::nullopt;
        }
        const auto headers = headersOf(body.mid(position, headersEnd - position));
        if (!headers) {
            return std::nullopt;
        }
        parts.append(Part{*headers, body.mid(headersEnd + 4, contentEnd - headersEnd - 4)});
        position = contentEnd + delimiter.size();
        const QByteArray rest = body.mid(position);
        if (rest == "--\r\n" || rest == "--") {
            return parts;
        }
        if (!rest.startsWith("\r\n")) {
            return std::nullopt;
        }
        position += 2;
    }
}

} // namespace MultipartRelated
