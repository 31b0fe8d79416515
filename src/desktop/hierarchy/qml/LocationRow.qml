pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import QtQuick.Controls.impl
import QtQuick.Layouts
import NorvaneBar

// One list of the location picker: its name and where it stands, a check mark on the chosen one,
// and the star that keeps it among the bookmarks. The names are the service's: plain text, never a
// control's own text, where "&" would make a mnemonic.
ItemDelegate {
    id: root

    required property LocationPickerViewModel picker
    required property int index
    required property string listID
    required property string name
    required property string path
    // The row the keyboard is on.
    property bool current

    readonly property bool isSelected: root.listID.length > 0 && root.listID === root.picker.selectedListID
    readonly property bool isBookmarked: root.picker.bookmarkedListIDs.includes(root.listID)

    signal chosen

    objectName: "locationRow"
    // The list takes the keyboard, not each row; the star of the current row is a tab stop.
    focusPolicy: Qt.NoFocus
    highlighted: root.current
    padding: 4
    leftPadding: 8
    rightPadding: 4
    onClicked: root.chosen()
    Accessible.role: Accessible.ListItem
    Accessible.name: root.name
    Accessible.description: root.path
    Accessible.selected: root.isSelected

    contentItem: RowLayout {
        spacing: 8

        IconImage {
            objectName: "selectedMark"
            source: "image://symbol/checkmark"
            color: root.highlighted ? root.palette.highlightedText : root.palette.windowText
            sourceSize.width: 16
            sourceSize.height: 16
            Layout.preferredWidth: 16
            Layout.preferredHeight: 16
            opacity: root.isSelected ? 1 : 0
        }

        ColumnLayout {
            Layout.fillWidth: true
            // Long names elide: the layout gives the texts what is left, never their length.
            Layout.preferredWidth: 0
            spacing: 0

            Label {
                objectName: "listName"
                Layout.fillWidth: true
                elide: Text.ElideRight
                maximumLineCount: 1
                textFormat: Text.PlainText
                font.weight: root.isSelected ? Font.DemiBold : Font.Normal
                color: root.highlighted ? root.palette.highlightedText : root.palette.windowText
                text: root.name
            }

            Label {
                objectName: "listPath"
                Layout.fillWidth: true
                elide: Text.ElideRight
                maximumLineCount: 1
                textFormat: Text.PlainText
                font.pixelSize: 11
                color: root.highlighted ? root.palette.highlightedText : root.palette.placeholderText
                text: root.path
            }
        }

        BookmarkStar {
            objectName: "bookmarkStar"
            bookmarked: root.isBookmarked
            help: root.isBookmarked ? qsTr("Remove from bookmarks") : qsTr("Add to bookmarks")
            tint: root.highlighted ? root.palette.highlightedText : root.palette.buttonText
            tabStop: root.current
            onToggleBookmark: root.picker.toggleBookmark(root.index)
        }
    }
}
