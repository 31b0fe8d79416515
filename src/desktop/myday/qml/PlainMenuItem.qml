import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import QtQuick.Templates as T

// A menu entry of the Tasks tab. Its label may come from the service: shown as plain text, never as
// the item's own text, where "&" would make a mnemonic. A status entry shows its colour beside it.
MenuItem {
    id: root

    required property string label
    // The service's colour of a status; empty for none.
    property string dotColor
    // A symbol before the label, such as "checkmark" on the chosen entry; empty for none. While
    // symbolShown is false it keeps its place, so that the labels of the entries line up.
    property string symbol
    property bool symbolShown: true
    // The menu to close after a choice by keyboard; entries that a Repeater makes don't know theirs.
    property T.Menu owner: root.menu

    function choose() {
        root.triggered();
        root.owner?.dismiss();
    }

    Accessible.name: root.label
    // Buttons take Space; in a menu Return and Enter choose the entry too.
    Keys.onReturnPressed: root.choose()
    Keys.onEnterPressed: root.choose()

    contentItem: RowLayout {
        spacing: 8

        Item {
            visible: root.checkable
            implicitWidth: root.indicator ? root.indicator.width : 0
        }

        Image {
            visible: root.symbol.length > 0
            opacity: root.symbolShown ? 1 : 0
            source: visible ? "image://symbol/" + root.symbol : ""
            sourceSize.width: 16
            sourceSize.height: 16
            Layout.preferredWidth: 16
            Layout.preferredHeight: 16
            Accessible.ignored: true
        }

        Rectangle {
            visible: root.dotColor.length > 0
            implicitWidth: 8
            implicitHeight: 8
            radius: 4
            color: root.dotColor.length > 0 ? root.dotColor : root.palette.mid
        }

        Label {
            Layout.fillWidth: true
            Layout.maximumWidth: 280
            elide: Text.ElideRight
            textFormat: Text.PlainText
            color: root.highlighted ? root.palette.highlightedText : root.palette.text
            text: root.label
        }
    }
}
