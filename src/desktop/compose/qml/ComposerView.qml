pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import NorvaneBar

// The composer: the mode, the task's name and description or the lines of many tasks, the
// attached files, the template menu, and the submit button (also Ctrl+Return). Files pasted into or
// dropped on the popover join the attachments.
ColumnLayout {
    id: root

    required property ComposerViewModel composer
    required property AttachmentListModel attachments
    required property TemplateMenuViewModel templates
    required property AttachmentExporterViewModel exporter
    required property ScreenRecordingSetupViewModel recording

    readonly property bool bulk: root.composer.isBulkMode

    spacing: 8

    RowLayout {
        objectName: "composeMode"
        Layout.fillWidth: true
        spacing: 4
        Accessible.role: Accessible.PageTabList
        Accessible.name: qsTr("Compose mode")

        ButtonGroup {
            id: modes
        }

        Button {
            id: singleMode

            objectName: "singleMode"
            Layout.fillWidth: true
            checkable: true
            checked: !root.bulk
            // The mode in use stands out in the accent colour, in light and dark alike.
            highlighted: singleMode.checked
            ButtonGroup.group: modes
            icon.source: "image://symbol/doc.text"
            icon.color: singleMode.palette.buttonText
            text: qsTr("Single task")
            onClicked: root.composer.isBulkMode = false
            Accessible.name: text
        }

        Button {
            id: bulkMode

            objectName: "bulkMode"
            Layout.fillWidth: true
            checkable: true
            checked: root.bulk
            highlighted: bulkMode.checked
            ButtonGroup.group: modes
            icon.source: "image://symbol/list.bullet"
            icon.color: bulkMode.palette.buttonText
            text: qsTr("Multiple tasks — one per line")
            onClicked: root.composer.isBulkMode = true
            Accessible.name: text
        }
    }

    TextField {
        id: nameField

        objectName: "taskName"
        Layout.fillWidth: true
        visible: !root.bulk
        placeholderText: qsTr("Task name")
        text: root.composer.name
        onTextEdited: root.composer.name = text
        Accessible.name: qsTr("Task name")
    }

    DescriptionEditor {
        Layout.fillWidth: true
        visible: !root.bulk
        composer: root.composer
        textPadding: nameField.padding
        textLeftPadding: nameField.leftPadding
    }

    ScrollView {
        Layout.fillWidth: true
        Layout.fillHeight: true
        Layout.minimumHeight: 96
        visible: root.bulk

        background: TextAreaFrame {
            focused: bulkEditor.activeFocus
        }

        ComposerTextArea {
            id: bulkEditor

            objectName: "bulkEditor"
            padding: nameField.padding
            leftPadding: nameField.leftPadding
            placeholderText: qsTr("One task per line…")
            text: root.composer.bulkLines
            onTextChanged: if (text !== root.composer.bulkLines) root.composer.bulkLines = text
            Accessible.name: qsTr("Bulk task names")
        }
    }
    // The task's fields, shared by every line in bulk mode.
    FieldChipsRow {
        Layout.fillWidth: true
        chips: root.composer.fieldChips
    }

    AttachmentStripView {
        Layout.fillWidth: true
        visible: root.attachments.count > 0
        attachments: root.attachments
        exporter: root.exporter
    }

    // Keeps the footer at the bottom while the fields above are short.
    Item {
        Layout.fillHeight: true
        visible: !root.bulk
    }

    RowLayout {
        Layout.fillWidth: true

        TemplateMenuButton {
            templates: root.templates
            onSaveRequested: saveTemplateSheet.open()
        }

        ToolButton {
            id: recordButton

            objectName: "recordScreen"
            icon.source: "image://symbol/record.circle"
            icon.color: recordButton.palette.buttonText
            // The symbol alone, so that the footer keeps to one line; the name is read out.
            display: AbstractButton.IconOnly
            text: qsTr("Record screen")
            onClicked: root.recording.recordScreen()
            Accessible.name: text
            Accessible.description: qsTr("Record screen with voice and attach the video")

            PlainToolTip {
                text: recordButton.Accessible.description
                visible: recordButton.hovered
            }
        }

        Label {
            Layout.fillWidth: true
            opacity: 0.7
            wrapMode: Text.WordWrap
            text: qsTr("Press Esc to close.")
            Accessible.name: text
        }

        Button {
            id: submitButton

            objectName: "submitButton"
            highlighted: true
            enabled: root.composer.canSubmit
            text: root.bulk ? qsTr("Create Tasks") : qsTr("Create Task")
            onClicked: root.composer.submit()
            Accessible.name: text
            Accessible.description: root.bulk ? qsTr("Create all tasks (Ctrl+Return)") : qsTr("Create task in Norvane (Ctrl+Return)")

            PlainToolTip {
                text: submitButton.Accessible.description
                visible: submitButton.hovered
            }
        }
    }

    Shortcut {
        sequences: ["Ctrl+Return", "Ctrl+Enter"]
        enabled: root.composer.canSubmit
        onActivated: root.composer.submit()
    }

    SaveTemplateSheet {
        id: saveTemplateSheet

        templates: root.templates
    }

    AttachmentSaveDialogs {
        exporter: root.exporter
    }

    Component.onCompleted: nameField.forceActiveFocus()
}
