#include "sandbox/service/JsonBody.h"

#include "sandbox/service/ApiErrors.h"

#include <QCborValue>
#include <QJsonDocument>

std::variant<JsonBody, ServiceResponse> JsonBody::parse(const QByteArray& body) {
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(body, &error);
    if (error.error != QJsonParseError::NoError) {
        return ApiErrors::invalidJson(error.errorString());
    }
    if (!document.isObject()) {
        return ApiErrors::invalidJson(QStringLiteral("the top level is no object"));
    }
    return JsonBody(document.object());
}

bool JsonBody::isInteger(const QJsonValue& value) {
    return QCborValue::fromJsonValue(value).isInteger();
}

QJsonValue JsonBody::present(const QString& key) const {
    const QJsonValue value = m_object.value(key);
    return value.isNull() ? QJsonValue(QJsonValue::Undefined) : value;
}

bool JsonBody::isPresent(const QString& key) const {
    return !present(key).isUndefined();
}

bool JsonBody::isNull(const QString& key) const {
    return m_object.contains(key) && m_object.value(key).isNull();
}

void JsonBody::fail(const QString& message) {
    if (m_problem.isEmpty()) {
        m_problem = message;
    }
}

void JsonBody::expect(const QString& key, const QString& kind) {
    fail(QStringLiteral("%1 must be %2").arg(key, kind));
}

std::optional<QString> JsonBody::string(const QString& key) {
    const QJsonValue value = present(key);
    if (value.isUndefined()) {
        return std::nullopt;
    }
    if (!value.isString()) {
        expect(key, QStringLiteral("a string"));
        return std::nullopt;
    }
    return value.toString();
}

std::optional<qint64> JsonBody::integer(const QString& key) {
    const QJsonValue value = present(key);
    if (value.isUndefined()) {
        return std::nullopt;
    }
    if (!isInteger(value)) {
        expect(key, QStringLiteral("an integer"));
        return std::nullopt;
    }
    return value.toInteger();
}

std::optional<bool> JsonBody::boolean(const QString& key) {
    const QJsonValue value = present(key);
    if (value.isUndefined()) {
        return std::nullopt;
    }
    if (!value.isBool()) {
        expect(key, QStringLiteral("a boolean"));
        return std::nullopt;
    }
    return value.toBool();
}

std::optional<QJsonArray> JsonBody::array(const QString& key) {
    const QJsonValue value = present(key);
    if (value.isUndefined()) {
        return std::nullopt;
    }
    if (!value.isArray()) {
        expect(key, QStringLiteral("an array"));
        return std::nullopt;
    }
    return value.toArray();
}

std::optional<QList<qint64>> JsonBody::integers(const QString& key) {
    const std::optional<QJsonArray> values = array(key);
    if (!values) {
        return std::nullopt;
    }
    QList<qint64> result;
    for (const auto& value : *values) {
        if (!isInteger(value)) {
            expect(key, QStringLiteral("an array of integers"));
            return std::nullopt;
        }
        result.append(value.toInteger());
    }
    return result;
}

std::optional<QStringList> JsonBody::strings(const QString& key) {
    const std::optional<QJsonArray> values = array(key);
    if (!values) {
        return std::nullopt;
    }
    QStringList result;
    for (const auto& value : *values) {
        if (!value.isString()) {
            expect(key, QStringLiteral("an array of strings"));
            return std::nullopt;
        }
        result.append(value.toString());
    }
    return result;
}

std::optional<ServiceResponse> JsonBody::failure() const {
    if (m_problem.isEmpty()) {
        return std::nullopt;
    }
    return ApiErrors::invalidField(m_problem);
}
