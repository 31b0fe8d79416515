import QtQuick
import QtQuick.Controls
import QtQuick.Controls.impl
import QtQuick.Layouts
import NorvaneBar

// The top of the signed-in page: the chosen list's name, or the prompt to choose one; it opens the
// location picker, and the keyboard comes back here when the picker closes.
Button {
    id: root

    required property LocationPickerViewModel picker

    objectName: "locationSelector"
    implicitHeight: 36
    leftPadding: 8
    rightPadding: 8
    onClicked: pickerView.open()
    Keys.onReturnPressed: pickerView.open()
    Keys.onEnterPressed: pickerView.open()
    Accessible.name: qsTr("List for new tasks")
    Accessible.description: root.picker.locationTitle

    contentItem: RowLayout {
        spacing: 8

        // Tinted like the button's text, so that the symbols read on the button in light and dark.
        IconImage {
            source: "image://symbol/building.2.crop.circle"
            color: root.palette.buttonText
            sourceSize.width: 16
            sourceSize.height: 16
            Layout.preferredWidth: 16
            Layout.preferredHeight: 16
        }

        // The list's name is the service's: plain text, never the button's own text, where "&"
        // would make a mnemonic.
        Label {
            objectName: "locationTitle"
            Layout.fillWidth: true
            Layout.preferredWidth: 0
            elide: Text.ElideRight
            maximumLineCount: 1
            font.bold: true
            textFormat: Text.PlainText
            color: root.palette.buttonText
            text: root.picker.locationTitle
        }

        IconImage {
            source: "image://symbol/chevron.down"
            color: root.palette.buttonText
            sourceSize.width: 16
            sourceSize.height: 16
            Layout.preferredWidth: 16
            Layout.preferredHeight: 16
        }
    }

    LocationPickerView {
        id: pickerView

        picker: root.picker
        onClosed: root.forceActiveFocus()
    }
}
