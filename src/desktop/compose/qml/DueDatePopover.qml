import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import NorvaneBar

// The due date: quick choices, the day with its hour and minute, whether it carries a time, the
// reminder and how long before it fires, and "Clear".
ChipPopover {
    id: root

    readonly property DueDateViewModel dueDate: root.chips.dueDate

    function applyDate() {
        root.dueDate.setDate(dayField.text, hourBox.value, minuteBox.value);
    }

    objectName: "dueDatePopover"

    ColumnLayout {
        spacing: 8

        RowLayout {
            spacing: 8

            Button {
                objectName: "todayAtFive"
                text: qsTr("Today 5 PM")
                focus: true
                onClicked: root.dueDate.chooseTodayAtFive()
                Keys.onReturnPressed: clicked()
                Accessible.name: text
            }

            Button {
                objectName: "tomorrowAtNine"
                text: qsTr("Tomorrow 9 AM")
                onClicked: root.dueDate.chooseTomorrowAtNine()
                Keys.onReturnPressed: clicked()
                Accessible.name: text
            }
        }

        RowLayout {
            spacing: 4

            TextField {
                id: dayField

                objectName: "dueDay"
                Layout.preferredWidth: 112
                placeholderText: qsTr("YYYY-MM-DD")
                text: root.dueDate.dateText
                inputMethodHints: Qt.ImhDate
                onEditingFinished: root.applyDate()
                Accessible.name: qsTr("Due date")
            }

            SpinBox {
                id: hourBox

                objectName: "dueHour"
                Layout.preferredWidth: 88
                visible: root.dueDate.includeDueTime
                from: 0
                to: 23
                editable: true
                value: root.dueDate.hour
                onValueModified: root.applyDate()
                Accessible.name: qsTr("Hour")
            }

            SpinBox {
                id: minuteBox

                objectName: "dueMinute"
                Layout.preferredWidth: 88
                visible: root.dueDate.includeDueTime
                from: 0
                to: 59
                editable: true
                value: root.dueDate.minute
                onValueModified: root.applyDate()
                Accessible.name: qsTr("Minute")
            }
        }

        Switch {
            objectName: "includeTime"
            text: qsTr("Include time")
            checked: root.dueDate.includeDueTime
            onToggled: root.dueDate.includeDueTime = checked
            Keys.onReturnPressed: toggle(), toggled()
            Accessible.name: text
        }

        Switch {
            id: remindMe

            objectName: "remindMe"
            text: qsTr("Remind me")
            checked: root.dueDate.reminderEnabled
            onToggled: root.dueDate.reminderEnabled = checked
            Keys.onReturnPressed: toggle(), toggled()
            Accessible.name: text
            Accessible.description: qsTr("Schedules a desktop notification before the due time")

            PlainToolTip {
                text: remindMe.Accessible.description
                visible: remindMe.hovered
            }
        }

        RowLayout {
            visible: root.dueDate.reminderEnabled
            spacing: 8

            Label {
                text: qsTr("Notify")
            }

            ComboBox {
                objectName: "notifyLead"
                model: root.dueDate.reminderLeadLabels
                currentIndex: root.dueDate.reminderLeadIndex
                onActivated: index => root.dueDate.reminderLeadIndex = index
                Accessible.name: qsTr("Notify")
            }
        }

        Button {
            objectName: "clearDueDate"
            text: qsTr("Clear")
            onClicked: root.dueDate.clear()
            Keys.onReturnPressed: clicked()
            Accessible.name: text
        }
    }
}
