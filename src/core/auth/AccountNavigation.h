#pragma once

#include "core/settings/AppSettings.h"

#include <QtGlobal>

// Each account's navigation memory: its last location and preferred workspace, kept in the settings
// under the account's id while another account is active. These change the settings value only;
// the caller saves it.
namespace AccountNavigation {

// Keeps the active navigation under the account's id; an absent field removes its stored one.
void stash(AppSettings& settings, qint64 userID);
// Makes the account's stored navigation the active one; what it lacks becomes absent.
void restore(AppSettings& settings, qint64 userID);
// Drops what is stored for the account.
void forget(AppSettings& settings, qint64 userID);

} // namespace AccountNavigation
