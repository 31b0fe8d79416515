import QtQuick
import QtQuick.Controls

// A button of the recording bar: a symbol, and its help as its accessible name. It takes no focus,
// as the bar's window never has the keyboard; nor a tool tip, whose popup in a window that never
// has the keyboard takes the press meant for the button.
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
}
