import QtQuick
import QtQuick.Controls
import NorvaneBar

// An account's avatar: a circle in the account's colour, or a quiet colour of the palette when the
// service gave none, with its initials in bold in black or white, whichever stands out more against
// it. Any colour has at least 4.5:1 against one of the two, which no pair of palette colours gives
// against every colour the service may choose.
Rectangle {
    id: root

    // The initials, or the first two characters of the name; see AccountsViewModel.
    required property string initials
    // "#rrggbb", or empty for none.
    required property string fill
    property real size: 28

    readonly property color black: Qt.rgba(0, 0, 0, 1)
    readonly property color white: Qt.rgba(1, 1, 1, 1)
    readonly property color textColor: Contrast.ratio(root.color, root.black) >= Contrast.ratio(root.color, root.white) ? root.black : root.white

    implicitWidth: root.size
    implicitHeight: root.size
    radius: root.size / 2
    color: root.fill.length > 0 ? root.fill : root.palette.mid

    Label {
        objectName: "avatarInitials"
        anchors.centerIn: parent
        width: parent.width - 4
        horizontalAlignment: Text.AlignHCenter
        elide: Text.ElideRight
        textFormat: Text.PlainText
        font.bold: true
        font.pixelSize: Math.max(8, Math.round(root.size * 0.4))
        color: root.textColor
        text: root.initials
        Accessible.ignored: true
    }
}
