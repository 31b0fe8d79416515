import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// A switch whose label may come from the service: shown as plain text, never as the control's own
// text, where "&" would make a mnemonic.
Switch {
    id: root

    required property string label

    Layout.fillWidth: true
    focusPolicy: Qt.StrongFocus
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
