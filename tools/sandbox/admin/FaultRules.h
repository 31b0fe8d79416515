#pragma once

#include "sandbox/service/ServiceResponse.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QRegularExpression>

#include <condition_variable>
#include <mutex>
#include <optional>
#include <variant>
#include <vector>

// One injected fault: which requests it catches and what happens to them.
struct FaultRule {
    int id = 0;
    QByteArray method; // empty: any method
    QString pathPattern;
    QRegularExpression pathExpression;
    int remaining = 1; // negative: without end
    int delayMs = 0;
    bool drop = false;
    // The request is handled as without the rule, and then the connection is dropped instead of
    // sending the answer: a change made whose confirmation is lost on the way.
    bool dropAfter = false;
    // The request is handled as without the rule, and then the rule's answer is sent in place of
    // its own: a change made whose confirmation can't be read.
    bool answerAfter = false;
    // The request waits until the held requests are released (or 60 s have passed), then goes on
    // as the rest of the rule says.
    bool hold = false;
    std::optional<ServiceResponse> answer;
    int applied = 0;
    // How many releases there had been when this use of the rule was taken.
    int releasesAtTake = 0;

    QJsonObject toJson() const;
};

// The fault rules posted to /_sandbox/faults. The first rule that matches a request and has times
// left is applied to it, once per request.
//
// A rule: {"method": "GET", "path": "/api/v2/team/*/task", "times": 1,
//          "status": 429, "headers": {"Retry-After": "1"}, "err": "...", "ecode": "...",
//          "body": <any JSON>, "bodyText": "...", "contentType": "...", "delayMs": 200, "drop": true,
//          "dropAfter": true, "answerAfter": true, "hold": true}
// `path` is a glob over the decoded path: `*` stays within a segment, `**` crosses segments.
// `times` defaults to 1; a negative number never runs out. A rule delays, then drops the connection
// or answers with `status`; a rule with a delay alone lets the request go on afterwards. With
// `dropAfter` the request goes on and is handled, and the connection is dropped in place of its
// answer; with `answerAfter` it is handled, and the rule's `status` and body are sent in place of its
// answer. With `hold` the request waits, after its delay, until POST /_sandbox/faults/release (or
// the rules are cleared), at most 60 s.
class FaultRules {
public:
    // Adds one rule object or {"rules": [...]}; returns the added rules or what is wrong.
    std::variant<QJsonArray, QString> add(const QJsonValue& posted);
    // The rule to apply to this request, with its use counted.
    std::optional<FaultRule> take(const QByteArray& method, const QString& path);
    QJsonArray toJson() const;
    // Removes every rule and lets every held request go on.
    void clear();
    // Blocks the calling request while `rule`, taken for it, holds it.
    void waitUntilReleased(const FaultRule& rule);
    // Lets every held request go on.
    void release();

private:
    std::variant<FaultRule, QString> parse(const QJsonObject& object);

    mutable std::mutex m_mutex;
    std::condition_variable m_released;
    std::vector<FaultRule> m_rules;
    int m_nextID = 1;
    int m_releases = 0;
};
