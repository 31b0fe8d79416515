pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import NorvaneBar

// The actions of one task: copy its link or its Git branch name, a reminder, its status, and
// completing it, moving its due date or opening it in the browser. Escape closes the bar.
RowLayout {
    id: root

    // The row it acts for: its task, and the statuses of the task's list as they arrive.
    required property MyDayRowView row
    readonly property MyDayViewModel myDay: root.row.myDay
    readonly property string taskID: root.row.taskID

    signal closed

    spacing: 4
    enabled: !root.myDay.workingTaskIDs.includes(root.taskID)
    Keys.onEscapePressed: root.closed()
    // Opened by Return or a click: the keyboard goes to the first action.
    Component.onCompleted: copyLink.forceActiveFocus(Qt.TabFocusReason)

    component ActionButton: ToolButton {
        id: button

        required property string symbol
        // Says "Copied …" for a moment after a copy.
        property string copiedText
        readonly property alias copied: copiedFor.running

        function markCopied() {
            copiedFor.restart();
        }

        display: AbstractButton.IconOnly
        icon.source: "image://symbol/" + button.symbol
        icon.width: 16
        icon.height: 16
        implicitWidth: 32
        implicitHeight: 32
        // Read out as the new name while it shows.
        Accessible.name: button.copied ? button.copiedText : button.text
        KeyNavigation.right: button.nextItemInFocusChain(true) as Item
        KeyNavigation.left: button.nextItemInFocusChain(false) as Item

        PlainToolTip {
            text: button.Accessible.name
            visible: button.hovered || button.copied
        }

        Timer {
            id: copiedFor

            interval: 1500
        }
    }

    ActionButton {
        id: copyLink

        objectName: "copyTaskLink"
        symbol: "link"
        text: qsTr("Copy link")
        copiedText: qsTr("Copied link")
        onClicked: {
            root.myDay.copyLink(root.taskID);
            markCopied();
        }
    }

    ActionButton {
        objectName: "copyTaskBranch"
        symbol: "arrow.triangle.branch"
        text: qsTr("Copy Git branch name")
        copiedText: qsTr("Copied branch name")
        onClicked: {
            root.myDay.copyBranchName(root.taskID);
            markCopied();
        }
    }

    ActionButton {
        id: remind

        objectName: "remindMe"
        symbol: "bell"
        text: root.myDay.remindMeTitle
        onClicked: remindMenu.popup(remind, 0, remind.height)

        Menu {
            id: remindMenu

            objectName: "remindMenu"

            Repeater {
                model: [MyDayViewModel.In30Minutes, MyDayViewModel.In1Hour, MyDayViewModel.In3Hours,
                    MyDayViewModel.TomorrowMorning]

                PlainMenuItem {
                    required property int modelData

                    label: root.myDay.reminderLabel(modelData)
                    owner: remindMenu
                    onTriggered: root.myDay.remind(root.taskID, modelData)
                }
            }
        }
    }

    ActionButton {
        id: changeStatus

        objectName: "changeStatus"
        symbol: "circlebadge.fill"
        text: qsTr("Change status")
        onClicked: statusMenu.popup(changeStatus, 0, changeStatus.height)

        Menu {
            id: statusMenu

            objectName: "statusMenu"

            PlainMenuItem {
                objectName: "loadingStatuses"
                visible: root.row.listStatuses.length === 0
                height: visible ? implicitHeight : 0
                enabled: false
                label: qsTr("Loading statuses…")
            }

            Repeater {
                model: root.row.listStatuses

                PlainMenuItem {
                    required property statusChoice modelData

                    label: modelData.name
                    dotColor: modelData.color
                    owner: statusMenu
                    onTriggered: root.myDay.updateStatus(root.taskID, modelData.name)
                }
            }
        }
    }

    ActionButton {
        id: more

        objectName: "moreActions"
        symbol: "ellipsis"
        text: qsTr("More actions")
        onClicked: moreMenu.popup(more, 0, more.height)

        Menu {
            id: moreMenu

            objectName: "moreMenu"
            // The entry that opens "Move due date…".
            delegate: MenuItem {
                id: submenuEntry

                Accessible.name: submenuEntry.text
            }

            PlainMenuItem {
                objectName: "markComplete"
                label: qsTr("Mark complete")
                onTriggered: root.myDay.complete(root.taskID)
            }

            Menu {
                id: moveMenu

                objectName: "moveDueDateMenu"
                title: root.myDay.moveDueDateTitle

                Repeater {
                    model: [MyDayViewModel.PlusOneHour, MyDayViewModel.ThisEvening, MyDayViewModel.Tomorrow9AM,
                        MyDayViewModel.NextMonday]

                    PlainMenuItem {
                        required property int modelData

                        label: root.myDay.dueDateMoveLabel(modelData)
                        owner: moveMenu
                        onTriggered: root.myDay.moveDueDate(root.taskID, modelData)
                    }
                }
            }

            PlainMenuItem {
                objectName: "openInNorvane"
                label: qsTr("Open in Norvane")
                onTriggered: root.myDay.openInNorvane(root.taskID)
            }
        }
    }

    Item {
        Layout.fillWidth: true
    }
}
