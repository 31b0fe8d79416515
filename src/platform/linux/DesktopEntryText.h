#pragma once

#include <QString>

// Values of the freedesktop desktop entries the program writes (Desktop Entry Specification 1.5).
namespace DesktopEntryText {

// The program's desktop id: the name of its desktop entries and of its icon in the icon theme.
inline const QString desktopId = QStringLiteral("com.norvanebar.NorvaneBar");
// The file name of the program's desktop entries, the desktop id with ".desktop".
inline const QString entryFileName = desktopId + QStringLiteral(".desktop");

// Where the desktop entry of `executable` lies when the program is installed: in
// <prefix>/share/applications beside the program's <prefix>/bin, under any prefix.
QString installedEntryPath(const QString& executable);

// One argument of an Exec line: in double quotes, with ", `, $ and \ escaped by a backslash and %
// doubled; then the value as a whole escapes its backslashes once more and spells out the characters
// a line may not hold.
QString execArgument(const QString& argument);

} // namespace DesktopEntryText
