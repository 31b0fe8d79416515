#pragma once

#include "core/json/DecodingError.h"

#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QMap>
#include <QSet>
#include <QUuid>
#include <optional>

// The decoding rules every record follows, in one place:
// - a required key must be there with a value of its type, or decoding fails;
// - for an optional key, a missing key and a null both give absent;
// - a present, non-null value of the wrong type fails;
// - keys a record doesn't name are ignored.
// Integers and doubles are told apart: a whole number is an integer, and a number with a fraction
// never decodes as one.
namespace Json {

// Parses a whole document; anything but valid JSON fails.
QJsonValue parse(const QByteArray& bytes);

// How one type is read from a JSON value. Records provide `static T fromJson(const JsonObject&)`.
template <typename T> struct Decode;

class JsonObject;

template <typename T>
concept DecodableRecord = requires(const JsonObject& object) {
    { T::fromJson(object) } -> std::same_as<T>;
};

template <typename T> T decode(const QJsonValue& value, const QString& path) {
    return Decode<T>::from(value, path);
}

// A JSON object being decoded, with the key path that led to it.
class JsonObject {
public:
    static JsonObject from(const QJsonValue& value, const QString& path = QStringLiteral("$"));

    template <typename T> T required(const QString& key) const {
        const QJsonValue value = m_object.value(key);
        if (value.isUndefined() || value.isNull()) {
            throw DecodingError(pathOf(key), QStringLiteral("required key is missing"));
        }
        return decode<T>(value, pathOf(key));
    }

    template <typename T> std::optional<T> optional(const QString& key) const {
        const QJsonValue value = m_object.value(key);
        if (value.isUndefined() || value.isNull()) {
            return std::nullopt;
        }
        return decode<T>(value, pathOf(key));
    }

    // Whatever stands at the key, undefined when missing; for the few lenient fields.
    QJsonValue raw(const QString& key) const { return m_object.value(key); }
    const QJsonObject& object() const { return m_object; }
    const QString& path() const { return m_path; }
    QString pathOf(const QString& key) const { return m_path + u'.' + key; }

private:
    JsonObject(QJsonObject object, QString path)
        : m_object(std::move(object))
        , m_path(std::move(path)) {}

    QJsonObject m_object;
    QString m_path;
};

[[noreturn]] void typeMismatch(const QString& path, const char* expected);
// The integer a JSON number holds, if it holds a whole one within 64 bits.
std::optional<qint64> integerOf(const QJsonValue& value);

template <> struct Decode<QString> { static QString from(const QJsonValue& value, const QString& path); };
template <> struct Decode<qint64> { static qint64 from(const QJsonValue& value, const QString& path); };
template <> struct Decode<int> { static int from(const QJsonValue& value, const QString& path); };
template <> struct Decode<double> { static double from(const QJsonValue& value, const QString& path); };
template <> struct Decode<bool> { static bool from(const QJsonValue& value, const QString& path); };
template <> struct Decode<QUuid> { static QUuid from(const QJsonValue& value, const QString& path); };

template <typename T> struct Decode<QList<T>> {
    static QList<T> from(const QJsonValue& value, const QString& path) {
        if (!value.isArray()) {
            typeMismatch(path, "an array");
        }
        const QJsonArray array = value.toArray();
        QList<T> result;
        result.reserve(array.size());
        for (qsizetype i = 0; i < array.size(); ++i) {
            result.append(decode<T>(array.at(i), path + u'[' + QString::number(i) + u']'));
        }
        return result;
    }
};

template <typename T> struct Decode<QSet<T>> {
    static QSet<T> from(const QJsonValue& value, const QString& path) {
        const QList<T> list = decode<QList<T>>(value, path);
        return QSet<T>(list.begin(), list.end());
    }
};

template <typename T> struct Decode<QMap<QString, T>> {
    static QMap<QString, T> from(const QJsonValue& value, const QString& path) {
        if (!value.isObject()) {
            typeMismatch(path, "an object");
        }
        const QJsonObject object = value.toObject();
        QMap<QString, T> result;
        for (auto it = object.begin(); it != object.end(); ++it) {
            result.insert(it.key(), decode<T>(it.value(), path + u'.' + it.key()));
        }
        return result;
    }
};

template <DecodableRecord T> struct Decode<T> {
    static T from(const QJsonValue& value, const QString& path) { return T::fromJson(JsonObject::from(value, path)); }
};

} // namespace Json
