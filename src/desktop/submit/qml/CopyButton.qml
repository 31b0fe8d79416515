import QtQuick
import QtQuick.Controls

// A button that copies something and reads "Copied" for a moment afterwards.
Button {
    id: root

    required property string label
    property string help

    signal copy

    text: copiedFor.running ? qsTr("Copied") : root.label
    onClicked: {
        root.copy();
        copiedFor.restart();
    }
    ToolTip.visible: hovered && root.help.length > 0
    ToolTip.text: root.help
    Accessible.name: root.label
    Accessible.description: root.help

    Timer {
        id: copiedFor

        interval: 1500
    }
}
