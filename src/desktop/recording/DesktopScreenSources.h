#pragma once

#include "core/platform/CaptureStream.h"
#include "core/platform/ScreenContentPicker.h"
#include "core/recording/FacecamOverlay.h"

#include <memory>

// Where a recording's pictures come from on this desktop: the chooser of what to record, and the
// capture of what was chosen.
struct DesktopScreenSources {
    std::unique_ptr<ScreenContentPicker> picker;
    std::unique_ptr<ScreenCaptureService> capture;
};

// The ScreenCast portal's chooser where the portal casts screens, else on X11 our own picker; the
// capture of the X server on X11, else of PipeWire.
DesktopScreenSources desktopScreenSources();

// The first camera, behind the recording's overlay.
std::unique_ptr<FacecamOverlay> desktopFacecam(const FacecamStyle& style);
