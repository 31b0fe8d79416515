#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>
#include <optional>

// Where the popover window goes: hanging from the tray icon, or beside the pointer when the tray
// does not tell where its icon is, always wholly on the screen's available area.
namespace PopoverPlacement {

inline constexpr int gap = 4;

// `anchor` is the icon's geometry in screen coordinates when the tray knows it.
QPoint topLeft(std::optional<QRect> anchor, QPoint pointer, QSize popover, QRect available);

} // namespace PopoverPlacement
