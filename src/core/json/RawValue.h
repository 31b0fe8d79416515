#pragma once

#include "core/json/JsonDecoding.h"

#include <QJsonValue>
#include <QString>
#include <array>
#include <optional>
#include <utility>

// Enumerations stored as text. An enumeration names its cases with their raw values, in order, by
// specialising RawValues:
//   template <> struct RawValues<Kind> {
//       static constexpr std::array cases{std::pair{Kind::a, "a"}, std::pair{Kind::b, "b"}};
//   };
// Decoding an unknown raw value fails like any other type mismatch.
template <typename E> struct RawValues;

template <typename E>
concept RawValueEnum = std::is_enum_v<E> && requires {
    RawValues<E>::cases;
};

template <RawValueEnum E> QString rawValue(E value) {
    for (const auto& [known, raw] : RawValues<E>::cases) {
        if (known == value) {
            return QString::fromLatin1(raw);
        }
    }
    return {};
}

template <RawValueEnum E> std::optional<E> fromRawValue(const QString& raw) {
    for (const auto& [known, text] : RawValues<E>::cases) {
        if (raw == QLatin1String(text)) {
            return known;
        }
    }
    return std::nullopt;
}

// Json::encode's callers find this by argument-dependent lookup, as the enumerations live in the
// global namespace.
template <RawValueEnum E> QJsonValue encode(E value) {
    return rawValue(value);
}

template <RawValueEnum E> struct Json::Decode<E> {
    static E from(const QJsonValue& value, const QString& path) {
        const QString raw = Decode<QString>::from(value, path);
        const std::optional<E> known = fromRawValue<E>(raw);
        if (!known) {
            throw DecodingError(path, QStringLiteral("unknown value \"%1\"").arg(raw));
        }
        return *known;
    }
};
