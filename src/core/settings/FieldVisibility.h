#pragma once

#include "core/settings/DefaultField.h"
#include "core/settings/SettingsStore.h"

#include <QList>
#include <QString>

// Which of the composer's field chips show: the built-in ones by visibleDefaultFields, the custom
// ones by their id, remembered across lists. The file keeps the custom fields that are hidden.
namespace FieldVisibility {

// The built-in fields in the order the settings list them.
const QList<DefaultField>& defaultFieldsInOrder();
// "Status", "Assignee", "Priority", "Due date" or "Tags".
QString label(DefaultField field);

bool isVisible(const AppSettings& settings, DefaultField field);
// Inserts the field into visibleDefaultFields or removes it, and saves.
void setVisible(SettingsStore& settings, DefaultField field, bool visible);

bool isCustomFieldVisible(const AppSettings& settings, const QString& fieldID);
// Removes the id from hiddenCustomFieldIDs or inserts it, and saves.
void setCustomFieldVisible(SettingsStore& settings, const QString& fieldID, bool visible);

} // namespace FieldVisibility
