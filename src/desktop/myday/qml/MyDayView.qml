pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import NorvaneBar

// The "Tasks" tab: the person's open tasks with search, filters and each task's actions. Up and
// Down move between tasks, Return opens a task's actions, Escape closes them.
ColumnLayout {
    id: root

    required property MyDayViewModel myDay

    spacing: 8
    Component.onCompleted: root.myDay.appear()
    Component.onDestruction: root.myDay.disappear()

    RowLayout {
        Layout.fillWidth: true
        spacing: 8

        Label {
            Layout.fillWidth: true
            font.bold: true
            text: qsTr("Tasks")
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }

        BusyIndicator {
            objectName: "tasksLoading"
            implicitWidth: 24
            implicitHeight: 24
            visible: root.myDay.isLoading
            running: visible
            Accessible.name: root.myDay.loadingMessage
        }

        ToolButton {
            id: refreshTasks

            objectName: "refreshTasks"
            display: AbstractButton.IconOnly
            icon.source: "image://symbol/arrow.clockwise"
            icon.width: 16
            icon.height: 16
            implicitWidth: 32
            implicitHeight: 32
            text: qsTr("Refresh tasks")
            Accessible.name: text
            onClicked: root.myDay.refresh()

            PlainToolTip {
                text: refreshTasks.text
                visible: refreshTasks.hovered
            }
        }
    }

    TextField {
        id: search

        objectName: "taskSearch"
        Layout.fillWidth: true
        leftPadding: 32
        rightPadding: 32
        placeholderText: qsTr("Search tasks")
        text: root.myDay.searchText
        onTextEdited: root.myDay.searchText = text
        Keys.onDownPressed: list.enter()
        Accessible.name: qsTr("Search tasks")

        Image {
            x: 8
            anchors.verticalCenter: parent.verticalCenter
            source: "image://symbol/magnifyingglass"
            sourceSize.width: 16
            sourceSize.height: 16
            width: 16
            height: 16
        }

        ToolButton {
            objectName: "clearSearch"
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            visible: search.length > 0
            display: AbstractButton.IconOnly
            icon.source: "image://symbol/xmark.circle.fill"
            icon.color: palette.placeholderText
            icon.width: 16
            icon.height: 16
            implicitWidth: 32
            implicitHeight: 32
            focusPolicy: Qt.TabFocus
            text: qsTr("Clear search")
            Accessible.name: text
            onClicked: {
                root.myDay.clearSearch();
                search.forceActiveFocus();
            }
        }
    }

    Flow {
        Layout.fillWidth: true
        spacing: 8

        FilterChip {
            objectName: "statusChip"
            title: qsTr("Status")
            symbol: "circlebadge.fill"
            value: root.myDay.statusChipText
            choices: root.myDay.statusChoices
            chosenIndex: root.myDay.statusIndex
            onChosen: index => root.myDay.chooseStatus(index)
        }

        FilterChip {
            objectName: "assigneeChip"
            title: qsTr("Assignee")
            symbol: "person.crop.circle"
            value: root.myDay.assigneeChipText
            choices: root.myDay.assigneeChoices
            chosenIndex: root.myDay.assigneeIndex
            onChosen: index => root.myDay.chooseAssignee(index)
        }

        FilterChip {
            objectName: "listChip"
            title: qsTr("List")
            symbol: "line.3.horizontal.decrease.circle"
            value: root.myDay.listChipText
            choices: root.myDay.listChoices
            chosenIndex: root.myDay.listIndex
            onChosen: index => root.myDay.chooseList(index)
        }
    }

    // A failed fetch over tasks still shown, and a failed row action.
    Label {
        objectName: "rowError"
        Layout.fillWidth: true
        visible: text.length > 0
        wrapMode: Text.Wrap
        textFormat: Text.PlainText
        color: root.palette.brightText
        background: Rectangle {
            color: root.palette.dark
            radius: 4
        }
        padding: 8
        text: root.myDay.content === MyDayViewModel.Rows && root.myDay.error.length > 0 ? root.myDay.error : root.myDay.rowError
        Accessible.name: text
    }

    ListView {
        id: list

        // The task whose actions are open; empty for none.
        property string openTaskID

        // Puts the keyboard on the list, on its first task when none is current.
        function enter() {
            if (list.count === 0)
                return;
            if (root.myDay.isSection(list.currentIndex))
                list.currentIndex = root.myDay.nextTaskRow(-1, 1);
            list.forceActiveFocus(Qt.TabFocusReason);
        }

        function step(direction) {
            const next = root.myDay.nextTaskRow(list.currentIndex, direction);
            if (next >= 0) {
                list.currentIndex = next;
                list.openTaskID = "";
            }
        }

        objectName: "taskList"
        Layout.fillWidth: true
        Layout.fillHeight: true
        // As tall as its rows, as far as the popover lets it grow.
        Layout.preferredHeight: list.contentHeight
        visible: root.myDay.content === MyDayViewModel.Rows
        clip: true
        reuseItems: true
        keyNavigationEnabled: false
        activeFocusOnTab: true
        boundsBehavior: Flickable.StopAtBounds
        model: root.myDay.rows
        onActiveFocusChanged: if (activeFocus && root.myDay.isSection(currentIndex))
            enter()
        Keys.onUpPressed: list.step(-1)
        Keys.onDownPressed: list.step(1)
        Keys.onReturnPressed: list.openTaskID = (list.currentItem as MyDayRowView)?.taskID ?? ""
        Keys.onEnterPressed: list.openTaskID = (list.currentItem as MyDayRowView)?.taskID ?? ""
        Keys.onEscapePressed: event => {
            event.accepted = list.openTaskID.length > 0;
            list.openTaskID = "";
        }
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Tasks")

        ScrollBar.vertical: ScrollBar {}

        delegate: MyDayRowView {
            id: row

            width: ListView.view.width
            myDay: root.myDay
            current: ListView.isCurrentItem && list.activeFocus
            opened: row.taskID.length > 0 && row.taskID === list.openTaskID
            onActivated: {
                list.currentIndex = row.index;
                list.openTaskID = list.openTaskID === row.taskID ? "" : row.taskID;
            }
            onActionsClosed: {
                list.openTaskID = "";
                list.forceActiveFocus();
            }
        }
    }

    // Loading, failure, nothing open, no match.
    ColumnLayout {
        Layout.fillWidth: true
        Layout.fillHeight: true
        visible: !list.visible
        spacing: 8

        Item {
            Layout.fillHeight: true
        }

        Label {
            objectName: "stateTitle"
            Layout.fillWidth: true
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            textFormat: Text.PlainText
            font.bold: root.myDay.content !== MyDayViewModel.Loading
            text: {
                switch (root.myDay.content) {
                case MyDayViewModel.Loading:
                    return root.myDay.loadingMessage;
                case MyDayViewModel.Failed:
                    return root.myDay.error;
                case MyDayViewModel.NoMatch:
                    return root.myDay.noMatchTitle;
                default:
                    return root.myDay.emptyStateTitle;
                }
            }
            Accessible.name: text
        }

        Label {
            objectName: "stateHint"
            Layout.fillWidth: true
            visible: root.myDay.content === MyDayViewModel.NoMatch
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            color: root.palette.placeholderText
            text: qsTr("Search checks task name, task ID, list, assignee, and status.")
            Accessible.name: text
        }

        Button {
            objectName: "tryAgain"
            Layout.alignment: Qt.AlignHCenter
            visible: root.myDay.content === MyDayViewModel.Failed
            text: qsTr("Try again")
            Accessible.name: text
            onClicked: root.myDay.refresh()
        }

        Item {
            Layout.fillHeight: true
        }
    }
}
