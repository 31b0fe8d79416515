pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// A drop-down over a list of texts that may come from the service: every entry shown as plain text.
ComboBox {
    id: root

    Layout.fillWidth: true
    focusPolicy: Qt.StrongFocus

    delegate: ItemDelegate {
        id: entry

        required property int index
        required property string modelData

        width: ListView.view ? ListView.view.width : implicitWidth
        highlighted: entry.ListView.isCurrentItem
        Accessible.name: entry.modelData

        contentItem: Label {
            textFormat: Text.PlainText
            elide: Text.ElideRight
            text: entry.modelData
            color: entry.highlighted ? entry.palette.highlightedText : entry.palette.text
        }
    }
}
