import QtQuick
import QtQuick.Controls
import NorvaneBar

// A button that copies something and reads "Copied" for a moment afterwards: its accessible name
// says so too, which assistive technology announces. Its tip stands below it, clear of the text the
// page shows above.
Button {
    id: root

    required property string label
    property string help
    readonly property alias copied: copiedFor.running

    signal copy

    text: root.copied ? qsTr("Copied") : root.label
    onClicked: {
        root.copy();
        copiedFor.restart();
    }
    Accessible.name: root.text
    Accessible.description: root.help

    PlainToolTip {
        text: root.help
        below: true
        visible: root.hovered
    }

    Timer {
        id: copiedFor

        interval: 1500
    }
}
