#include "sandbox/service/ServiceRequest.h"

#include <QUrl>
#include <QUrlQuery>

ServiceRequest ServiceRequest::fromTarget(const QByteArray& method, const QByteArray& target) {
    ServiceRequest request;
    request.method = method;
    const qsizetype question = target.indexOf('?');
    const QByteArray rawPath = question < 0 ? target : target.left(question);
    for (const QByteArray& rawSegment : rawPath.split('/')) {
        if (!rawSegment.isEmpty()) {
            request.segments.append(QUrl::fromPercentEncoding(rawSegment));
        }
    }
    request.path = QUrl::fromPercentEncoding(rawPath);
    if (question >= 0) {
        const QUrlQuery query(QString::fromUtf8(target.mid(question + 1)));
        request.query = query.queryItems(QUrl::FullyDecoded);
    }
    return request;
}

QByteArray ServiceRequest::header(QByteArrayView name) const {
    for (const auto& [key, value] : headers) {
        if (key.compare(name, Qt::CaseInsensitive) == 0) {
            return value;
        }
    }
    return {};
}

QStringList ServiceRequest::queryValues(QStringView name) const {
    QStringList values;
    for (const auto& [key, value] : query) {
        if (key == name) {
            values.append(value);
        }
    }
    return values;
}

void ServiceRequest::discardBody() const {
    if (streamedBody) {
        streamedBody->discard();
    }
}

bool StreamedBody::readMultipart(const PartStarted& onPart, const DataReceived& onData) {
    return readParts(
        [&](const MultipartPartHeader& header) {
            m_parts.push_back(Part{header, 0});
            return onPart(header);
        },
        [&](const char* data, size_t size) {
            if (!m_parts.empty()) {
                m_parts.back().size += static_cast<qint64>(size);
            }
            return onData(data, size);
        });
}
