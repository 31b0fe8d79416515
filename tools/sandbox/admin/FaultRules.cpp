#include "sandbox/admin/FaultRules.h"

#include "sandbox/service/JsonBody.h"

#include <QJsonDocument>

namespace {
constexpr int maximumDelayMs = 60'000;

QRegularExpression globExpression(const QString& glob) {
    QString pattern = QStringLiteral("^");
    for (qsizetype index = 0; index < glob.size(); ++index) {
        if (glob.at(index) != QLatin1Char('*')) {
            pattern += QRegularExpression::escape(glob.at(index));
        } else if (index + 1 < glob.size() && glob.at(index + 1) == QLatin1Char('*')) {
            pattern += QStringLiteral(".*");
            ++index;
        } else {
            pattern += QStringLiteral("[^/]*");
        }
    }
    return QRegularExpression(pattern + QLatin1Char('$'));
}
} // namespace

QJsonObject FaultRule::toJson() const {
    QJsonObject object{{QStringLiteral("id"), id},
                       {QStringLiteral("method"), method.isEmpty() ? QJsonValue() : QString::fromLatin1(method)},
                       {QStringLiteral("path"), pathPattern},
                       {QStringLiteral("remaining"), remaining},
                       {QStringLiteral("applied"), applied},
                       {QStringLiteral("delayMs"), delayMs},
                       {QStringLiteral("drop"), drop},
                       {QStringLiteral("dropAfter"), dropAfter},
                       {QStringLiteral("answerAfter"), answerAfter},
                       {QStringLiteral("hold"), hold}};
    if (answer) {
        object.insert(QStringLiteral("status"), answer->status);
    }
    return object;
}

std::variant<FaultRule, QString> FaultRules::parse(const QJsonObject& object) {
    JsonBody fields(object);
    FaultRule rule;
    rule.method = fields.string(QStringLiteral("method")).value_or(QString()).toUpper().toLatin1();
    if (rule.method == "*") {
        rule.method.clear();
    }
    rule.pathPattern = fields.string(QStringLiteral("path")).value_or(QString());
    rule.remaining = static_cast<int>(fields.integer(QStringLiteral("times")).value_or(1));
    rule.delayMs = static_cast<int>(fields.integer(QStringLiteral("delayMs")).value_or(0));
    rule.drop = fields.boolean(QStringLiteral("drop")).value_or(false);
    rule.dropAfter = fields.boolean(QStringLiteral("dropAfter")).value_or(false);
    rule.answerAfter = fields.boolean(QStringLiteral("answerAfter")).value_or(false);
    rule.hold = fields.boolean(QStringLiteral("hold")).value_or(false);
    const std::optional<qint64> status = fields.integer(QStringLiteral("status"));
    const std::optional<QString> err = fields.string(QStringLiteral("err"));
    const std::optional<QString> ecode = fields.string(QStringLiteral("ecode"));
    const std::optional<QString> bodyText = fields.string(QStringLiteral("bodyText"));
    const std::optional<QString> contentType = fields.string(QStringLiteral("contentType"));
    const QJsonValue headers = object.value(QStringLiteral("headers"));
    if (!fields.problem().isEmpty()) {
        return fields.problem();
    }
    if (!rule.pathPattern.startsWith(QLatin1Char('/'))) {
        return QStringLiteral("path must be a pattern that starts with /");
    }
    if (rule.remaining == 0) {
        return QStringLiteral("times must not be 0");
    }
    if (rule.delayMs < 0 || rule.delayMs > maximumDelayMs) {
        return QStringLiteral("delayMs must be from 0 to %1").arg(maximumDelayMs);
    }
    if (status && (*status < 100 || *status > 599)) {
        return QStringLiteral("status must be an HTTP status from 100 to 599");
    }
    if (status && rule.drop) {
        return QStringLiteral("a rule either drops the connection or answers with a status");
    }
    if (rule.dropAfter && (status || rule.drop)) {
        return QStringLiteral("a rule with dropAfter neither answers with a status nor drops before handling");
    }
    if (rule.answerAfter && !status) {
        return QStringLiteral("a rule with answerAfter needs the status to answer with");
    }
    if (!status && !rule.drop && !rule.dropAfter && rule.delayMs == 0 && !rule.hold) {
        return QStringLiteral("a rule needs a status, drop, dropAfter, delayMs or hold");
    }
    if (!headers.isUndefined() && !headers.isObject()) {
        return QStringLiteral("headers must be an object of strings");
    }
    rule.pathExpression = globExpression(rule.pathPattern);
    if (status) {
        ServiceResponse answer;
        answer.status = static_cast<int>(*status);
        if (bodyText) {
            answer.body = bodyText->toUtf8();
            answer.contentType = "text/plain; charset=utf-8";
        } else if (object.contains(QStringLiteral("body"))) {
            // Wrapped in an array and unwrapped again, because QJsonDocument writes no bare scalars.
            answer.body = QJsonDocument(QJsonArray{object.value(QStringLiteral("body"))})
                              .toJson(QJsonDocument::Compact)
                              .chopped(1)
                              .mid(1);
        } else {
            QJsonObject errorBody{
                {QStringLiteral("err"), err.value_or(QStringLiteral("Sandbox fault: HTTP %1").arg(*status))}};
            if (ecode) {
                errorBody.insert(QStringLiteral("ECODE"), *ecode);
            }
            answer.body = QJsonDocument(errorBody).toJson(QJsonDocument::Compact);
        }
        if (contentType) {
            answer.contentType = contentType->toUtf8();
        }
        const QJsonObject headerObject = headers.toObject();
        for (auto it = headerObject.begin(); it != headerObject.end(); ++it) {
            if (!it.value().isString()) {
                return QStringLiteral("headers must be an object of strings");
            }
            answer.headers.append({it.key().toUtf8(), it.value().toString().toUtf8()});
        }
        rule.answer = answer;
    }
    return rule;
}

