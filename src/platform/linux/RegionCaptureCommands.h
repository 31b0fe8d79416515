#pragma once

#include <QString>
#include <qcoro/qcorotask.h>

// The region screenshot tools of Linux desktops, tried in this order, the first installed (found on
// PATH) taken: "gnome-screenshot -a -f", "spectacle -r -b -n -o", "maim -s", and grim with the
// region slurp prints. Each is started without a shell, with the output path as one argument.
namespace RegionCaptureCommands {

// Runs the first installed tool until it ends; whether one ran. Its exit status is not read: a
// cancelled selection ran too, and left no file or an empty one.
QCoro::Task<bool> runFirstInstalled(QString outputPath);

} // namespace RegionCaptureCommands
