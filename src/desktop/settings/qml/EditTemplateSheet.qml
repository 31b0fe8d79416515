import QtQuick
import QtQuick.Controls
import QtQuick.Controls.impl
import QtQuick.Layouts
import NorvaneBar

// Edits a template: its name, its pinned list chosen through the location picker, and the task name
// and description it fills in. It opens while the view model edits a template, with the keyboard
// in "Name". Return in a one-line field saves, as Ctrl+Return does in the description; Escape
// cancels.
Dialog {
    id: root

    required property TemplateSettingsViewModel templates
    // Where the keyboard goes when the sheet closes.
    property Item returnFocus

    function save() {
        if (saveButton.enabled)
            root.templates.save(nameField.text, taskNameField.text, descriptionArea.text);
    }

    objectName: "editTemplateSheet"
    parent: Overlay.overlay
    anchors.centerIn: parent
    width: Math.min(400, (parent ? parent.width : 400) - 32)
    title: qsTr("Edit Template")
    modal: true
    focus: true
    onAboutToShow: {
        nameField.text = root.templates.editingName;
        taskNameField.text = root.templates.editingTaskName;
        descriptionArea.text = root.templates.editingDescription;
    }
    onOpened: {
        nameField.selectAll();
        nameField.forceActiveFocus();
    }
    // Escape, Cancel, or a save: only the first two leave a template being edited.
    onClosed: {
        root.templates.cancel();
        if (root.returnFocus)
            root.returnFocus.forceActiveFocus(Qt.TabFocusReason);
    }

    Connections {
        target: root.templates

        function onEditingChanged() {
            if (root.templates.isEditing)
                root.open();
            else
                root.close();
        }
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 8

        Label {
            text: qsTr("Name")
        }

        TextField {
            id: nameField

            objectName: "templateNameField"
            Layout.fillWidth: true
            onAccepted: root.save()
            Accessible.name: qsTr("Name")
        }

        Label {
            text: qsTr("Pinned list")
        }

        RowLayout {
            Layout.fillWidth: true
            spacing: 8

            Button {
                id: listButton

                // The pinned list's path, or the word that there is none.
                readonly property string shownPath: root.templates.editingListPath.length > 0 ? root.templates.editingListPath : qsTr("No pinned list")

                objectName: "pinnedListButton"
                Layout.fillWidth: true
                focusPolicy: Qt.StrongFocus
                onClicked: picker.open()
                Keys.onReturnPressed: picker.open()
                Keys.onEnterPressed: picker.open()
                Accessible.name: qsTr("Pinned list")
                Accessible.description: listButton.shownPath

                // The list's path is the service's: plain text, never the button's own text, where
                // "&" would make a mnemonic.
                contentItem: RowLayout {
                    spacing: 8

                    IconImage {
                        source: "image://symbol/list.bullet"
                        color: listButton.palette.buttonText
                        sourceSize.width: 16
                        sourceSize.height: 16
                        Layout.preferredWidth: 16
                        Layout.preferredHeight: 16
                    }

                    Label {
                        objectName: "pinnedList"
                        Layout.fillWidth: true
                        Layout.preferredWidth: 0
                        elide: Text.ElideMiddle
                        maximumLineCount: 1
                        textFormat: Text.PlainText
                        color: listButton.palette.buttonText
                        text: listButton.shownPath
                    }
                }
            }

            Button {
                objectName: "clearPinnedList"
                visible: root.templates.editingListPath.length > 0
                focusPolicy: Qt.StrongFocus
                text: qsTr("Clear")
                onClicked: {
                    root.templates.clearList();
                    listButton.forceActiveFocus(Qt.TabFocusReason);
                }
                Accessible.name: text
            }
        }

        Label {
            text: qsTr("Task name")
        }

        TextField {
            id: taskNameField

            objectName: "templateTaskNameField"
            Layout.fillWidth: true
            onAccepted: root.save()
            Accessible.name: qsTr("Task name")
        }

        Label {
            text: qsTr("Description")
        }

        ComposerTextArea {
            id: descriptionArea

            objectName: "templateDescriptionField"
            Layout.fillWidth: true
            Layout.preferredHeight: 96
            Keys.onReturnPressed: event => {
                if (event.modifiers & Qt.ControlModifier)
                    root.save();
                else
                    event.accepted = false;
            }
            Keys.onEnterPressed: event => {
                if (event.modifiers & Qt.ControlModifier)
                    root.save();
                else
                    event.accepted = false;
            }
            Accessible.name: qsTr("Description")

            background: TextAreaFrame {
                focused: descriptionArea.activeFocus
            }
        }
    }

    footer: RowLayout {
        spacing: 8

        Item {
            Layout.fillWidth: true
        }

        Button {
            objectName: "cancelEditTemplate"
            Layout.bottomMargin: 12
            focusPolicy: Qt.StrongFocus
            text: qsTr("Cancel")
            onClicked: root.close()
            Accessible.name: text
        }

        Button {
            id: saveButton

            objectName: "saveEditTemplate"
            Layout.rightMargin: 12
            Layout.bottomMargin: 12
            focusPolicy: Qt.StrongFocus
            highlighted: true
            text: qsTr("Save")
            enabled: nameField.text.trim().length > 0
            onClicked: root.save()
            Accessible.name: text
        }
    }

    LocationPickerView {
        id: picker

        picker: root.templates.picker
        onClosed: listButton.forceActiveFocus(Qt.TabFocusReason)
    }
}
