import QtQuick
import QtQuick.Controls
import NorvaneBar

// "Create" and "Tasks": which page the signed-in popover shows. Left and Right switch tabs.
TabBar {
    id: root

    required property TabPickerViewModel tabs

    currentIndex: root.tabs.activeTab
    onCurrentIndexChanged: root.tabs.activeTab = currentIndex === 1 ? TabPickerViewModel.Tasks : TabPickerViewModel.Create
    Accessible.role: Accessible.PageTabList
    Accessible.name: qsTr("Tabs")

    TabButton {
        objectName: "createTab"
        text: qsTr("Create")
        focusPolicy: Qt.StrongFocus
        Accessible.role: Accessible.PageTab
        Accessible.name: text
        Keys.onRightPressed: root.tabs.activeTab = TabPickerViewModel.Tasks
    }

    TabButton {
        objectName: "tasksTab"
        text: qsTr("Tasks")
        focusPolicy: Qt.StrongFocus
        Accessible.role: Accessible.PageTab
        Accessible.name: text
        Keys.onLeftPressed: root.tabs.activeTab = TabPickerViewModel.Create
    }
}
