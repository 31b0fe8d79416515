import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// One template: its name and pinned list, with the buttons that edit and delete it. Both texts are
// shown as typed, never as markup.
RowLayout {
    id: row

    required property int index
    required property string name
    required property string listPath

    // The edit button, for the keyboard to come back to when the sheet closes.
    signal edit(Item button)
    signal deleteTemplate

    objectName: "template" + row.index
    Layout.fillWidth: true
    spacing: 8

    ColumnLayout {
        Layout.fillWidth: true
        spacing: 0

        Label {
            objectName: "templateRowName" + row.index
            Layout.fillWidth: true
            elide: Text.ElideRight
            textFormat: Text.PlainText
            text: row.name
        }

        Label {
            objectName: "templateRowList" + row.index
            Layout.fillWidth: true
            elide: Text.ElideMiddle
            textFormat: Text.PlainText
            font.pixelSize: 11
            text: row.listPath.length > 0 ? row.listPath : qsTr("No pinned list")
        }
    }

    ToolButton {
        id: editButton

        objectName: "editTemplate" + row.index
        focusPolicy: Qt.StrongFocus
        icon.source: "image://symbol/pencil"
        icon.width: 16
        icon.height: 16
        display: AbstractButton.IconOnly
        onClicked: row.edit(editButton)
        Accessible.name: qsTr("Edit ") + row.name
    }

    ToolButton {
        objectName: "deleteTemplate" + row.index
        focusPolicy: Qt.StrongFocus
        icon.source: "image://symbol/trash"
        icon.width: 16
        icon.height: 16
        display: AbstractButton.IconOnly
        onClicked: row.deleteTemplate()
        Accessible.name: qsTr("Delete ") + row.name
    }
}
