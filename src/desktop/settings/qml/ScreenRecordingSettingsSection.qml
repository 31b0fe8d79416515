import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import NorvaneBar

// "Screen Recording": the shortcut that starts a recording, the template it applies, and the
// defaults a recording starts with, whichever way it is started.
ColumnLayout {
    id: root

    required property RecordingDefaultsViewModel recording
    required property ShortcutSettingsViewModel shortcuts

    Layout.fillWidth: true
    spacing: 8

    SectionHeading {
        text: qsTr("Screen Recording")
    }

    SettingsNote {
        text: qsTr("Records screen and microphone, attaches the video, optionally applies a template, then opens the popover. Norvane allows attachments up to 1 GB.")
    }

    Label {
        text: qsTr("Screen recording")
    }

    PlainComboBox {
        objectName: "screenRecordingHotKey"
        model: root.shortcuts.presetLabels
        currentIndex: root.shortcuts.screenRecordingPresetIndex
        onActivated: index => root.shortcuts.screenRecordingPresetIndex = index
        Accessible.name: qsTr("Screen recording")
    }

    Label {
        text: qsTr("Apply template on recording")
    }

    PlainComboBox {
        objectName: "screenRecordingTemplate"
        model: root.shortcuts.templateNames
        currentIndex: root.shortcuts.screenRecordingTemplateIndex
        onActivated: index => root.shortcuts.screenRecordingTemplateIndex = index
        Accessible.name: qsTr("Apply template on recording")
    }

    SettingsNote {
        text: qsTr("Defaults used when you start a screen recording from the composer, panel, or hotkey.")
    }

    Label {
        text: qsTr("Default quality")
    }

    PlainComboBox {
        objectName: "recordingQuality"
        model: root.recording.qualityLabels
        currentIndex: root.recording.qualityIndex
        onActivated: index => root.recording.qualityIndex = index
        Accessible.name: qsTr("Default quality")
    }

    SettingSwitch {
        objectName: "recordMicrophoneByDefault"
        label: qsTr("Record microphone by default")
        checked: root.recording.captureMicrophone
        onToggled: root.recording.captureMicrophone = checked
    }

    SettingSwitch {
        objectName: "showCursorByDefault"
        label: qsTr("Show cursor by default")
        checked: root.recording.showCursor
        onToggled: root.recording.showCursor = checked
    }

    SettingSwitch {
        objectName: "includeFacecamByDefault"
        label: qsTr("Include facecam by default")
        checked: root.recording.includeFacecam
        onToggled: root.recording.includeFacecam = checked
    }

    Label {
        text: qsTr("Facecam position")
    }

    PlainComboBox {
        objectName: "facecamPosition"
        model: root.recording.positionLabels
        currentIndex: root.recording.positionIndex
        onActivated: index => root.recording.positionIndex = index
        Accessible.name: qsTr("Facecam position")
    }

    Label {
        text: qsTr("Facecam shape")
    }

    PlainComboBox {
        objectName: "facecamShape"
        model: root.recording.shapeLabels
        currentIndex: root.recording.shapeIndex
        onActivated: index => root.recording.shapeIndex = index
        Accessible.name: qsTr("Facecam shape")
    }

    Label {
        text: qsTr("Facecam background")
    }

    PlainComboBox {
        objectName: "facecamBackground"
        model: root.recording.backgroundLabels
        currentIndex: root.recording.backgroundIndex
        onActivated: index => root.recording.backgroundIndex = index
        Accessible.name: qsTr("Facecam background")
    }

    Label {
        text: qsTr("Max recording duration")
    }

    PlainComboBox {
        objectName: "maxRecordingDuration"
        model: root.recording.maxDurationLabels
        currentIndex: root.recording.maxDurationIndex
        onActivated: index => root.recording.maxDurationIndex = index
        Accessible.name: qsTr("Max recording duration")
    }
}
