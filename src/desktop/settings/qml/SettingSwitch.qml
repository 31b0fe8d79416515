import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// A switch whose label may come from the service: shown as plain text by a label of its own.
Switch {
    id: root

    required property string label

    Layout.fillWidth: true
    focusPolicy: Qt.StrongFocus
    // The control's own text only places the indicator before the label; "&&" makes no mnemonic.
    text: root.label.replace(/&/g, "&&")
    Accessible.name: root.label

    contentItem: Label {
        leftPadding: root.indicator && !root.mirrored ? root.indicator.width + root.spacing : 0
        rightPadding: root.indicator && root.mirrored ? root.indicator.width + root.spacing : 0
        verticalAlignment: Text.AlignVCenter
        wrapMode: Text.WordWrap
        textFormat: Text.PlainText
        text: root.label
    }
}
