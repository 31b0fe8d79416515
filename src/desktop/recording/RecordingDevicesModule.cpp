#include "desktop/recording/RecordingDevicesModule.h"

#include "desktop/shell/ProgramModules.h"

RecordingDevices& RecordingDevicesModule::devices() {
    if (!m_devices) {
        const auto make = reinterpret_cast<MakeRecordingDevices>(ProgramModules::entry(
            m_library, ProgramModules::recordingDevicesFileName, "norvanebarMakeRecordingDevices"));
        m_devices.reset(make());
    }
    return *m_devices;
}
