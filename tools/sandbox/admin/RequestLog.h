#pragma once

#include "sandbox/service/ServiceRequest.h"

#include <QJsonArray>
#include <QJsonObject>

#include <deque>
#include <mutex>
#include <optional>

// What the sandbox received, for tests to check: one entry per request outside /_sandbox, made at
// arrival and completed with its answer.
//
// An entry: {"seq": 7, "time": "2024-06-11T09:30:00.123Z", "method": "GET", "path": "/api/v2/team",
//            "query": [["page", "0"], ...], "headers": [["Authorization", "pk_..."], ...],
//            "json": <the body if it is JSON>, "bodySize": 0,
//            "parts": [{"name": "attachment", "filename": "a.png", "contentType": "...", "size": 12}],
//            "inFlight": 1, "status": 200, "fault": null}
// `inFlight` counts the requests being handled when this one arrived, itself included. `status` is
// 0 for a dropped connection or a request still running; `fault` is the id of the rule applied.
class RequestLog {
public:
    static constexpr qsizetype capacity = 10'000;

    qint64 begin(const ServiceRequest& request, int inFlight);
    void finish(qint64 seq, const ServiceRequest& request, int status, std::optional<int> faultID);
    // The entries after `since`, oldest first.
    QJsonArray entries(qint64 since) const;
    void clear();

private:
    QJsonObject* find(qint64 seq);

    mutable std::mutex m_mutex;
    std::deque<QJsonObject> m_entries;
    qint64 m_nextSeq = 1;
};
