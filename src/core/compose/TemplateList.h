#pragma once

#include "core/hierarchy/ListEntry.h"
#include "core/settings/SettingsStore.h"
#include "core/settings/TaskTemplate.h"

#include <QString>
#include <QUuid>
#include <optional>

// The stored templates as the settings window edits them, and the text of a pinned list.
namespace TemplateList {

// "Space › Folder › List", or "Space › List" for a list outside any folder.
QString listPath(const ListEntry& entry);
// Pins the template to the entry's list.
void pin(TaskTemplate& pinned, const ListEntry& entry);
// The stored template of `id`; none for no id or an id that names no template.
std::optional<TaskTemplate> find(const AppSettings& settings, const std::optional<QUuid>& id);
// Puts the edited template in place of the stored one of its id and saves; a template not stored
// yet is appended.
void replace(SettingsStore& settings, const TaskTemplate& edited);
// Removes every template of this id and saves. If the screenshot's template was this one, that
// choice is cleared and saved again. The recording's choice is left as it stands: a recording with
// an id that names no template applies none. The id is taken by value: it may be a stored one.
void remove(SettingsStore& settings, QUuid id);

} // namespace TemplateList
