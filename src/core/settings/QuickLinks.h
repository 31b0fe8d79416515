#pragma once

#include "core/settings/SettingsStore.h"

#include <QString>
#include <QUuid>

// The bookmarks the tray menu lists under "Quick Links", as the settings window edits them.
namespace QuickLinks {

// Whether a link of this name and address can be added: a name that is more than spaces and tabs,
// and an address, trimmed the same way, with the scheme https or http.
bool canAdd(const QString& name, const QString& address);
// Appends a bookmark of a fresh id with the trimmed name and address and saves; false, with
// nothing changed, when canAdd says no.
bool add(SettingsStore& settings, const QString& name, const QString& address);
// Removes every bookmark of this id and saves.
void remove(SettingsStore& settings, const QUuid& id);

} // namespace QuickLinks
