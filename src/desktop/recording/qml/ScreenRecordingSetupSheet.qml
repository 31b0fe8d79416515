import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import NorvaneBar

// The choices of a recording before it starts, each saved at once as the next default: quality,
// microphone, pointer, the camera with its look, and the longest recording. "Choose Screen…"
// closes the popover and asks what to record; a screen remembered from last time can be forgotten
// here, so that the next recording asks again.
ColumnLayout {
    id: root

    required property ScreenRecordingSetupViewModel setup

    readonly property RecordingDefaultsViewModel choices: root.setup.choices

    objectName: "screenRecordingSetup"
    spacing: 8

    Label {
        text: qsTr("Screen Recording")
        font.bold: true
        font.pixelSize: 15
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }

    Label {
        Layout.fillWidth: true
        wrapMode: Text.WordWrap
        opacity: 0.75
        text: qsTr("Choose what to record, then use the floating bar to pause or stop. You'll review the video before attaching it.")
        Accessible.name: text
    }

    GridLayout {
        Layout.fillWidth: true
        columns: 2
        columnSpacing: 8
        rowSpacing: 6

        Label {
            text: qsTr("Quality")
        }

        PlainComboBox {
            id: quality

            objectName: "quality"
            model: root.choices.qualityLabels
            currentIndex: root.choices.qualityIndex
            onActivated: index => root.choices.qualityIndex = index
            Accessible.name: qsTr("Quality")
        }

        Label {
            text: qsTr("Max duration")
        }

        PlainComboBox {
            objectName: "maxDuration"
            model: root.choices.maxDurationLabels
            currentIndex: root.choices.maxDurationIndex
            onActivated: index => root.choices.maxDurationIndex = index
            Accessible.name: qsTr("Max duration")
        }
    }

    SettingSwitch {
        objectName: "recordMicrophone"
        label: qsTr("Record microphone")
        checked: root.choices.captureMicrophone
        onToggled: root.choices.captureMicrophone = checked
    }

    SettingSwitch {
        objectName: "showCursor"
        label: qsTr("Show cursor")
        checked: root.choices.showCursor
        onToggled: root.choices.showCursor = checked
    }

    SettingSwitch {
        objectName: "includeFacecam"
        label: qsTr("Include facecam")
        checked: root.choices.includeFacecam
        onToggled: root.choices.chooseIncludeFacecam(checked)
    }

    Label {
        Layout.fillWidth: true
        wrapMode: Text.WordWrap
        opacity: 0.75
        font.pixelSize: 11
        text: qsTr("Facecam appears as a floating preview while you record and is burned into the exported video. Hide it anytime from the recording bar.")
        Accessible.name: text
    }

    FacecamChoices {
        Layout.fillWidth: true
        visible: root.choices.includeFacecam
        choices: root.choices
    }

    RowLayout {
        objectName: "rememberedScreen"
        Layout.fillWidth: true
        visible: root.setup.remembersScreen
        spacing: 8

        Label {
            Layout.fillWidth: true
            wrapMode: Text.WordWrap
            opacity: 0.75
            text: qsTr("The screen chosen last time is recorded again.")
            Accessible.name: text
        }

        Button {
            objectName: "chooseAnotherScreen"
            Keys.onReturnPressed: clicked()
            Keys.onEnterPressed: clicked()
            text: qsTr("Choose Another Screen")
            onClicked: root.setup.forgetScreen()
            Accessible.name: text
        }
    }

    RowLayout {
        Layout.fillWidth: true
        spacing: 8

        Item {
            Layout.fillWidth: true
        }

        Button {
            objectName: "cancelRecording"
            Keys.onReturnPressed: clicked()
            Keys.onEnterPressed: clicked()
            text: qsTr("Cancel")
            onClicked: root.setup.cancel()
            Accessible.name: text
        }

        Button {
            id: chooseScreen

            objectName: "chooseScreen"
            Keys.onReturnPressed: clicked()
            Keys.onEnterPressed: clicked()
            highlighted: true
            text: qsTr("Choose Screen…")
            onClicked: root.setup.chooseScreen()
            Accessible.name: text
        }
    }

    Keys.onEscapePressed: event => {
        root.setup.cancel();
        event.accepted = true;
    }
    // Return takes the button that has the keyboard, and chooses the screen from anywhere else.
    Keys.onReturnPressed: root.setup.chooseScreen()
    Keys.onEnterPressed: root.setup.chooseScreen()
    Component.onCompleted: quality.forceActiveFocus()
}
