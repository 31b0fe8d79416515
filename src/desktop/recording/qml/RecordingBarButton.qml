import QtQuick
import QtQuick.Controls
import NorvaneBar

// A button of the recording bar: a symbol, its help as tool tip and accessible name. It takes no
// focus, as the bar's window never has the keyboard.
ToolButton {
    id: root

    required property string symbol
    required property string help

    focusPolicy: Qt.NoFocus
    icon.source: "image://symbol/" + root.symbol
    icon.color: root.palette.buttonText
    display: AbstractButton.IconOnly
    text: root.help
    Accessible.name: root.help

    PlainToolTip {
        text: root.help
        visible: root.hovered
        below: true
    }
}
