#pragma once

#include "core/json/DecodingError.h"
#include "core/json/JsonDecoding.h"

#include <QByteArray>
#include <QJsonValue>
#include <cstddef>
#include <cstdint>
#include <optional>

// The fuzzer's bytes as a JSON document, or nothing when they are no JSON.
inline std::optional<QJsonValue> fuzzedJson(const uint8_t* data, size_t size) {
    try {
        return Json::parse(QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)));
    } catch (const DecodingError&) {
        return std::nullopt;
    }
}
