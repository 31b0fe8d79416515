pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import NorvaneBar

// A field chip's menu, made when it opens: its entries with the chosen ones checked.
Menu {
    id: root

    required property FieldChipsViewModel chips
    required property string chipID
    // What menuEntries gave when the menu opened.
    required property list<chipMenuEntry> entries

    objectName: "chipMenu"

    Repeater {
        model: root.entries

        PlainMenuItem {
            required property int index
            required property chipMenuEntry modelData

            objectName: "chipMenuEntry"
            label: modelData.label
            dotColor: modelData.tint
            owner: root
            checkable: modelData.checkable
            checked: modelData.checked
            onTriggered: root.chips.chooseEntry(root.chipID, index)
        }
    }
}
