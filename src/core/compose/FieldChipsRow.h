#pragma once

#include "core/api/FieldRecords.h"
#include "core/compose/ComposerFieldItem.h"
#include "core/settings/DefaultField.h"

#include <QList>
#include <QSet>
#include <QString>

// Which chips the composer's field row shows, in which order, and which go behind "More +N".
namespace FieldChipsRow {

// At most this many chips stand in the row; the items after them go behind a "More +N" chip.
inline constexpr qsizetype maxChipsInRow = 5;

// The visible standard fields, always in the order status, assignee, due date, priority, tags,
// whatever order the set has; then, when custom fields are shown, each field of the list whose type
// the composer edits and that is not hidden, in the list's order.
QList<ComposerFieldItem> items(const QSet<DefaultField>& visibleDefaultFields, bool showCustomFields,
                               const QList<CustomField>& fields, const QSet<QString>& hiddenCustomFieldIDs);

// The row and what is behind "More +N": with six items or more the first five stand in the row.
struct Split {
    QList<ComposerFieldItem> shown;
    QList<ComposerFieldItem> more;

    bool operator==(const Split&) const = default;
};
Split split(const QList<ComposerFieldItem>& items);

// "More +" and the number of items behind it.
QString moreTitle(qsizetype count);

} // namespace FieldChipsRow
