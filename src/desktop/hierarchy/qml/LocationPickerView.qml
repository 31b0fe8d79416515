pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import NorvaneBar

// The sheet over the popover in which a list is chosen: one workspace at a time, its lists searched
// as one types. The keyboard starts in the search field; Up and Down move the current list, also
// from the search field, Return chooses it (while typing, the first match), Escape closes.
Popup {
    id: root

    required property LocationPickerViewModel picker

    objectName: "locationPicker"
    parent: Overlay.overlay
    x: 8
    y: 8
    width: parent ? parent.width - 16 : 0
    height: parent ? parent.height - 16 : 0
    modal: true
    focus: true
    padding: 12
    closePolicy: Popup.CloseOnEscape | Popup.CloseOnPressOutside
    onAboutToShow: {
        root.picker.appear();
        list.currentIndex = Math.max(0, root.picker.rowOf(root.picker.selectedListID));
        list.positionViewAtIndex(list.currentIndex, ListView.Center);
    }
    onOpened: search.forceActiveFocus()
    onClosed: root.picker.disappear()

    Connections {
        target: root.picker

        function onChosen() {
            root.close();
        }
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 8

        TextField {
            id: search

            objectName: "locationSearch"
            Layout.fillWidth: true
            leftPadding: 32
            placeholderText: qsTr("Search lists")
            text: root.picker.searchText
            onTextEdited: {
                root.picker.searchText = text;
                list.currentIndex = 0;
            }
            Keys.onDownPressed: list.step(1)
            Keys.onUpPressed: list.step(-1)
            Keys.onReturnPressed: list.chooseCurrent()
            Keys.onEnterPressed: list.chooseCurrent()
            Accessible.name: qsTr("Search lists")

            Image {
                x: 8
                anchors.verticalCenter: parent.verticalCenter
                source: "image://symbol/magnifyingglass"
                sourceSize.width: 16
                sourceSize.height: 16
                width: 16
                height: 16
            }
        }

        RowLayout {
            Layout.fillWidth: true
            spacing: 8

            Label {
                text: qsTr("Workspace")
            }

            ComboBox {
                id: workspaces

                objectName: "workspacePicker"
                Layout.fillWidth: true
                // Long names elide: the layout gives the box what is left, never their length.
                Layout.preferredWidth: 0
                model: root.picker.workspaceNames
                currentIndex: root.picker.workspaceIndex
                displayText: currentIndex < 0 ? "" : currentText
                onActivated: index => root.picker.chooseWorkspace(index)
                Accessible.name: qsTr("Workspace")
                Accessible.description: workspaces.displayText

                // Names are the service's: plain text, and no text on the delegate, where "&"
                // would make a mnemonic.
                contentItem: Label {
                    leftPadding: workspaces.mirrored ? 1 : 12
                    rightPadding: workspaces.mirrored ? 12 : 1
                    verticalAlignment: Text.AlignVCenter
                    elide: Text.ElideRight
                    textFormat: Text.PlainText
                    color: workspaces.palette.buttonText
                    text: workspaces.displayText
                }

                delegate: ItemDelegate {
                    id: workspace

                    required property int index
                    required property string modelData

                    width: ListView.view.width
                    highlighted: workspaces.highlightedIndex === index
                    hoverEnabled: workspaces.hoverEnabled
                    Accessible.name: modelData

                    contentItem: Label {
                        elide: Text.ElideRight
                        textFormat: Text.PlainText
                        font.weight: workspaces.currentIndex === workspace.index ? Font.DemiBold : Font.Normal
                        color: workspace.highlighted ? workspaces.palette.highlightedText : workspaces.palette.text
                        text: workspace.modelData
                    }
                }
            }

            BusyIndicator {
                objectName: "listsLoading"
                implicitWidth: 24
                implicitHeight: 24
                visible: root.picker.isLoading
                running: visible
            }

            ToolButton {
                id: refreshLists

                objectName: "refreshLists"
                display: AbstractButton.IconOnly
                icon.source: "image://symbol/arrow.clockwise"
                icon.width: 16
                icon.height: 16
                implicitWidth: 32
                implicitHeight: 32
                focusPolicy: Qt.StrongFocus
                text: qsTr("Refresh lists")
                Accessible.name: qsTr("Refresh lists")
                Accessible.description: qsTr("Refresh lists from Norvane")
                onClicked: root.picker.refresh()

                PlainToolTip {
                    text: qsTr("Refresh lists from Norvane")
                    visible: refreshLists.hovered || refreshLists.visualFocus
                }
            }
        }

        ListView {
            id: list

            function step(direction) {
                const next = list.currentIndex + direction;
                if (next >= 0 && next < list.count) {
                    list.currentIndex = next;
                    list.positionViewAtIndex(next, ListView.Contain);
                }
            }

            function chooseCurrent() {
                if (list.currentIndex >= 0 && list.currentIndex < list.count)
                    root.picker.choose(list.currentIndex);
            }

            objectName: "locationList"
            Layout.fillWidth: true
            Layout.fillHeight: true
            visible: root.picker.content === LocationPickerViewModel.Rows
            clip: true
            keyNavigationEnabled: false
            activeFocusOnTab: true
            boundsBehavior: Flickable.StopAtBounds
            highlightMoveDuration: 0
            model: root.picker.rows
            Keys.onUpPressed: list.step(-1)
            Keys.onDownPressed: list.step(1)
            Keys.onReturnPressed: list.chooseCurrent()
            Keys.onEnterPressed: list.chooseCurrent()
            Accessible.role: Accessible.List
            Accessible.name: qsTr("Lists")

            ScrollBar.vertical: ScrollBar {}

            delegate: LocationRow {
                width: ListView.view.width
                picker: root.picker
                current: ListView.isCurrentItem
                onChosen: root.picker.choose(index)
            }
        }

        // Loading, a failure, no match, nothing in the workspace.
        ColumnLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            visible: !list.visible
            spacing: 8

            Item {
                Layout.fillHeight: true
            }

            Label {
                objectName: "pickerState"
                Layout.fillWidth: true
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
                textFormat: Text.PlainText
                text: {
                    switch (root.picker.content) {
                    case LocationPickerViewModel.Loading:
                        return qsTr("Loading lists…");
                    case LocationPickerViewModel.Failed:
                        return root.picker.errorMessage;
                    case LocationPickerViewModel.NoMatch:
                        return root.picker.noMatchTitle;
                    case LocationPickerViewModel.Empty:
                        return qsTr("No lists in this workspace");
                    default:
                        return "";
                    }
                }
                Accessible.name: text
            }

            Button {
                objectName: "tryAgainLists"
                Layout.alignment: Qt.AlignHCenter
                visible: root.picker.content === LocationPickerViewModel.Failed
                text: qsTr("Try again")
                Accessible.name: text
                onClicked: root.picker.refresh()
            }

            Item {
                Layout.fillHeight: true
            }
        }
    }
}
