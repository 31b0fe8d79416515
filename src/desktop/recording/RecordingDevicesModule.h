#pragma once

#include "desktop/recording/RecordingDevices.h"

#include <QLibrary>

// The devices of a recording, in a module of their own that the windows load at the first
// recording: GStreamer and the sound server's client take a while to load and a few megabytes to
// hold, which a person who only writes tasks should not pay.
class RecordingDevicesModule {
public:
    RecordingDevices& devices();

private:
    QLibrary m_library;
    std::unique_ptr<RecordingDevices> m_devices;
};
