import QtQuick
import NorvaneBar

// The composer's field chips, as many as the model holds, in the row's own FlowLayout.
FlowLayout {
    id: root

    required property FieldChipsViewModel chips
    required property FieldChipListModel chipModel

    spacing: 6

    Repeater {
        model: root.chipModel

        FieldChip {
            chips: root.chips
        }
    }
}
