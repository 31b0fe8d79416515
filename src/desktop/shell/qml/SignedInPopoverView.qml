pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import NorvaneBar

// The signed-in page. The composer and My Day take their places here as they arrive.
Pane {
    id: root

    required property AuthViewModel auth
    required property LocationViewModel location
    required property AttachmentListModel attachments

    padding: 16

    ColumnLayout {
        anchors.fill: parent
        spacing: 12

        Label {
            text: qsTr("NorvaneBar")
            font.bold: true
            font.pixelSize: 18
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }

        Label {
            objectName: "signedInUser"
            Layout.fillWidth: true
            wrapMode: Text.WordWrap
            textFormat: Text.PlainText
            text: qsTr("Signed in as %1").arg(root.auth.userDisplayName)
            Accessible.name: text
        }

        Label {
            objectName: "locationTitle"
            Layout.fillWidth: true
            elide: Text.ElideRight
            font.bold: true
            textFormat: Text.PlainText
            text: root.location.locationTitle
            Accessible.name: text
        }

        ComboBox {
            id: listChooser

            objectName: "listChooser"
            Layout.fillWidth: true
            model: root.location.entryTitles
            currentIndex: root.location.currentIndex
            displayText: currentIndex < 0 ? qsTr("Choose workspace and list…") : currentText
            onActivated: index => root.location.select(index)
            onActiveFocusChanged: if (activeFocus) root.location.loadEntries()
            onPressedChanged: if (pressed) root.location.loadEntries()
            Accessible.name: qsTr("List for new tasks")

            // Names are the service's: plain text, and no text on the delegate, where "&" would
            // make a mnemonic.
            contentItem: Label {
                leftPadding: listChooser.mirrored ? 1 : 12
                rightPadding: listChooser.mirrored ? 12 : 1
                verticalAlignment: Text.AlignVCenter
                elide: Text.ElideRight
                textFormat: Text.PlainText
                color: listChooser.palette.buttonText
                text: listChooser.displayText
            }

            delegate: ItemDelegate {
                id: entry

                required property int index
                required property string modelData

                width: ListView.view.width
                highlighted: listChooser.highlightedIndex === index
                hoverEnabled: listChooser.hoverEnabled
                Accessible.name: modelData

                contentItem: Label {
                    elide: Text.ElideRight
                    textFormat: Text.PlainText
                    font.weight: listChooser.currentIndex === entry.index ? Font.DemiBold : Font.Normal
                    color: entry.highlighted ? listChooser.palette.highlightedText : listChooser.palette.text
                    text: entry.modelData
                }
            }
        }

        Label {
            objectName: "attachmentCount"
            visible: root.attachments.count > 0
            text: qsTr("%n attachments", "", root.attachments.count)
            opacity: 0.7
            Accessible.name: text
        }

        ListView {
            id: attachmentList

            objectName: "attachmentList"
            Layout.fillWidth: true
            Layout.fillHeight: true
            clip: true
            spacing: 6
            model: root.attachments
            activeFocusOnTab: count > 0
            keyNavigationEnabled: true
            Accessible.role: Accessible.List
            Accessible.name: qsTr("Attachments")

            delegate: AttachmentRow {
                width: ListView.view.width
                onRemoveRequested: root.attachments.remove(this.index)
            }

            Label {
                anchors.centerIn: parent
                width: parent.width
                visible: attachmentList.count === 0
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.WordWrap
                opacity: 0.6
                text: qsTr("Paste or drop files here to attach them.")
                Accessible.name: text
            }
        }

        Label {
            Layout.fillWidth: true
            opacity: 0.7
            wrapMode: Text.WordWrap
            text: qsTr("Press Esc to close.")
            Accessible.name: text
        }
    }

    Rectangle {
        objectName: "dropOverlay"
        anchors.fill: parent
        visible: root.attachments.isDropTargeted
        color: Qt.rgba(root.palette.highlight.r, root.palette.highlight.g, root.palette.highlight.b, 0.15)
        border.color: root.palette.highlight
        border.width: 2
        radius: 6

        Label {
            anchors.centerIn: parent
            text: qsTr("Drop to attach")
            font.bold: true
            font.pixelSize: 16
            Accessible.name: text
        }
    }
}
