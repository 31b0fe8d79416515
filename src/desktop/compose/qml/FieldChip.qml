pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import NorvaneBar

// One field chip: its symbol and value, tinted with the service's colour where there is one. Space
// or Return opens its menu or popover (a checkbox chip toggles), Esc closes it.
Button {
    id: root

    required property FieldChipsViewModel chips
    required property string chipID
    required property int kind
    required property string title
    required property string label
    required property string symbol
    required property string tint
    required property bool isActive
    required property string placeholder
    required property string note

    readonly property bool hasMenu: root.kind === FieldChipListModel.Status || root.kind === FieldChipListModel.Assignee
        || root.kind === FieldChipListModel.Priority || root.kind === FieldChipListModel.Dropdown
        || root.kind === FieldChipListModel.Labels
    // The entries of the menu, read when it opens.
    property var entries: []

    function activate() {
        if (root.kind === FieldChipListModel.Checkbox) {
            root.chips.toggleCheckbox(root.chipID);
        } else if (root.hasMenu) {
            root.entries = root.chips.menuEntries(root.chipID);
            const menu = chipMenu.createObject(root);
            menu.closed.connect(menu.destroy);
            menu.popup(root, 0, root.height);
        } else {
            const popover = root.popoverComponent().createObject(root, {
                chips: root.chips,
                chipID: root.chipID,
                title: root.title,
                placeholder: root.placeholder,
                note: root.note
            });
            popover.closed.connect(popover.destroy);
            popover.open();
        }
    }

    function popoverComponent(): Component {
        switch (root.kind) {
        case FieldChipListModel.DueDate:
            return dueDatePopover;
        case FieldChipListModel.Tags:
            return tagsPopover;
        case FieldChipListModel.Date:
            return datePopover;
        default:
            return textPopover;
        }
    }

    objectName: "chip-" + root.chipID
    implicitHeight: 28
    leftPadding: 8
    rightPadding: 8
    focusPolicy: Qt.StrongFocus
    onClicked: root.activate()
    Keys.onReturnPressed: root.activate()
    Keys.onEnterPressed: root.activate()
    Accessible.role: root.kind === FieldChipListModel.Checkbox ? Accessible.CheckBox
        : root.hasMenu ? Accessible.ButtonMenu : Accessible.ButtonDropDown
    // The field and its value; a label that already starts with the field's name stands alone.
    Accessible.name: root.label.startsWith(root.title) ? root.label : qsTr("%1: %2").arg(root.title).arg(root.label)
    Accessible.checkable: root.kind === FieldChipListModel.Checkbox
    Accessible.checked: root.isActive
    ToolTip.visible: hovered
    ToolTip.text: root.title

    contentItem: RowLayout {
        spacing: 4

        Image {
            source: "image://symbol/" + root.symbol
            sourceSize.width: 14
            sourceSize.height: 14
            Layout.preferredWidth: 14
            Layout.preferredHeight: 14
        }

        Label {
            objectName: "chipLabel"
            Layout.maximumWidth: 160
            elide: Text.ElideRight
            textFormat: Text.PlainText
            font.bold: root.isActive
            color: root.tint.length > 0 ? root.tint : root.palette.buttonText
            text: root.label
        }
    }

    // Menus and popovers are made when they open, so that a row of many chips stays light.
    Component {
        id: chipMenu

        Menu {
            id: menu

            objectName: "chipMenu"

            Repeater {
                model: root.entries

                PlainMenuItem {
                    required property int index
                    required property var modelData

                    objectName: "chipMenuEntry"
                    label: modelData.label
                    dotColor: modelData.tint
                    owner: menu
                    checkable: modelData.checkable
                    checked: modelData.checked
                    onTriggered: root.chips.chooseEntry(root.chipID, index)
                }
            }
        }
    }

    Component {
        id: dueDatePopover

        DueDatePopover {}
    }

    Component {
        id: tagsPopover

        TagsPopover {}
    }

    Component {
        id: datePopover

        DateValuePopover {}
    }

    Component {
        id: textPopover

        TextValuePopover {}
    }
}
