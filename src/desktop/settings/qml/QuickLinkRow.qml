import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import NorvaneBar

// One quick link: its name and address, and the button that removes it.
RowLayout {
    id: row

    required property QuickLinksViewModel quickLinks
    required property int index
    required property quickLink modelData

    objectName: "quickLink" + row.index
    Layout.fillWidth: true
    spacing: 8

    ColumnLayout {
        Layout.fillWidth: true
        spacing: 0

        Label {
            Layout.fillWidth: true
            elide: Text.ElideRight
            textFormat: Text.PlainText
            text: row.modelData.name
        }

        Label {
            Layout.fillWidth: true
            elide: Text.ElideMiddle
            textFormat: Text.PlainText
            font.pixelSize: 11
            text: row.modelData.urlString
        }
    }

    ToolButton {
        id: removeButton

        objectName: "removeQuickLink" + row.index
        focusPolicy: Qt.StrongFocus
        icon.source: "image://symbol/minus.circle.fill"
        icon.width: 16
        icon.height: 16
        display: AbstractButton.IconOnly
        onClicked: row.quickLinks.remove(row.modelData.id)
        Accessible.name: qsTr("Remove ") + row.modelData.name

        // The name is the person's own: shown as written.
        PlainToolTip {
            text: removeButton.Accessible.name
            visible: removeButton.hovered
        }
    }
}
