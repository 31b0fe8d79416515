import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// The signed-in page. The composer and My Day take their places here as they arrive.
Pane {
    id: root

    required property var auth

    padding: 16

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
            objectName: "signedInUser"
            Layout.fillWidth: true
            wrapMode: Text.WordWrap
            text: qsTr("Signed in as %1").arg(root.auth.userDisplayName)
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
