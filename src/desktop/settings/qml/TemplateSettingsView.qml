pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import NorvaneBar

// The "Templates" tab: the stored templates, each to edit or delete, and a new one made here. The
// keyboard comes back to the button that opened the sheet when it closes.
SettingsPage {
    id: root

    required property TemplateSettingsViewModel templates

    SectionHeading {
        text: qsTr("Templates")
    }

    SettingsNote {
        text: qsTr("Templates prefill the composer. A pinned list is selected automatically when applied.")
    }

    Label {
        objectName: "noTemplates"
        Layout.fillWidth: true
        visible: root.templates.isEmpty
        font.bold: true
        wrapMode: Text.WordWrap
        text: qsTr("No templates")
        Accessible.name: text
    }

    SettingsNote {
        objectName: "noTemplatesHint"
        visible: root.templates.isEmpty
        text: qsTr("Save a template from the composer menu, or create one here.")
    }

    Repeater {
        model: root.templates.rows

        delegate: TemplateRow {
            id: templateRow

            onEdit: button => {
                sheet.returnFocus = button;
                root.templates.edit(templateRow.index);
            }
            onDeleteTemplate: {
                // The row goes with its buttons: the keyboard moves on to "New Template".
                newTemplate.forceActiveFocus(Qt.TabFocusReason);
                root.templates.remove(templateRow.index);
            }
        }
    }

    Button {
        id: newTemplate

        objectName: "newTemplate"
        Layout.alignment: Qt.AlignRight
        focusPolicy: Qt.StrongFocus
        text: qsTr("New Template")
        onClicked: {
            sheet.returnFocus = newTemplate;
            root.templates.create();
        }
        Accessible.name: text
    }

    EditTemplateSheet {
        id: sheet

        templates: root.templates
    }
}
