#pragma once

#include "core/platform/ScreenContentPicker.h"
#include "core/settings/SettingsStore.h"
#include "core/shell/ScreenRecordingFlow.h"
#include "desktop/recording/RecordingDefaultsViewModel.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

// The popover's side of a recording: the composer's "Record screen" button, the setup sheet with
// the recording's choices and the screen remembered from last time, and the alert of a recording
// that failed.
class ScreenRecordingSetupViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The app builds the popover's view models.")
    Q_PROPERTY(bool setupShown READ setupShown NOTIFY setupShownChanged)
    Q_PROPERTY(QString error READ error NOTIFY errorChanged)
    Q_PROPERTY(bool remembersScreen READ remembersScreen NOTIFY remembersScreenChanged)
    Q_PROPERTY(RecordingDefaultsViewModel* choices READ choices CONSTANT)

public:
    ScreenRecordingSetupViewModel(ScreenRecordingFlow& flow, ScreenContentPicker& picker, SettingsStore& settings,
                                  QObject* parent = nullptr);

    bool setupShown() const { return m_flow.showScreenRecordingSetup(); }
    QString error() const { return m_flow.screenRecordingErrorText(); }
    // Whether the next recording will capture the screen chosen last time without asking.
    bool remembersScreen() const { return m_picker.remembersChoice(); }
    RecordingDefaultsViewModel* choices() { return &m_choices; }

    // The composer's button: a recording that joins the draft as it stands.
    Q_INVOKABLE void recordScreen();
    // The sheet's "Choose Screen…", with the choices as they are now saved.
    Q_INVOKABLE void chooseScreen();
    Q_INVOKABLE void cancel() { m_flow.cancelScreenRecordingSetup(); }
    // The next recording asks again which screen or window to capture.
    Q_INVOKABLE void forgetScreen();
    Q_INVOKABLE void dismissError() { m_flow.setScreenRecordingError(std::nullopt); }

signals:
    void setupShownChanged();
    void errorChanged();
    void remembersScreenChanged();

private:
    ScreenRecordingFlow& m_flow;
    ScreenContentPicker& m_picker;
    SettingsStore& m_settings;
    RecordingDefaultsViewModel m_choices;
};
