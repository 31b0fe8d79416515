import QtQuick
import QtQuick.Controls

// A link in the text: underlined in the palette's link colour, opened in the browser.
Button {
    id: root

    required property url link

    flat: true
    leftPadding: 0
    contentItem: Label {
        text: root.text
        color: root.palette.link
        font.underline: true
    }
    onClicked: Qt.openUrlExternally(root.link)
    Accessible.role: Accessible.Link
    Accessible.name: text
}
