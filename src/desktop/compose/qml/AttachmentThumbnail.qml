import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import NorvaneBar

// One staged attachment in the strip: a picture of an image file, or the symbol of a movie or
// another file, its name and size, and a corner button that removes it. Its context menu (right
// click, the Menu key or Shift+F10) saves it to disk or removes it; Delete or Backspace removes it.
FocusScope {
    id: root

    objectName: "attachmentThumbnail"
    required property int index
    required property string filename
    required property url fileURL
    required property string sizeText
    required property string note
    // An AttachmentListModel.Kind.
    required property int kind

    signal removeRequested
    signal saveRequested

    function openMenu(x, y) {
        contextMenu.popup(root, x, y);
    }

    implicitWidth: 88
    implicitHeight: layout.implicitHeight + 8
    Keys.onDeletePressed: root.removeRequested()
    Keys.onPressed: event => {
        if (event.key === Qt.Key_Backspace) {
            root.removeRequested();
            event.accepted = true;
        } else if (event.key === Qt.Key_Menu || (event.key === Qt.Key_F10 && event.modifiers & Qt.ShiftModifier)) {
            root.openMenu(0, root.height);
            event.accepted = true;
        }
    }
    Accessible.role: Accessible.ListItem
    // The name, size and note that are not empty, joined by commas.
    Accessible.name: {
        let name = "";
        for (const part of [root.filename, root.sizeText, root.note]) {
            if (part.length > 0)
                name = name.length > 0 ? name + ", " + part : part;
        }
        return name;
    }

    Rectangle {
        anchors.fill: parent
        radius: 4
        color: root.activeFocus ? root.palette.highlight : "transparent"
        opacity: 0.25
    }

    TapHandler {
        acceptedButtons: Qt.RightButton
        onTapped: point => root.openMenu(point.position.x, point.position.y)
    }

    ColumnLayout {
        id: layout

        anchors.fill: parent
        anchors.margins: 4
        spacing: 2

        Rectangle {
            Layout.alignment: Qt.AlignHCenter
            implicitWidth: 72
            implicitHeight: 72
            radius: 6
            clip: true
            color: root.palette.alternateBase
            border.color: root.palette.mid

            // A picture of the image, decoded away from the window's thread at the size shown.
            Image {
                id: picture

                objectName: "attachmentPicture"
                anchors.fill: parent
                anchors.margins: 1
                visible: root.kind === AttachmentListModel.Image && picture.status !== Image.Error
                source: root.kind === AttachmentListModel.Image ? root.fileURL : ""
                asynchronous: true
                cache: true
                sourceSize.width: 144
                sourceSize.height: 144
                fillMode: Image.PreserveAspectCrop
                Accessible.ignored: true
            }

            Image {
                objectName: "attachmentSymbol"
                anchors.centerIn: parent
                visible: !picture.visible
                source: root.kind === AttachmentListModel.Video ? "image://symbol/film.fill" : "image://symbol/doc.fill"
                sourceSize.width: 32
                sourceSize.height: 32
                Accessible.ignored: true
            }

            // What the size limits say, as a warning mark; the strip shows the note under the row.
            Image {
                objectName: "attachmentWarning"
                anchors.left: parent.left
                anchors.bottom: parent.bottom
                anchors.margins: 4
                visible: root.note.length > 0
                source: "image://symbol/exclamationmark.triangle.fill"
                sourceSize.width: 16
                sourceSize.height: 16
                Accessible.ignored: true
            }
        }

        Label {
            objectName: "attachmentName"
            Layout.fillWidth: true
            horizontalAlignment: Text.AlignHCenter
            elide: Text.ElideMiddle
            textFormat: Text.PlainText
            font.pixelSize: 11
            text: root.filename
        }

        Label {
            objectName: "attachmentSize"
            Layout.fillWidth: true
            visible: text.length > 0
            horizontalAlignment: Text.AlignHCenter
            opacity: 0.7
            font.pixelSize: 10
            text: root.sizeText
        }
    }

    ToolButton {
        id: removeButton

        objectName: "removeAttachment"
        anchors.top: parent.top
        anchors.right: parent.right
        width: 22
        height: 22
        padding: 2
        focusPolicy: Qt.NoFocus
        icon.source: "image://symbol/xmark.circle.fill"
        icon.color: root.palette.text
        icon.width: 16
        icon.height: 16
        display: AbstractButton.IconOnly
        onClicked: root.removeRequested()
        Accessible.name: qsTr("Remove %1").arg(root.filename)

        // Names the file: shown as written.
        PlainToolTip {
            text: removeButton.Accessible.name
            visible: removeButton.hovered
        }
    }

    Menu {
        id: contextMenu

        objectName: "attachmentMenu"

        PlainMenuItem {
            objectName: "saveAttachment"
            label: qsTr("Save to Disk…")
            onTriggered: root.saveRequested()
        }

        PlainMenuItem {
            objectName: "removeAttachmentItem"
            label: qsTr("Remove")
            onTriggered: root.removeRequested()
        }
    }
}
