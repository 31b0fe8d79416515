import QtQuick
import QtQuick.Controls

// One thing to record in the picker: its symbol and its name, shown as plain text as it comes.
ItemDelegate {
    id: root

    required property string label
    required property string symbol

    signal chosen

    implicitWidth: 360
    focusPolicy: Qt.StrongFocus
    // The delegate's own text only sets the spacing; "&&" makes no mnemonic.
    text: root.label.replace(/&/g, "&&")
    Accessible.name: root.label
    onClicked: root.chosen()
    Keys.onReturnPressed: root.chosen()
    Keys.onEnterPressed: root.chosen()

    contentItem: Row {
        spacing: 8

        Image {
            anchors.verticalCenter: parent.verticalCenter
            source: "image://symbol/" + root.symbol
            sourceSize.width: 16
            sourceSize.height: 16
            Accessible.ignored: true
        }

        Label {
            width: parent.width - 24
            anchors.verticalCenter: parent.verticalCenter
            elide: Text.ElideRight
            textFormat: Text.PlainText
            text: root.label
        }
    }
}
