#include "core/compose/ComposerFieldItem.h"

#include "core/support/Overloaded.h"

QString ComposerFieldItem::id() const {
    return std::visit(Overloaded{[](DefaultField value) { return QStringLiteral("default-") + rawValue(value); },
                                 [](const CustomField& value) { return QStringLiteral("custom-") + value.id; }},
                      field);
}
