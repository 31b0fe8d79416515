#pragma once

#include "core/platform/CaptureStream.h"
#include "core/platform/ScreenContentPicker.h"
#include "core/recording/FacecamOverlay.h"

#include <functional>
#include <memory>

// Where a recording's pictures come from on this desktop: the chooser of what to record, and the
// capture of what was chosen.
struct DesktopScreenSources {
    std::unique_ptr<ScreenContentPicker> picker;
    std::unique_ptr<ScreenCaptureService> capture;
};

// Makes our own chooser of what to record, for the X server.
using X11PickerMaker = std::function<std::unique_ptr<ScreenContentPicker>()>;

// The ScreenCast portal's chooser where the portal casts screens, else on X11 our own picker, made
// by `makeX11Picker` at its first use; the capture of the X server on X11, else of PipeWire.
DesktopScreenSources desktopScreenSources(X11PickerMaker makeX11Picker);

// The first camera, behind the recording's overlay.
std::unique_ptr<FacecamOverlay> desktopFacecam(const FacecamStyle& style);
