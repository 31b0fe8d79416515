pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import QtQuick.Controls.impl
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
    // The service's colour of the value, where it has one; the symbol always wears it, the text only
    // where it stands out from the chip at all (a pale grey or yellow status would not).
    readonly property color symbolColor: root.tint.length > 0 ? root.tint : root.palette.buttonText
    readonly property color textColor: root.tint.length > 0 && Contrast.ratio(root.symbolColor, root.palette.button) >= 2
        ? root.symbolColor : root.palette.buttonText

    function activate() {
        if (root.kind === FieldChipListModel.Checkbox) {
            root.chips.toggleCheckbox(root.chipID);
        } else if (root.hasMenu) {
            const menu = Qt.createComponent("ChipMenu.qml").createObject(root, {
                chips: root.chips,
                chipID: root.chipID,
                entries: root.chips.menuEntries(root.chipID)
            });
            menu.closed.connect(menu.destroy);
            menu.popup(root, 0, root.height);
        } else {
            // Menus and popovers are made when they open, so that a row of many chips stays light.
            const popover = Qt.createComponent(root.popoverFile()).createObject(root, {
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

    function popoverFile(): string {
        switch (root.kind) {
        case FieldChipListModel.DueDate:
            return "DueDatePopover.qml";
        case FieldChipListModel.Tags:
            return "TagsPopover.qml";
        case FieldChipListModel.Date:
            return "DateValuePopover.qml";
        default:
            return "TextValuePopover.qml";
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

    contentItem: Row {
        spacing: 4

        // Drawn in the text's colour, so that it reads in light and dark alike.
        IconImage {
            anchors.verticalCenter: parent.verticalCenter
            source: "image://symbol/" + root.symbol
            sourceSize.width: 14
            sourceSize.height: 14
            color: root.symbolColor
        }

        Label {
            objectName: "chipLabel"
            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(implicitWidth, 160)
            elide: Text.ElideRight
            textFormat: Text.PlainText
            font.bold: root.isActive
            color: root.textColor
            text: root.label
        }
    }

    // A custom field's name is the service's: shown as written.
    PlainToolTip {
        text: root.title
        visible: root.hovered
    }
}
