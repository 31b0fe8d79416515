pragma ComponentBehavior: Bound

import QtQml.Models
import QtQuick
import QtQuick.Controls
import NorvaneBar

// The composer's template menu: the stored templates by name, each filling the composer, then
// "Save Current as Template…".
ToolButton {
    id: root

    required property TemplateMenuViewModel templates

    signal saveRequested

    objectName: "templateMenuButton"
    icon.source: "image://symbol/doc.on.doc"
    icon.color: root.palette.buttonText
    text: qsTr("Template")
    // Above the button: the footer is the popover's last row.
    onClicked: menu.popup(root, 0, -menu.implicitHeight)
    Accessible.name: text
    Accessible.description: qsTr("Apply or save a template")

    PlainToolTip {
        text: root.Accessible.description
        visible: root.hovered
    }

    Menu {
        id: menu

        objectName: "templateMenu"

        // Entries a Repeater made would follow the fixed ones; these are put before them.
        Instantiator {
            model: root.templates.names
            onObjectAdded: (index, entry) => menu.insertItem(index, entry)
            onObjectRemoved: (index, entry) => menu.removeItem(entry)

            PlainMenuItem {
                required property int index
                required property string modelData

                objectName: "templateEntry"
                label: modelData
                owner: menu
                onTriggered: root.templates.apply(index)
            }
        }

        MenuSeparator {
            visible: root.templates.names.length > 0
            height: visible ? implicitHeight : 0
        }

        PlainMenuItem {
            objectName: "saveCurrentAsTemplate"
            label: qsTr("Save Current as Template…")
            owner: menu
            onTriggered: root.saveRequested()
        }
    }
}
