#pragma once

#include <QColor>
#include <QPalette>

// NorvaneBar's own dark palette, for desktops that prefer dark while the platform theme gives a
// light palette. Every role of every colour group is set, so nothing falls back to a light colour.
namespace DarkPalette {

// The dark palette around the desktop's accent colour, which stays the one highlight.
QPalette make(const QColor& accent);

// Whether the palette draws dark text on light windows.
bool isLight(const QPalette& palette);

} // namespace DarkPalette
