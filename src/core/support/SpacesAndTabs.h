#pragma once

#include <QString>

namespace SpacesAndTabs {

// The text without the spaces and tabs around it; newlines and other white space stay.
QString trimmed(const QString& text);

} // namespace SpacesAndTabs
