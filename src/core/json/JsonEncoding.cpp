#include "core/json/JsonEncoding.h"

#include <QJsonDocument>

namespace Json {
namespace {
QByteArray serialize(const QJsonValue& value, QJsonDocument::JsonFormat format) {
    // QJsonObject keeps its keys sorted, so documents come out with sorted keys.
    if (value.isArray()) {
        return QJsonDocument(value.toArray()).toJson(format);
    }
    if (value.isObject()) {
        return QJsonDocument(value.toObject()).toJson(format);
    }
    // A bare scalar: wrap and cut, since QJsonDocument holds only arrays and objects.
    QByteArray wrapped = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return wrapped.mid(1, wrapped.size() - 2);
}
} // namespace

QByteArray serialize(const QJsonValue& value) {
    return serialize(value, QJsonDocument::Compact);
}
QByteArray serializeIndented(const QJsonValue& value) {
    return serialize(value, QJsonDocument::Indented);
}

} // namespace Json
