pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import NorvaneBar

// The "Fields" tab: which field chips the composer shows, the built-in ones and the custom fields of
// the composer's list.
SettingsPage {
    id: root

    required property FieldVisibilityViewModel fields

    SectionHeading {
        text: qsTr("Default Fields")
    }

    SettingsNote {
        text: qsTr("Hidden fields are left at their Norvane defaults when a task is created.")
    }

    Repeater {
        model: root.fields.defaultFields

        delegate: FieldSwitch {
            id: toggle

            objectName: "defaultField" + toggle.index
            toggles: root.fields.defaultFields
        }
    }

    SectionHeading {
        objectName: "customFieldsHeading"
        visible: root.fields.hasList
        textFormat: Text.PlainText
        text: qsTr("Custom Fields in “") + root.fields.listName + qsTr("”")
    }

    SettingsNote {
        visible: root.fields.hasList
        text: qsTr("Visibility is remembered per field across lists.")
    }

    Repeater {
        model: root.fields.customFields

        delegate: FieldSwitch {
            id: customToggle

            objectName: "customField" + customToggle.index
            toggles: root.fields.customFields
        }
    }

    Label {
        objectName: "noCustomFields"
        Layout.fillWidth: true
        visible: root.fields.hasList && root.fields.customFieldCount === 0
        wrapMode: Text.WordWrap
        text: qsTr("This list has no custom fields.")
        Accessible.name: text
    }

    Button {
        id: editLink

        readonly property string label: qsTr("Edit in Norvane — ") + root.fields.listName

        objectName: "editInNorvane"
        visible: root.fields.hasList && root.fields.customFieldCount === 0
        flat: true
        leftPadding: 0
        focusPolicy: Qt.StrongFocus
        onClicked: root.fields.openList()
        Accessible.role: Accessible.Link
        Accessible.name: editLink.label

        contentItem: Label {
            textFormat: Text.PlainText
            wrapMode: Text.WordWrap
            color: editLink.palette.link
            font.underline: true
            text: editLink.label
        }
    }

    Label {
        objectName: "noList"
        Layout.fillWidth: true
        Layout.topMargin: 8
        visible: !root.fields.hasList
        wrapMode: Text.WordWrap
        text: qsTr("Pick a list in the composer to configure its custom fields.")
        Accessible.name: text
    }
}
