#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QMap>
#include <QSet>
#include <QUuid>
#include <algorithm>
#include <optional>

// Writing records as JSON: an absent optional field is left out, never written as null. Objects
// come out with sorted keys, so a body is the same bytes each time.
namespace Json {

template <typename T>
concept EncodableRecord = requires(const T& record) {
    { record.toJson() } -> std::convertible_to<QJsonValue>;
};

inline QJsonValue encode(const QString& value) {
    return value;
}
inline QJsonValue encode(qint64 value) {
    return value;
}
inline QJsonValue encode(int value) {
    return value;
}
inline QJsonValue encode(double value) {
    return value;
}
inline QJsonValue encode(bool value) {
    return value;
}
inline QJsonValue encode(const QUuid& value) {
    return value.toString(QUuid::WithoutBraces);
}
template <EncodableRecord T> QJsonValue encode(const T& record) {
    return record.toJson();
}

template <typename T> QJsonValue encode(const QList<T>& values) {
    QJsonArray array;
    for (const T& value : values) {
        array.append(encode(value));
    }
    return array;
}

// Sets carry no order; they are written sorted so that saving twice gives the same file.
template <typename T> QJsonValue encode(const QSet<T>& values) {
    QList<T> sorted(values.begin(), values.end());
    std::sort(sorted.begin(), sorted.end());
    return encode(sorted);
}

template <typename T> QJsonValue encode(const QMap<QString, T>& values) {
    QJsonObject object;
    for (auto it = values.begin(); it != values.end(); ++it) {
        object.insert(it.key(), encode(it.value()));
    }
    return object;
}

// Builds one object field by field.
class ObjectBuilder {
public:
    template <typename T> ObjectBuilder& set(const QString& key, const T& value) {
        m_object.insert(key, encode(value));
        return *this;
    }

    template <typename T> ObjectBuilder& set(const QString& key, const std::optional<T>& value) {
        if (value) {
            m_object.insert(key, encode(*value));
        }
        return *this;
    }

    QJsonObject object() const { return m_object; }

private:
    QJsonObject m_object;
};

// Compact bytes with sorted keys.
QByteArray serialize(const QJsonValue& value);
// Indented bytes with sorted keys, for files people may read.
QByteArray serializeIndented(const QJsonValue& value);

} // namespace Json
