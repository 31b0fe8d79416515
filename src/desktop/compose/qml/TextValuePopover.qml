import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// A text, number, link, address or phone field: committed when Return is pressed or the popover
// closes.
ChipPopover {
    id: root

    objectName: "textValuePopover"
    onClosed: root.chips.commitText(root.chipID, valueField.text)

    ColumnLayout {
        spacing: 4

        TextField {
            id: valueField

            objectName: "textValue"
            Layout.preferredWidth: 220
            focus: true
            placeholderText: root.placeholder
            text: root.chips.textValue(root.chipID)
            onAccepted: root.close()
            Accessible.name: root.title
            Accessible.description: root.note
        }

        Label {
            visible: root.note.length > 0
            opacity: 0.7
            text: root.note
        }
    }
}
