import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// The popover's page. The composer, My Day and the other pages take its place as they arrive.
Pane {
    id: root

    width: 380
    height: 460
    padding: 16

    background: Rectangle {
        color: root.palette.window
        border.color: root.palette.mid
    }

    Accessible.role: Accessible.Pane
    Accessible.name: "NorvaneBar"

    ColumnLayout {
        anchors.fill: parent
        spacing: 12

        Label {
            text: "NorvaneBar"
            font.bold: true
            font.pixelSize: 18
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }

        Label {
            Layout.fillWidth: true
            wrapMode: Text.WordWrap
            text: qsTr("New Norvane tasks will be composed here.")
            Accessible.name: text
        }

        Item {
            Layout.fillHeight: true
        }

        Label {
            Layout.fillWidth: true
            opacity: 0.7
            wrapMode: Text.WordWrap
            text: qsTr("Press Esc to close.")
            Accessible.name: text
        }
    }
}
