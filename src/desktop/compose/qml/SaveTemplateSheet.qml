import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import NorvaneBar

// Keeps the composer's fields, and its list, as a new template under the name typed.
Dialog {
    id: root

    required property TemplateMenuViewModel templates

    objectName: "saveTemplateSheet"
    title: qsTr("Save as Template")
    modal: true
    focus: true
    anchors.centerIn: Overlay.overlay
    width: Math.min(320, (Overlay.overlay ? Overlay.overlay.width : 320) - 32)
    onAboutToShow: nameField.clear()
    onOpened: nameField.forceActiveFocus()
    onAccepted: root.templates.saveCurrent(nameField.text)

    ColumnLayout {
        anchors.fill: parent
        spacing: 8

        TextField {
            id: nameField

            objectName: "templateName"
            Layout.fillWidth: true
            placeholderText: qsTr("Template name")
            Accessible.name: qsTr("Template name")
            onAccepted: if (saveButton.enabled) root.accept()
        }
    }

    footer: RowLayout {
        spacing: 8

        Item {
            Layout.fillWidth: true
        }

        Button {
            objectName: "cancelSaveTemplate"
            text: qsTr("Cancel")
            onClicked: root.reject()
            Accessible.name: text
        }

        Button {
            id: saveButton

            objectName: "saveTemplate"
            Layout.rightMargin: 12
            Layout.bottomMargin: 12
            highlighted: true
            text: qsTr("Save")
            enabled: nameField.text.trim().length > 0
            onClicked: root.accept()
            Accessible.name: text
        }
    }
}
