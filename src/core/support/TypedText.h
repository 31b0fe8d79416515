#pragma once

#include <QString>

// What a person typed, as the program reads it.
namespace TypedText {

// Without the spaces and tabs around it; line breaks and other white space stay.
QString trimmedOfSpacesAndTabs(const QString& text);

} // namespace TypedText
