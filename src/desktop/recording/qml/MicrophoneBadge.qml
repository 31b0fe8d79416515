import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import NorvaneBar

// Whether the microphone reaches the recording: "No mic" in orange with the warning, "Mic
// connected" in green, or a quiet "Mic on" while its sound is awaited; the help says which.
Rectangle {
    id: root

    required property RecordingControlsViewModel controls

    readonly property color tone: root.controls.microphoneTone === RecordingControlsViewModel.Warning ? "#d97706"
                                : root.controls.microphoneTone === RecordingControlsViewModel.Connected ? "#16a34a"
                                : palette.placeholderText

    objectName: "microphoneBadge"
    implicitWidth: badgeRow.implicitWidth + 12
    implicitHeight: badgeRow.implicitHeight + 6
    radius: height / 2
    color: "transparent"
    border.color: root.tone
    Accessible.role: Accessible.StaticText
    Accessible.name: root.controls.microphoneLabel
    Accessible.description: root.controls.microphoneHelp

    HoverHandler {
        id: hover
    }

    RowLayout {
        id: badgeRow

        anchors.centerIn: parent
        spacing: 4

        Image {
            source: "image://symbol/" + root.controls.microphoneSymbol
            sourceSize.width: 12
            sourceSize.height: 12
            Accessible.ignored: true
        }

        Label {
            objectName: "microphoneLabel"
            color: root.tone
            font.pixelSize: 11
            textFormat: Text.PlainText
            text: root.controls.microphoneLabel
        }
    }

    PlainToolTip {
        text: root.controls.microphoneHelp
        visible: hover.hovered
        below: true
    }
}
