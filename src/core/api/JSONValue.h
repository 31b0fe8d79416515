#pragma once

#include "core/json/JsonDecoding.h"

#include <QJsonValue>
#include <QList>
#include <QMap>
#include <QString>
#include <variant>

// Any JSON value, as custom field values travel: a whole number stays an integer and is written
// back without a fraction.
struct JSONValue {
    struct Null {
        bool operator==(const Null&) const = default;
    };
    using Array = QList<JSONValue>;
    using Object = QMap<QString, JSONValue>;
    // Cases in order: string, number, integer, bool, array, object, null.
    using Value = std::variant<QString, double, qint64, bool, Array, Object, Null>;

    Value value = Null{};

    static JSONValue string(QString text) { return {std::move(text)}; }
    static JSONValue number(double number) { return {number}; }
    static JSONValue integer(qint64 integer) { return {integer}; }
    static JSONValue boolean(bool flag) { return {flag}; }
    static JSONValue array(Array values) { return {std::move(values)}; }
    static JSONValue object(Object members) { return {std::move(members)}; }
    static JSONValue null() { return {Null{}}; }

    // Tries null, boolean, integer, double, string, array, object in that order; never fails on
    // a value that came out of a JSON parser.
    static JSONValue fromJson(const QJsonValue& json);
    QJsonValue toJson() const;

    bool operator==(const JSONValue&) const = default;
};

template <> struct Json::Decode<JSONValue> {
    static JSONValue from(const QJsonValue& value, const QString& /*path*/) { return JSONValue::fromJson(value); }
};
