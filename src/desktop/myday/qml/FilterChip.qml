pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import NorvaneBar

// A filter of the Tasks tab: its symbol and the chosen entry, opening the menu of its entries.
Button {
    id: root

    // What it filters, for the accessible name: "Status", "Assignee", "List".
    required property string title
    required property string symbol
    required property string value
    required property list<string> choices
    required property int chosenIndex

    signal chosen(int index)

    implicitHeight: 32
    leftPadding: 8
    rightPadding: 8
    onClicked: choiceMenu.popup(root, 0, root.height)
    Accessible.name: qsTr("%1: %2").arg(root.title).arg(root.value)

    contentItem: RowLayout {
        spacing: 4

        Image {
            source: "image://symbol/" + root.symbol
            sourceSize.width: 16
            sourceSize.height: 16
            Layout.preferredWidth: 16
            Layout.preferredHeight: 16
        }

        Label {
            Layout.maximumWidth: 112
            elide: Text.ElideRight
            textFormat: Text.PlainText
            color: root.palette.buttonText
            text: root.value
        }
    }

    PlainToolTip {
        text: root.title
        visible: root.hovered
    }

    Menu {
        id: choiceMenu

        objectName: "chipMenu"

        Repeater {
            model: root.choices

            PlainMenuItem {
                required property int index
                required property string modelData

                label: modelData
                owner: choiceMenu
                checkable: true
                checked: index === root.chosenIndex
                onTriggered: root.chosen(index)
            }
        }
    }
}
