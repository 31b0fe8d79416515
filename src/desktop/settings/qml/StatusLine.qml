import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// A symbol beside a line of plain text that wraps: a state or the result of an action.
RowLayout {
    id: root

    required property string symbol
    property alias text: label.text
    property int accessibleRole: Accessible.StaticText

    Layout.fillWidth: true
    spacing: 8

    Image {
        Layout.alignment: Qt.AlignTop
        source: "image://symbol/" + root.symbol
        sourceSize.width: 16
        sourceSize.height: 16
        Accessible.ignored: true
    }

    Label {
        id: label

        objectName: root.objectName + "Text"
        Layout.fillWidth: true
        wrapMode: Text.WordWrap
        textFormat: Text.PlainText
        Accessible.role: root.accessibleRole
        Accessible.name: text
    }
}
