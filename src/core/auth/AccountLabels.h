#pragma once

#include "core/settings/StoredAccount.h"

#include <QString>

// How a stored account is named in the account menu and drawn in its avatar.
namespace AccountLabels {

// The display name, followed by " (email)" when the account has an email other than that name.
QString menuTitle(const StoredAccount& account);
// The account's initials, or without any the first two characters of its display name in upper case.
// A character is what the reader sees as one: an emoji with its modifiers, a letter with its accents.
QString avatarText(const StoredAccount& account);

} // namespace AccountLabels
