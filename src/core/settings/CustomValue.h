#pragma once

#include "core/api/JSONValue.h"
#include "core/json/JsonDecoding.h"

#include <QDateTime>
#include <QJsonObject>
#include <QSet>
#include <QString>
#include <optional>
#include <variant>

// What the user entered for one custom field of a list, in the draft and in stored templates.
// The field's type string decides the case: "drop_down" an option, "labels" labels, "checkbox" a
// checkbox, "date" a date, "number" a number, and the text types text.
struct CustomValue {
    struct Text {
        QString text;
        bool operator==(const Text&) const = default;
    };
    // The number as typed, kept as text until it is sent.
    struct Number {
        QString text;
        bool operator==(const Number&) const = default;
    };
    // The id of the chosen option; an empty id counts as a value.
    struct Option {
        std::optional<QString> id;
        bool operator==(const Option&) const = default;
    };
    // The ids of the chosen options.
    struct Labels {
        QSet<QString> ids;
        bool operator==(const Labels&) const = default;
    };
    struct Date {
        std::optional<QDateTime> date;
        bool operator==(const Date&) const = default;
    };
    struct Checkbox {
        bool checked = false;
        bool operator==(const Checkbox&) const = default;
    };
    // Cases in order: text, number, option, labels, date, checkbox.
    using Case = std::variant<Text, Number, Option, Labels, Date, Checkbox>;

    Case value;

    static CustomValue text(QString text) { return {Text{std::move(text)}}; }
    static CustomValue number(QString text) { return {Number{std::move(text)}}; }
    static CustomValue option(std::optional<QString> id) { return {Option{std::move(id)}}; }
    static CustomValue labels(QSet<QString> ids) { return {Labels{std::move(ids)}}; }
    static CustomValue date(std::optional<QDateTime> date) { return {Date{std::move(date)}}; }
    static CustomValue checkbox(bool checked) { return {Checkbox{checked}}; }

    // Text and numbers are empty when nothing but spaces and tabs (not newlines) stand in them, an
    // option or date when absent, labels when none is chosen, a checkbox when unticked.
    bool isEmpty() const;

    // The value the service expects for the field in a new task, or absent to leave the field out:
    // what can't be expressed is dropped without a word. An unticked checkbox is never sent as
    // false, since a new task has it unticked anyway.
    std::optional<JSONValue> jsonValue() const;

    // The settings file's form: one key named after the case, holding {"_0": payload}; an absent
    // option or date leaves the inner object empty. Decoding fails with "Invalid number of keys
    // found, expected one." unless exactly one known case key is present.
    static CustomValue fromJson(const Json::JsonObject& json);
    QJsonObject toJson() const;

    bool operator==(const CustomValue&) const = default;
};
