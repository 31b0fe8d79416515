#pragma once

#include "core/api/FieldRecords.h"
#include "core/settings/DefaultField.h"

#include <QString>
#include <variant>

// One chip of the composer's field row: a standard field or a custom field of the list.
struct ComposerFieldItem {
    std::variant<DefaultField, CustomField> field;

    static ComposerFieldItem defaultField(DefaultField field) { return {field}; }
    static ComposerFieldItem customField(CustomField field) { return {std::move(field)}; }

    // "default-" and the field's word ("default-status", "default-dueDate"), or "custom-" and the
    // custom field's id.
    QString id() const;

    bool operator==(const ComposerFieldItem&) const = default;
};
