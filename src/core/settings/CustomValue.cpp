#include "core/settings/CustomValue.h"

#include "core/json/JsonEncoding.h"
#include "core/settings/SettingsDate.h"
#include "core/support/DoubleText.h"
#include "core/support/SpacesAndTabs.h"

#include <QList>
#include <algorithm>
#include <array>
#include <cmath>

namespace {
// The persisted key of each case, in the order of CustomValue::Case.
constexpr std::array<const char*, 6> caseKeys{"text", "number", "option", "labels", "date", "checkbox"};
static_assert(caseKeys.size() == std::variant_size_v<CustomValue::Case>);

const QString payloadKey = QStringLiteral("_0");

// A number as the service expects it: a whole number as an integer, anything else as a double.
// A whole number beyond 64 bits can't be an integer; it is sent as the number it is rather than
// dropped, so that what the user typed reaches the service.
std::optional<JSONValue> numberValue(const QString& typed) {
    const std::optional<double> number = DoubleText::parse(SpacesAndTabs::trimmed(typed));
    if (!number) {
        return std::nullopt;
    }
    constexpr double integerLimit = 0x1p63;
    if (*number == std::round(*number) && *number >= -integerLimit && *number < integerLimit) {
        return JSONValue::integer(static_cast<qint64>(*number));
    }
    return JSONValue::number(*number);
}

struct IsEmpty {
    bool operator()(const CustomValue::Text& value) const { return SpacesAndTabs::trimmed(value.text).isEmpty(); }
    bool operator()(const CustomValue::Number& value) const { return SpacesAndTabs::trimmed(value.text).isEmpty(); }
    bool operator()(const CustomValue::Option& value) const { return !value.id; }
    bool operator()(const CustomValue::Labels& value) const { return value.ids.isEmpty(); }
    bool operator()(const CustomValue::Date& value) const { return !value.date; }
    bool operator()(const CustomValue::Checkbox& value) const { return !value.checked; }
};

struct ServiceValue {
    std::optional<JSONValue> operator()(const CustomValue::Text& value) const {
        QString text = SpacesAndTabs::trimmed(value.text);
        if (text.isEmpty()) {
            return std::nullopt;
        }
        return JSONValue::string(std::move(text));
    }
    std::optional<JSONValue> operator()(const CustomValue::Number& value) const { return numberValue(value.text); }
    std::optional<JSONValue> operator()(const CustomValue::Option& value) const {
        if (!value.id) {
            return std::nullopt;
        }
        return JSONValue::string(*value.id);
    }
    std::optional<JSONValue> operator()(const CustomValue::Labels& value) const {
        if (value.ids.isEmpty()) {
            return std::nullopt;
        }
        QList<QString> sorted(value.ids.begin(), value.ids.end());
        std::sort(sorted.begin(), sorted.end());
        JSONValue::Array ids;
        for (QString& id : sorted) {
            ids.append(JSONValue::string(std::move(id)));
        }
        return JSONValue::array(std::move(ids));
    }
    // Milliseconds since 1970, which is what the service takes for dates.
    std::optional<JSONValue> operator()(const CustomValue::Date& value) const {
        if (!value.date) {
            return std::nullopt;
        }
        return JSONValue::integer(value.date->toMSecsSinceEpoch());
    }
    std::optional<JSONValue> operator()(const CustomValue::Checkbox& value) const {
        if (!value.checked) {
            return std::nullopt;
        }
        return JSONValue::boolean(true);
    }
};

// The inner object of the persisted form.
struct Payload {
    QJsonObject operator()(const CustomValue::Text& value) const {
        return Json::ObjectBuilder().set(payloadKey, value.text).object();
    }
    QJsonObject operator()(const CustomValue::Number& value) const {
        return Json::ObjectBuilder().set(payloadKey, value.text).object();
    }
    QJsonObject operator()(const CustomValue::Option& value) const {
        return Json::ObjectBuilder().set(payloadKey, value.id).object();
    }
    QJsonObject operator()(const CustomValue::Labels& value) const {
        return Json::ObjectBuilder().set(payloadKey, value.ids).object();
    }
    QJsonObject operator()(const CustomValue::Date& value) const {
        if (!value.date) {
            return {};
        }
        return QJsonObject{{payloadKey, SettingsDate::toJson(*value.date)}};
    }
    QJsonObject operator()(const CustomValue::Checkbox& value) const {
        return Json::ObjectBuilder().set(payloadKey, value.checked).object();
    }
};

CustomValue decodeCase(std::size_t index, const Json::JsonObject& payload) {
    switch (index) {
    case 0:
        return CustomValue::text(payload.required<QString>(payloadKey));
    case 1:
        return CustomValue::number(payload.required<QString>(payloadKey));
    case 2:
        return CustomValue::option(payload.optional<QString>(payloadKey));
    case 3:
        return CustomValue::labels(payload.required<QSet<QString>>(payloadKey));
    case 4: {
        const QJsonValue date = payload.raw(payloadKey);
        if (date.isUndefined() || date.isNull()) {
            return CustomValue::date(std::nullopt);
        }
        return CustomValue::date(SettingsDate::fromJson(date, payload.pathOf(payloadKey)));
    }
    default:
        return CustomValue::checkbox(payload.required<bool>(payloadKey));
    }
}
} // namespace

bool CustomValue::isEmpty() const {
    return std::visit(IsEmpty{}, value);
}

std::optional<JSONValue> CustomValue::jsonValue() const {
    return std::visit(ServiceValue{}, value);
}

CustomValue CustomValue::fromJson(const Json::JsonObject& json) {
    // Keys of no case are not counted, so {"text": …, "other": …} is text and {"other": …} fails.
    std::size_t count = 0;
    std::size_t found = 0;
    for (std::size_t index = 0; index < caseKeys.size(); ++index) {
        if (json.object().contains(QLatin1String(caseKeys[index]))) {
            ++count;
            found = index;
        }
    }
    if (count != 1) {
        throw DecodingError(json.path(), QStringLiteral("Invalid number of keys found, expected one."));
    }
    const QString key = QLatin1String(caseKeys[found]);
    return decodeCase(found, Json::JsonObject::from(json.raw(key), json.pathOf(key)));
}

QJsonObject CustomValue::toJson() const {
    return QJsonObject{{QLatin1String(caseKeys[value.index()]), std::visit(Payload{}, value)}};
}
