#include "sandbox/admin/RequestLog.h"

#include <QDateTime>
#include <QJsonDocument>

#include <algorithm>

namespace {
// Pseudo headers that the HTTP library adds for the peer's address.
bool isPeerHeader(const QByteArray& name) {
    return name == "REMOTE_ADDR" || name == "REMOTE_PORT" || name == "LOCAL_ADDR" || name == "LOCAL_PORT";
}
} // namespace

qint64 RequestLog::begin(const ServiceRequest& request, int inFlight) {
    QJsonArray query;
    for (const auto& [name, value] : request.query) {
        query.append(QJsonArray{name, value});
    }
    QJsonArray headers;
    for (const auto& [name, value] : request.headers) {
        if (!isPeerHeader(name)) {
            headers.append(QJsonArray{QString::fromLatin1(name), QString::fromUtf8(value)});
        }
    }
    QJsonObject entry{{QStringLiteral("time"), QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs)},
                      {QStringLiteral("method"), QString::fromLatin1(request.method)},
                      {QStringLiteral("path"), request.path},
                      {QStringLiteral("query"), query},
                      {QStringLiteral("headers"), headers},
                      {QStringLiteral("bodySize"), request.bodySize},
                      {QStringLiteral("parts"), QJsonArray()},
                      {QStringLiteral("inFlight"), inFlight},
                      {QStringLiteral("status"), 0},
                      {QStringLiteral("fault"), QJsonValue()}};
    if (!request.body.isEmpty()) {
        const QJsonDocument json = QJsonDocument::fromJson(request.body);
        if (json.isObject()) {
            entry.insert(QStringLiteral("json"), json.object());
        } else if (json.isArray()) {
            entry.insert(QStringLiteral("json"), json.array());
        }
    }
    std::lock_guard lock(m_mutex);
    const qint64 seq = m_nextSeq++;
    entry.insert(QStringLiteral("seq"), seq);
    m_entries.push_back(entry);
    if (static_cast<qsizetype>(m_entries.size()) > capacity) {
        m_entries.pop_front();
    }
    return seq;
}

QJsonObject* RequestLog::find(qint64 seq) {
    // Recent entries are at the back, where a finishing request is found at once.
    const auto entry = std::find_if(m_entries.rbegin(), m_entries.rend(), [seq](const QJsonObject& each) {
        return each.value(QStringLiteral("seq")).toInteger() == seq;
    });
    return entry == m_entries.rend() ? nullptr : &*entry;
}

void RequestLog::finish(qint64 seq, const ServiceRequest& request, int status, std::optional<int> faultID) {
    QJsonArray parts;
    if (request.streamedBody) {
        for (const StreamedBody::Part& part : request.streamedBody->parts()) {
            parts.append(QJsonObject{{QStringLiteral("name"), QString::fromUtf8(part.header.name)},
                                     {QStringLiteral("filename"), QString::fromUtf8(part.header.filename)},
                                     {QStringLiteral("contentType"), QString::fromUtf8(part.header.contentType)},
                                     {QStringLiteral("size"), part.size}});
        }
    }
    std::lock_guard lock(m_mutex);
    if (QJsonObject* entry = find(seq)) {
        entry->insert(QStringLiteral("status"), status);
        entry->insert(QStringLiteral("parts"), parts);
        entry->insert(QStringLiteral("fault"), faultID ? QJsonValue(*faultID) : QJsonValue());
    }
}

QJsonArray RequestLog::entries(qint64 since) const {
    std::lock_guard lock(m_mutex);
    QJsonArray result;
    for (const QJsonObject& entry : m_entries) {
        if (entry.value(QStringLiteral("seq")).toInteger() > since) {
            result.append(entry);
        }
    }
    return result;
}

void RequestLog::clear() {
    std::lock_guard lock(m_mutex);
    m_entries.clear();
}
