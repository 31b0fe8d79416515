#pragma once

#include "core/platform/CaptureStream.h"
#include "core/platform/MicrophoneAccess.h"
#include "core/platform/MovieWriter.h"
#include "core/platform/ScreenContentPicker.h"
#include "core/recording/FacecamOverlay.h"
#include "core/recording/FacecamStyle.h"
#include "core/recording/RecordingPanels.h"

#include <functional>
#include <memory>

// What the desktop lends a screen recording: its screens and microphone, the movie writer, the
// camera, the picker of what to record and the recording's windows. Each must outlive the
// recordings. A desktop that lacks any of them can't record.
struct ScreenRecordingDesktop {
    ScreenCaptureService* capture = nullptr;
    MovieWriterFactory* writers = nullptr;
    MicrophoneAccess* microphone = nullptr;
    std::function<std::unique_ptr<FacecamOverlay>(const FacecamStyle&)> makeFacecam;
    ScreenContentPicker* picker = nullptr;
    RecordingPanels* panels = nullptr;

    bool isComplete() const { return capture && writers && microphone && makeFacecam && picker && panels; }
};