std::variant<QJsonArray, QString> FaultRules::add(const QJsonValue& posted) {
    const QJsonArray objects = posted.toObject().contains(QStringLiteral("rules"))
                                   ? posted.toObject().value(QStringLiteral("rules")).toArray()
                                   : QJsonArray{posted};
    std::vector<FaultRule> parsed;
    for (const auto& value : objects) {
        if (!value.isObject()) {
            return QStringLiteral("a rule must be an object");
        }
        auto rule = parse(value.toObject());
        if (const QString* problem = std::get_if<QString>(&rule)) {
            return *problem;
        }
        parsed.push_back(std::get<FaultRule>(std::move(rule)));
    }
    std::lock_guard lock(m_mutex);
    QJsonArray added;
    for (FaultRule& rule : parsed) {
        rule.id = m_nextID++;
        added.append(rule.toJson());
        m_rules.push_back(std::move(rule));
    }
    return added;
}

std::optional<FaultRule> FaultRules::take(const QByteArray& method, const QString& path) {
    std::lock_guard lock(m_mutex);
    for (FaultRule& rule : m_rules) {
        if (rule.remaining != 0 && (rule.method.isEmpty() || rule.method == method) &&
            rule.pathExpression.match(path).hasMatch()) {
            if (rule.remaining > 0) {
                --rule.remaining;
            }
            ++rule.applied;
            FaultRule taken = rule;
            taken.releasesAtTake = m_releases;
            return taken;
        }
    }
    return std::nullopt;
}

QJsonArray FaultRules::toJson() const {
    std::lock_guard lock(m_mutex);
    QJsonArray rules;
    for (const FaultRule& rule : m_rules) {
        rules.append(rule.toJson());
    }
    return rules;
}

void FaultRules::clear() {
    std::lock_guard lock(m_mutex);
    m_rules.clear();
    ++m_releases;
    m_released.notify_all();
}

void FaultRules::waitUntilReleased(const FaultRule& rule) {
    std::unique_lock lock(m_mutex);
    m_released.wait_for(lock, std::chrono::milliseconds(maximumDelayMs),
                        [this, &rule] { return m_releases != rule.releasesAtTake; });
}

void FaultRules::release() {
    std::lock_guard lock(m_mutex);
    ++m_releases;
    m_released.notify_all();
}
