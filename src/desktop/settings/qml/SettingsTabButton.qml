import QtQuick
import QtQuick.Controls

// A tab of the settings window: its symbol above its name.
TabButton {
    id: root

    required property string symbol

    focusPolicy: Qt.StrongFocus
    display: AbstractButton.TextUnderIcon
    icon.source: "image://symbol/" + root.symbol
    icon.width: 20
    icon.height: 20
    Accessible.role: Accessible.PageTab
    Accessible.name: root.text
}
