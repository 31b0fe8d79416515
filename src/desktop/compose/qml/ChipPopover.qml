import QtQuick
import QtQuick.Controls
import NorvaneBar

// The popover a field chip opens below itself; Esc or a click outside closes it.
Popup {
    required property FieldChipsViewModel chips
    required property string chipID
    // What the chip edits, its text field's placeholder and note.
    required property string title
    required property string placeholder
    required property string note

    y: parent ? parent.height + 4 : 0
    // Never wider than the popover, and inside it.
    width: Math.min(implicitWidth, (Overlay.overlay ? Overlay.overlay.width : implicitWidth) - 2 * margins)
    margins: 8
    padding: 12
    focus: true
    modal: false
    closePolicy: Popup.CloseOnEscape | Popup.CloseOnPressOutsideParent
}
