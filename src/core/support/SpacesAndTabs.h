#pragma once

#include <QString>

// The text without the spaces and tabs around it. Other white space, newlines among it, stays: a
// typed value with a line break in it is not the same value trimmed.
QString trimmedOfSpacesAndTabs(const QString& text);
