pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import NorvaneBar

// The chips of the task's fields, wrapping under the text: five at most, the rest behind
// "More +N", whose popover holds them.
FlowLayout {
    id: root

    required property FieldChipsViewModel chips

    objectName: "fieldChipsRow"
    spacing: 6
    Accessible.role: Accessible.Grouping
    Accessible.name: qsTr("Fields")

    Repeater {
        model: root.chips.shownChips

        FieldChip {
            chips: root.chips
        }
    }

    Button {
        id: moreChip

        objectName: "moreFieldsChip"
        visible: root.chips.moreTitle.length > 0
        implicitHeight: 28
        leftPadding: 8
        rightPadding: 8
        icon.source: "image://symbol/ellipsis.circle"
        icon.width: 14
        icon.height: 14
        icon.color: moreChip.palette.buttonText
        text: root.chips.moreTitle
        onClicked: morePopover.open()
        Keys.onReturnPressed: morePopover.open()
        Keys.onEnterPressed: morePopover.open()
        Accessible.role: Accessible.ButtonDropDown
        Accessible.name: text

        Popup {
            id: morePopover

            objectName: "moreFieldsPopover"
            y: moreChip.height + 4
            // Inside the popover, however far right the chip stands.
            margins: 8
            padding: 8
            focus: true
            closePolicy: Popup.CloseOnEscape | Popup.CloseOnPressOutsideParent

            FlowLayout {
                width: 280
                spacing: 6

                Repeater {
                    // The chips behind "More" are made while it is open.
                    model: morePopover.visible ? root.chips.moreChips : null

                    FieldChip {
                        chips: root.chips
                    }
                }
            }
        }
    }
}
