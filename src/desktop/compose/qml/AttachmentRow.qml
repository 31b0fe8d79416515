import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import NorvaneBar

// One staged attachment: its name, its size, what the size limits say of it, and a remove button.
// Delete or Backspace on a focused row removes it as well.
FocusScope {
    id: row

    objectName: "attachmentRow"
    required property int index
    required property string filename
    required property string sizeText
    required property string note
    // An AttachmentListModel.Kind.
    required property int kind

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
    // The name, size and note that are not empty, joined by commas.
    Accessible.name: {
        let name = "";
        for (const part of [row.filename, row.sizeText, row.note]) {
            if (part.length > 0)
                name = name.length > 0 ? name + ", " + part : part;
        }
        return name;
    }

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
            color: row.palette.button
            border.color: row.palette.mid

            Label {
                objectName: "attachmentKind"
                anchors.centerIn: parent
                font.pixelSize: 10
                font.bold: true
                color: row.palette.buttonText
                text: {
                    switch (row.kind) {
                    case AttachmentListModel.Image:
                        return qsTr("IMAGE");
                    case AttachmentListModel.Video:
                        return qsTr("VIDEO");
                    default:
                        return qsTr("FILE");
                    }
                }
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

            // What the size limits say, marked as a warning.
            RowLayout {
                Layout.fillWidth: true
                visible: row.note.length > 0
                spacing: 4

                Image {
                    Layout.alignment: Qt.AlignTop
                    source: "image://symbol/exclamationmark.triangle.fill"
                    sourceSize.width: 14
                    sourceSize.height: 14
                    Accessible.ignored: true
                }

                Label {
                    objectName: "attachmentNote"
                    Layout.fillWidth: true
                    wrapMode: Text.WordWrap
                    textFormat: Text.PlainText
                    text: row.note
                }
            }
        }

        ToolButton {
            id: removeButton

            objectName: "removeAttachment"
            //: The remove button's glyph.
            text: qsTr("✕")
            focusPolicy: Qt.NoFocus
            onClicked: row.removeRequested()
            Accessible.name: qsTr("Remove %1").arg(row.filename)

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
