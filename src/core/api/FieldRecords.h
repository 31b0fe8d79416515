#pragma once

#include "core/json/JsonDecoding.h"

#include <QJsonObject>
#include <QList>
#include <QSet>
#include <QString>
#include <optional>

// A status a task can be in, as a space or a list defines it.
struct NVStatus {
    QString status;
    std::optional<QString> color;
    std::optional<QString> type;

    static NVStatus fromJson(const Json::JsonObject& json);
    QJsonObject toJson() const;
    bool operator==(const NVStatus&) const = default;
};

// A tag of a space, with its foreground and background colours.
struct NVTag {
    QString name;
    std::optional<QString> tagFg;
    std::optional<QString> tagBg;

    static NVTag fromJson(const Json::JsonObject& json);
    QJsonObject toJson() const;
    bool operator==(const NVTag&) const = default;
};

// The answer to GET space/{id}/tag.
struct TagsResponse {
    QList<NVTag> tags;

    static TagsResponse fromJson(const Json::JsonObject& json);
    QJsonObject toJson() const;
    bool operator==(const TagsResponse&) const = default;
};

// A custom field of a list.
struct CustomField {
    struct TypeConfig {
        // One choice of a drop-down or labels field.
        struct Option {
            QString id;
            std::optional<QString> name;
            std::optional<QString> label;
            std::optional<QString> color;

            static Option fromJson(const Json::JsonObject& json);
            QJsonObject toJson() const;
            bool operator==(const Option&) const = default;
        };

        std::optional<QList<Option>> options;

        static TypeConfig fromJson(const Json::JsonObject& json);
        QJsonObject toJson() const;
        bool operator==(const TypeConfig&) const = default;
    };

    // The field types the composer can edit; a field of any other type is not offered.
    static const QSet<QString>& editableTypes();

    QString id;
    QString name;
    QString type;
    std::optional<TypeConfig> typeConfig;
    std::optional<bool> required;

    static CustomField fromJson(const Json::JsonObject& json);
    QJsonObject toJson() const;
    bool operator==(const CustomField&) const = default;
};

// The answer to GET list/{id}/field.
struct FieldsResponse {
    QList<CustomField> fields;

    static FieldsResponse fromJson(const Json::JsonObject& json);
    QJsonObject toJson() const;
    bool operator==(const FieldsResponse&) const = default;
};
