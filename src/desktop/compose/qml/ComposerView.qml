pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import NorvaneBar

// The composer: the mode, the task's name and description or the lines of many tasks, the
// attached files, and the submit button (also Ctrl+Return).
ColumnLayout {
    id: root

    required property ComposerViewModel composer
    required property AttachmentListModel attachments

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

    ScrollView {
        Layout.fillWidth: true
        Layout.preferredHeight: 64
        visible: !root.bulk

        background: TextAreaFrame {
            focused: descriptionArea.activeFocus
        }

        TextArea {
            id: descriptionArea

            objectName: "taskDescription"
            // The text starts where the name field's does.
            padding: nameField.padding
            leftPadding: nameField.leftPadding
            textFormat: TextEdit.PlainText
            wrapMode: TextEdit.Wrap
            placeholderText: qsTr("Description")
            text: root.composer.descriptionText
            onTextChanged: if (text !== root.composer.descriptionText) root.composer.descriptionText = text
            Accessible.name: qsTr("Description")
        }
    }

    ScrollView {
        Layout.fillWidth: true
        Layout.fillHeight: true
        Layout.minimumHeight: 96
        visible: root.bulk

        background: TextAreaFrame {
            focused: bulkEditor.activeFocus
        }

        TextArea {
            id: bulkEditor

            objectName: "bulkEditor"
            padding: nameField.padding
            leftPadding: nameField.leftPadding
            textFormat: TextEdit.PlainText
            wrapMode: TextEdit.Wrap
            placeholderText: qsTr("One task per line…")
            text: root.composer.bulkLines
            onTextChanged: if (text !== root.composer.bulkLines) root.composer.bulkLines = text
            Accessible.name: qsTr("Bulk task names")
        }
    }
    FieldChipsRow { Layout.fillWidth: true; chips: root.composer.fieldChips }

    Label {
        objectName: "attachmentCount"
        visible: !root.bulk && root.attachments.count > 0
        text: qsTr("%n attachments", "", root.attachments.count)
        opacity: 0.7
        Accessible.name: text
    }

    ListView {
        id: attachmentList

        objectName: "attachmentList"
        Layout.fillWidth: true
        Layout.fillHeight: !root.bulk
        Layout.minimumHeight: 40
        visible: !root.bulk
        clip: true
        spacing: 6
        model: root.attachments
        activeFocusOnTab: count > 0
        keyNavigationEnabled: true
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Attachments")

        delegate: AttachmentRow {
            width: ListView.view.width
            onRemoveRequested: root.attachments.remove(this.index)
        }

        Label {
            anchors.centerIn: parent
            width: parent.width
            visible: attachmentList.count === 0
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.WordWrap
            opacity: 0.6
            text: qsTr("Paste or drop files here to attach them.")
            Accessible.name: text
        }
    }

    RowLayout {
        Layout.fillWidth: true

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
            ToolTip.visible: hovered
            ToolTip.text: root.bulk ? qsTr("Create all tasks (Ctrl+Return)") : qsTr("Create task in Norvane (Ctrl+Return)")
            Accessible.name: text
            Accessible.description: ToolTip.text
        }
    }

    Shortcut {
        sequences: ["Ctrl+Return", "Ctrl+Enter"]
        enabled: root.composer.canSubmit
        onActivated: root.composer.submit()
    }

    Component.onCompleted: nameField.forceActiveFocus()
}
