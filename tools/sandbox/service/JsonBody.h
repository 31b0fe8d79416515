#pragma once

#include "sandbox/service/ServiceResponse.h"

#include <QJsonArray>
#include <QJsonObject>

#include <optional>
#include <variant>

// Reads a request's JSON object by the service's rules: a missing or null key is absent, a present
// value of another type makes the request invalid. The first problem is kept for the 400 answer.
class JsonBody {
public:
    // The body as an object, or the 400 answer for a body that is no JSON object.
    static std::variant<JsonBody, ServiceResponse> parse(const QByteArray& body);
    static bool isInteger(const QJsonValue& value);

    explicit JsonBody(QJsonObject object)
        : m_object(std::move(object)) {}

    bool isPresent(const QString& key) const;
    bool isNull(const QString& key) const;
    std::optional<QString> string(const QString& key);
    std::optional<qint64> integer(const QString& key);
    std::optional<bool> boolean(const QString& key);
    std::optional<QJsonArray> array(const QString& key);
    std::optional<QList<qint64>> integers(const QString& key);
    std::optional<QStringList> strings(const QString& key);

    void fail(const QString& message);
    QString problem() const { return m_problem; }
    // The 400 answer for the first problem found, or nothing.
    std::optional<ServiceResponse> failure() const;

private:
    QJsonValue present(const QString& key) const;
    void expect(const QString& key, const QString& kind);

    QJsonObject m_object;
    QString m_problem;
};
