#pragma once

#include <QLibrary>
#include <QString>
#include <optional>

// NorvaneBar's own modules, which the program loads at their first use: beside the program in the
// build tree, in the program's library folder once installed.
namespace ProgramModules {
// The windows drawn with Qt Quick.
inline constexpr char windowsFileName[] = "libnorvanebar_windows.so";
// The devices of a recording, through GStreamer and the sound server.
inline constexpr char recordingDevicesFileName[] = "libnorvanebar_recording_devices.so";

// Where the module is; empty when neither place has it.
QString path(const QString& fileName);
// The first of the modules the program can't find, if any.
std::optional<QString> missing();
// The function `symbol` of the module, which `library` loads. A program without it cannot go on:
// this says why and ends it.
QFunctionPointer entry(QLibrary& library, const QString& fileName, const char* symbol);
} // namespace ProgramModules
