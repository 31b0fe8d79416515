#include "core/json/JsonDecoding.h"

#include <QCborValue>
#include <QJsonDocument>
#include <QJsonParseError>

namespace Json {

QJsonValue parse(const QByteArray& bytes) {
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError) {
        throw DecodingError(QStringLiteral("$"), QStringLiteral("not valid JSON: ") + error.errorString());
    }
    if (document.isArray()) {
        return document.array();
    }
    return document.object();
}

JsonObject JsonObject::from(const QJsonValue& value, const QString& path) {
    if (!value.isObject()) {
        typeMismatch(path, "an object");
    }
    return {value.toObject(), path};
}

void typeMismatch(const QString& path, const char* expected) {
    throw DecodingError(path, QStringLiteral("expected ") + QLatin1String(expected));
}

std::optional<qint64> integerOf(const QJsonValue& value) {
    if (!value.isDouble()) {
        return std::nullopt;
    }
    // Qt's parser keeps whole numbers that fit 64 bits as integers; the rest become doubles.
    const QCborValue number = QCborValue::fromJsonValue(value);
    if (!number.isInteger()) {
        return std::nullopt;
    }
    return number.toInteger();
}

QString Decode<QString>::from(const QJsonValue& value, const QString& path) {
    if (!value.isString()) {
        typeMismatch(path, "a string");
    }
    return value.toString();
}

qint64 Decode<qint64>::from(const QJsonValue& value, const QString& path) {
    const auto integer = integerOf(value);
    if (!integer) {
        typeMismatch(path, "an integer");
    }
    return *integer;
}

int Decode<int>::from(const QJsonValue& value, const QString& path) {
    const qint64 integer = Decode<qint64>::from(value, path);
    if (integer < std::numeric_limits<int>::min() || integer > std::numeric_limits<int>::max()) {
        typeMismatch(path, "an integer of 32 bits");
    }
    return static_cast<int>(integer);
}

double Decode<double>::from(const QJsonValue& value, const QString& path) {
    if (!value.isDouble()) {
        typeMismatch(path, "a number");
    }
    return value.toDouble();
}

bool Decode<bool>::from(const QJsonValue& value, const QString& path) {
    if (!value.isBool()) {
        typeMismatch(path, "a boolean");
    }
    return value.toBool();
}

QUuid Decode<QUuid>::from(const QJsonValue& value, const QString& path) {
    const QUuid uuid = QUuid::fromString(Decode<QString>::from(value, path));
    if (uuid.isNull()) {
        typeMismatch(path, "a UUID");
    }
    return uuid;
}

} // namespace Json
