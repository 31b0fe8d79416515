import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import NorvaneBar

// The floating bar while recording: the record mark (the pause symbol while paused) with the time
// recorded, the size so far, the microphone's badge, the camera, pause and stop buttons, and the
// size warning under them. Dragged by its background. It never takes the keyboard, so the window
// being recorded keeps it.
Control {
    id: root

    required property RecordingControlsViewModel controls

    width: 360
    padding: 10

    background: Rectangle {
        color: root.palette.window
        border.color: root.palette.mid
        radius: 10

        DragHandler {
            target: null
            onActiveChanged: if (active) root.Window.window.startSystemMove()
        }
    }

    contentItem: ColumnLayout {
        spacing: 6

        RowLayout {
            Layout.fillWidth: true
            spacing: 8

            Item {
                implicitWidth: 16
                implicitHeight: 16
                Accessible.role: Accessible.Indicator
                Accessible.name: root.controls.paused ? qsTr("Paused") : qsTr("Recording")

                Rectangle {
                    objectName: "recordMark"
                    anchors.centerIn: parent
                    width: 12
                    height: 12
                    radius: 6
                    color: "#e5322d"
                    visible: !root.controls.paused
                }

                Image {
                    objectName: "pausedMark"
                    anchors.fill: parent
                    source: "image://symbol/pause.circle.fill"
                    sourceSize.width: 16
                    sourceSize.height: 16
                    visible: root.controls.paused
                }
            }

            Label {
                objectName: "elapsed"
                font.family: "monospace"
                font.bold: true
                textFormat: Text.PlainText
                text: root.controls.elapsedText
                Accessible.name: qsTr("Recorded %1").arg(text)
            }

            Label {
                objectName: "estimatedSize"
                opacity: 0.7
                textFormat: Text.PlainText
                text: root.controls.sizeText
                Accessible.name: qsTr("About %1").arg(text)
            }

            Item {
                Layout.fillWidth: true
            }

            MicrophoneBadge {
                visible: root.controls.showsMicrophone
                controls: root.controls
            }

            RecordingBarButton {
                objectName: "facecamButton"
                symbol: root.controls.facecamVisible ? "person.crop.circle.fill" : "person.crop.circle"
                help: root.controls.facecamVisible ? qsTr("Hide facecam") : qsTr("Show facecam")
                onClicked: root.controls.toggleFacecam()
            }

            RecordingBarButton {
                objectName: "pauseButton"
                symbol: root.controls.paused ? "play.fill" : "pause.fill"
                help: root.controls.paused ? qsTr("Resume") : qsTr("Pause")
                onClicked: root.controls.pauseOrResume()
            }

            RecordingBarButton {
                objectName: "stopButton"
                symbol: "stop.fill"
                help: qsTr("Stop recording")
                onClicked: root.controls.stop()
            }
        }

        Label {
            objectName: "sizeWarning"
            Layout.fillWidth: true
            visible: text.length > 0
            wrapMode: Text.Wrap
            textFormat: Text.PlainText
            color: "#c2410c"
            text: root.controls.sizeWarning
            Accessible.name: text
        }
    }
}
