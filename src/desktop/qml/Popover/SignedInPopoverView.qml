import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// The signed-in page. The composer and My Day take their places here as they arrive.
Pane {
    id: root

    required property var auth
    required property var location

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

        Label {
            objectName: "locationTitle"
            Layout.fillWidth: true
            elide: Text.ElideRight
            font.bold: true
            text: root.location.locationTitle
            Accessible.name: text
        }

        ComboBox {
            objectName: "listChooser"
            Layout.fillWidth: true
            model: root.location.entryTitles
            currentIndex: root.location.currentIndex
            displayText: currentIndex < 0 ? "Choose workspace and list…" : currentText
            onActivated: index => root.location.select(index)
            onActiveFocusChanged: if (activeFocus) root.location.loadEntries()
            onPressedChanged: if (pressed) root.location.loadEntries()
            Accessible.name: "List for new tasks"
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
