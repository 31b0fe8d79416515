#pragma once

#include "core/platform/ScreenContentPicker.h"

#include <functional>
#include <memory>

// Makes our own chooser of what to record, for the X server.
using X11PickerMaker = std::function<std::unique_ptr<ScreenContentPicker>()>;

// The chooser of what to record on this desktop: the ScreenCast portal's where the portal casts
// screens, else on X11 our own picker, made by `makeX11Picker`; asked which at the first use.
std::unique_ptr<ScreenContentPicker> desktopContentPicker(X11PickerMaker makeX11Picker);
