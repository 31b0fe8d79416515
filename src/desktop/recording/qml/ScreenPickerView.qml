pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import NorvaneBar

// "Choose What to Record": a screen, an application window by its title, or a region to drag
// out. Tab and the arrow keys move through the choices, Return or Space takes one, Escape cancels.
Page {
    id: root

    required property ScreenPickerViewModel picker

    padding: 12

    ColumnLayout {
        anchors.fill: parent
        spacing: 8

        Label {
            text: qsTr("Screens")
            font.bold: true
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }

        Repeater {
            id: screens

            model: root.picker.screenNames

            delegate: PickerChoice {
                required property int index
                required property string modelData

                objectName: "screenChoice" + index
                Layout.fillWidth: true
                label: modelData
                symbol: "display"
                onChosen: root.picker.chooseScreen(index)
            }
        }

        PickerChoice {
            objectName: "regionChoice"
            Layout.fillWidth: true
            label: qsTr("Select a Region…")
            symbol: "crop"
            onChosen: root.picker.chooseRegion()
        }

        Label {
            text: qsTr("Windows")
            font.bold: true
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }

        ListView {
            id: windows

            objectName: "windowChoices"
            Layout.fillWidth: true
            Layout.fillHeight: true
            clip: true
            spacing: 2
            model: root.picker.windowTitles
            keyNavigationEnabled: true
            activeFocusOnTab: true
            Accessible.role: Accessible.List
            Accessible.name: qsTr("Windows")

            delegate: PickerChoice {
                required property int index
                required property string modelData

                objectName: "windowChoice" + index
                width: ListView.view.width
                label: modelData
                symbol: "macwindow"
                highlighted: ListView.isCurrentItem && windows.activeFocus
                onChosen: root.picker.chooseWindow(index)
            }

            Keys.onReturnPressed: root.picker.chooseWindow(windows.currentIndex)
            Keys.onEnterPressed: root.picker.chooseWindow(windows.currentIndex)
            Keys.onSpacePressed: root.picker.chooseWindow(windows.currentIndex)

            Label {
                anchors.centerIn: parent
                visible: windows.count === 0
                opacity: 0.7
                text: qsTr("No windows to record")
            }
        }

        RowLayout {
            Layout.fillWidth: true

            Item {
                Layout.fillWidth: true
            }

            Button {
                objectName: "cancelPicker"
                text: qsTr("Cancel")
                onClicked: root.picker.cancel()
                Accessible.name: text
            }
        }
    }

    function focusFirstScreen() {
        if (screens.count > 0)
            screens.itemAt(0).forceActiveFocus();
    }

    // Each time the picker opens, the keyboard starts on the first screen.
    Connections {
        target: root.picker

        function onChoicesChanged() {
            root.focusFirstScreen();
        }
    }

    Shortcut {
        sequences: ["Escape"]
        onActivated: root.picker.cancel()
    }

    Component.onCompleted: root.focusFirstScreen()
}
