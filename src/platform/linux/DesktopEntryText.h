#pragma once

#include <QString>

// Values of the freedesktop desktop entries the program writes (Desktop Entry Specification 1.5).
namespace DesktopEntryText {

// One argument of an Exec line: in double quotes, with ", `, $ and \ escaped by a backslash and %
// doubled; then the value as a whole escapes its backslashes once more and spells out the characters
// a line may not hold.
QString execArgument(const QString& argument);

} // namespace DesktopEntryText
