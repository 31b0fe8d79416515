#include "desktop/recording/ScreenRecordingSetupViewModel.h"

ScreenRecordingSetupViewModel::ScreenRecordingSetupViewModel(ScreenRecordingFlow& flow, ScreenContentPicker& picker,
                                                             SettingsStore& settings, QObject* parent)
    : QObject(parent)
    , m_flow(flow)
    , m_picker(picker)
    , m_settings(settings)
    , m_choices(settings) {
    connect(&m_flow, &ScreenRecordingFlow::showScreenRecordingSetupChanged, this,
            &ScreenRecordingSetupViewModel::setupShownChanged);
    // The sheet asks the picker again each time it opens: a recording may have remembered a screen.
    connect(&m_flow, &ScreenRecordingFlow::showScreenRecordingSetupChanged, this,
            &ScreenRecordingSetupViewModel::remembersScreenChanged);
    connect(&m_flow, &ScreenRecordingFlow::screenRecordingErrorChanged, this,
            &ScreenRecordingSetupViewModel::errorChanged);
}

void ScreenRecordingSetupViewModel::recordScreen() {
    m_flow.startScreenRecording(ScreenRecordingStartModes::AppendToDraft{});
}

void ScreenRecordingSetupViewModel::chooseScreen() {
    m_flow.confirmScreenRecordingSetup(m_settings.settings().recordingConfiguration());
}

void ScreenRecordingSetupViewModel::forgetScreen() {
    m_picker.forgetChoice();
    emit remembersScreenChanged();
}
