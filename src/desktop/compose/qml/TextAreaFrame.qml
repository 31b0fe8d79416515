import QtQuick
import QtQuick.Templates as T
import QtQuick.Controls.Fusion

// The frame of a text area, which Fusion draws for text fields only: the same colours, and the
// accent while the area has the keyboard. A control, so that its palette follows the window's.
T.Control {
    id: frame

    required property bool focused

    background: Rectangle {
        radius: 2
        color: frame.palette.base
        border.color: frame.focused ? Fusion.highlightedOutline(frame.palette) : Fusion.outline(frame.palette)
    }
}
