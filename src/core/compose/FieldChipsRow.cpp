#include "core/compose/FieldChipsRow.h"

#include <QCoreApplication>
#include <array>

namespace FieldChipsRow {

QList<ComposerFieldItem> items(const QSet<DefaultField>& visibleDefaultFields, bool showCustomFields,
                               const QList<CustomField>& fields, const QSet<QString>& hiddenCustomFieldIDs) {
    static constexpr std::array order{DefaultField::status, DefaultField::assignee, DefaultField::dueDate,
                                      DefaultField::priority, DefaultField::tags};
    QList<ComposerFieldItem> result;
    for (const DefaultField field : order) {
        if (visibleDefaultFields.contains(field)) {
            result.append(ComposerFieldItem::defaultField(field));
        }
    }
    if (!showCustomFields) {
        return result;
    }
    for (const CustomField& field : fields) {
        if (CustomField::editableTypes().contains(field.type) && !hiddenCustomFieldIDs.contains(field.id)) {
            result.append(ComposerFieldItem::customField(field));
        }
    }
    return result;
}

Split split(const QList<ComposerFieldItem>& items) {
    if (items.size() <= maxChipsInRow) {
        return {items, {}};
    }
    return {items.first(maxChipsInRow), items.sliced(maxChipsInRow)};
}

QString moreTitle(qsizetype count) {
    return QCoreApplication::translate("FieldChipsRow", "More +") + QString::number(count);
}

} // namespace FieldChipsRow
