#pragma once

#include "core/json/RawValue.h"

#include <QHashFunctions>

// The built-in field chips of the composer that can be shown or hidden.
enum class DefaultField {
    status,
    assignee,
    dueDate,
    priority,
    tags,
};

template <> struct RawValues<DefaultField> {
    static constexpr std::array cases{
        std::pair{DefaultField::status, "status"},   std::pair{DefaultField::assignee, "assignee"},
        std::pair{DefaultField::dueDate, "dueDate"}, std::pair{DefaultField::priority, "priority"},
        std::pair{DefaultField::tags, "tags"},
    };
};

// AppSettings keeps the visible ones in a set.
inline size_t qHash(DefaultField field, size_t seed = 0) noexcept {
    return qHash(static_cast<int>(field), seed);
}
