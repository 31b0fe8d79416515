#include "sandbox/api/CustomFieldValues.h"

#include "sandbox/service/JsonBody.h"

#include <QJsonObject>

namespace {

bool isOption(const FieldDefinition& field, const QJsonValue& value) {
    return (value.isString() && field.optionIDs.contains(value.toString())) ||
           (JsonBody::isInteger(value) && value.toInteger() >= 0 && value.toInteger() < field.optionIDs.size());
}

bool fits(const FieldDefinition& field, const QJsonValue& value) {
    const QString& type = field.type;
    if (type == QLatin1String("text") || type == QLatin1String("short_text") || type == QLatin1String("url") ||
        type == QLatin1String("phone")) {
        return value.isString();
    }
    if (type == QLatin1String("email")) {
        return value.isString() && value.toString().contains(QLatin1Char('@'));
    }
    if (type == QLatin1String("number")) {
        return value.isDouble();
    }
    if (type == QLatin1String("date")) {
        return JsonBody::isInteger(value);
    }
    if (type == QLatin1String("checkbox")) {
        return value.isBool();
    }
    if (type == QLatin1String("drop_down")) {
        return isOption(field, value);
    }
    if (type == QLatin1String("labels")) {
        const QJsonArray labels = value.toArray();
        return value.isArray() && std::all_of(labels.begin(), labels.end(), [&](const QJsonValue& label) {
                   return label.isString() && field.optionIDs.contains(label.toString());
               });
    }
    return false;
}

} // namespace

namespace CustomFieldValues {

std::optional<QString> check(const TaskList& list, const QJsonArray& values, QJsonArray& stored) {
    for (const auto& entry : values) {
        const QJsonObject object = entry.toObject();
        const QString id = object.value(QStringLiteral("id")).toString();
        if (!entry.isObject() || id.isEmpty() || !object.contains(QStringLiteral("value"))) {
            return QStringLiteral("custom_fields must hold objects with an id and a value");
        }
        const auto field = std::find_if(list.fields.begin(), list.fields.end(),
                                        [&](const FieldDefinition& each) { return each.id == id; });
        if (field == list.fields.end()) {
            return QStringLiteral("Custom field %1 is not a field of this list").arg(id);
        }
        if (!fits(*field, object.value(QStringLiteral("value")))) {
            return QStringLiteral("Value of custom field %1 (%2) is not valid for its type %3")
                .arg(id, field->name, field->type);
        }
        stored.append(QJsonObject{{QStringLiteral("id"), id},
                                  {QStringLiteral("name"), field->name},
                                  {QStringLiteral("type"), field->type},
                                  {QStringLiteral("value"), object.value(QStringLiteral("value"))}});
    }
    return std::nullopt;
}

} // namespace CustomFieldValues
