#pragma once

#include "core/recording/ScreenRecordingDesktop.h"
#include "core/shell/ScreenRecordingCoordinator.h"

// The coordinator's services over what the desktop lends. Where the desktop lacks a piece, the
// picker says that recording isn't available whenever it is asked, and nothing is recorded.
ScreenRecordingCoordinator::Services screenRecordingServices(const ScreenRecordingDesktop& desktop, Sleeper sleeper);
