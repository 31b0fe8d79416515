import QtQuick
import QtQuick.Controls
import NorvaneBar

// The star that keeps a list among the bookmarks: filled while it is one. Its tip and accessible
// name say what a click would do.
ToolButton {
    id: root

    required property bool bookmarked
    required property string help
    required property color tint
    // Whether Tab stops here: on the star of the row the keyboard is on only.
    required property bool tabStop

    signal toggleBookmark

    display: AbstractButton.IconOnly
    icon.source: root.bookmarked ? "image://symbol/star.fill" : "image://symbol/star"
    icon.color: root.tint
    icon.width: 16
    icon.height: 16
    implicitWidth: 32
    implicitHeight: 32
    focusPolicy: root.tabStop ? Qt.TabFocus : Qt.NoFocus
    text: root.help
    Accessible.name: root.help
    Accessible.checkable: true
    Accessible.checked: root.bookmarked
    onClicked: root.toggleBookmark()
    Keys.onReturnPressed: root.toggleBookmark()
    Keys.onEnterPressed: root.toggleBookmark()

    PlainToolTip {
        text: root.help
        visible: root.hovered || root.visualFocus
    }
}
