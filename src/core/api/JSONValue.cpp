#include "core/api/JSONValue.h"

#include "core/json/DecodingError.h"
#include "core/json/JsonDecoding.h"

#include <QJsonArray>
#include <QJsonObject>

JSONValue JSONValue::fromJson(const QJsonValue& json) {
    switch (json.type()) {
    case QJsonValue::Null:
        return null();
    case QJsonValue::Bool:
        return boolean(json.toBool());
    case QJsonValue::Double:
        if (const auto whole = Json::integerOf(json)) {
            return integer(*whole);
        }
        return number(json.toDouble());
    case QJsonValue::String:
        return string(json.toString());
    case QJsonValue::Array: {
        Array values;
        for (const auto& element : json.toArray()) {
            values.append(fromJson(element));
        }
        return array(std::move(values));
    }
    case QJsonValue::Object: {
        Object members;
        const QJsonObject source = json.toObject();
        for (auto it = source.begin(); it != source.end(); ++it) {
            members.insert(it.key(), fromJson(it.value()));
        }
        return object(std::move(members));
    }
    case QJsonValue::Undefined:
        break;
    }
    throw DecodingError(QStringLiteral("$"), QStringLiteral("Unsupported JSON value"));
}

QJsonValue JSONValue::toJson() const {
    return std::visit(
        [](const auto& payload) -> QJsonValue {
            using T = std::decay_t<decltype(payload)>;
            if constexpr (std::is_same_v<T, Array>) {
                QJsonArray array;
                for (const JSONValue& element : payload) {
                    array.append(element.toJson());
                }
                return array;
            } else if constexpr (std::is_same_v<T, Object>) {
                QJsonObject object;
                for (auto it = payload.begin(); it != payload.end(); ++it) {
                    object.insert(it.key(), it.value().toJson());
                }
                return object;
            } else if constexpr (std::is_same_v<T, Null>) {
                return {QJsonValue::Null};
            } else {
                return QJsonValue(payload);
            }
        },
        value);
}
