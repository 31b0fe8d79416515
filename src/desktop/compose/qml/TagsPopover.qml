pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import NorvaneBar

// The tags of the list's space, each toggled in the draft, and a field that adds a tag as typed.
ChipPopover {
    id: root

    objectName: "tagsPopover"

    ColumnLayout {
        spacing: 4

        Label {
            visible: !root.chips.hasContextTags
            opacity: 0.7
            text: qsTr("No tags in this Space yet")
        }

        Repeater {
            model: root.chips.tagEntries

            CheckBox {
                id: tagBox

                required property int index
                required property chipMenuEntry modelData

                objectName: "tagEntry"
                checked: tagBox.modelData.checked
                onToggled: root.chips.chooseEntry(root.chipID, tagBox.index)
                Keys.onReturnPressed: toggle(), toggled()
                Accessible.name: tagBox.modelData.label

                contentItem: Label {
                    leftPadding: tagBox.indicator.width + tagBox.spacing
                    verticalAlignment: Text.AlignVCenter
                    textFormat: Text.PlainText
                    text: tagBox.modelData.label
                }
            }
        }

        TextField {
            objectName: "newTag"
            Layout.preferredWidth: 200
            focus: true
            placeholderText: qsTr("New tag")
            onAccepted: if (root.chips.addTag(text)) text = ""
            Accessible.name: qsTr("New tag")
        }
    }
}
