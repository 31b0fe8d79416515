import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// A text setting: its label above a field that fills the width and is named by the label.
ColumnLayout {
    id: root

    required property string label
    property alias text: field.text
    property alias placeholderText: field.placeholderText
    property alias echoMode: field.echoMode

    signal textEdited

    Layout.fillWidth: true
    spacing: 4

    Label {
        text: root.label
    }

    TextField {
        id: field

        // Names the field also where its echo mode hides the text (SecretFieldAccessible).
        property string accessibleName: root.label

        objectName: root.objectName + "Field"
        Layout.fillWidth: true
        onTextEdited: root.textEdited()
        Accessible.name: root.label
    }
}
