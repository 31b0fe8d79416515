import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// One staged attachment: its name, its size, what the size limits say of it, and a remove button.
// Delete or Backspace on a focused row removes it as well.
FocusScope {
    id: row

    required property int index
    required property string filename
    required property string sizeText
    required property string note
    required property string kind

    signal removeRequested

    implicitHeight: layout.implicitHeight + 8
    Keys.onDeletePressed: row.removeRequested()
    Keys.onPressed: event => {
        if (event.key === Qt.Key_Backspace) {
            row.removeRequested();
            event.accepted = true;
        }
    }
    Accessible.role: Accessible.ListItem
    Accessible.name: [row.filename, row.sizeText, row.note].filter(part => part.length > 0).join(", ")

    Rectangle {
        anchors.fill: parent
        radius: 4
        color: row.activeFocus ? row.palette.highlight : row.palette.alternateBase
        opacity: row.activeFocus ? 0.25 : 1
    }

    RowLayout {
        id: layout

        anchors.fill: parent
        anchors.margins: 4
        spacing: 8

        // The kind as a small badge; the name beside it says the rest.
        Rectangle {
            implicitWidth: 44
            implicitHeight: 22
            radius: 4
            color: row.palette.mid

            Label {
                anchors.centerIn: parent
                font.pixelSize: 10
                font.bold: true
                color: row.palette.base
                text: row.kind === "image" ? "IMAGE" : row.kind === "video" ? "VIDEO" : "FILE"
                Accessible.ignored: true
            }
        }

        ColumnLayout {
            Layout.fillWidth: true
            spacing: 2

            Label {
                objectName: "attachmentName"
                Layout.fillWidth: true
                elide: Text.ElideMiddle
                textFormat: Text.PlainText
                text: row.filename
            }

            Label {
                objectName: "attachmentSize"
                visible: text.length > 0
                opacity: 0.7
                text: row.sizeText
            }

            Label {
                objectName: "attachmentNote"
                Layout.fillWidth: true
                visible: text.length > 0
                wrapMode: Text.WordWrap
                color: "#b35900"
                textFormat: Text.PlainText
                text: row.note
            }
        }

        ToolButton {
            id: removeButton

            objectName: "removeAttachment"
            text: "✕"
            focusPolicy: Qt.NoFocus
            onClicked: row.removeRequested()
            Accessible.name: "Remove " + row.filename

            // Names the file, so its text is plain; the attached ToolTip can't be told so.
            ToolTip {
                id: removeTip

                objectName: "removeAttachmentTip"
                visible: removeButton.hovered
                text: removeButton.Accessible.name
                contentItem: Label {
                    wrapMode: Text.Wrap
                    textFormat: Text.PlainText
                    color: removeTip.palette.toolTipText
                    text: removeTip.text
                }
            }
        }
    }
}
