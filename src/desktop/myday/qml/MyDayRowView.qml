pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import NorvaneBar

// One row of the Tasks tab: a section's title, or a task indented by its depth in the tree, with
// its action bar below it while opened.
Control {
    id: root

    required property MyDayViewModel myDay
    required property int index
    required property string kind
    required property string title
    required property string taskID
    required property string name
    required property string status
    required property string statusColor
    required property string dueDate
    required property string listName
    required property int depth
    // The statuses of the task's list; empty until they are known.
    required property list<statusChoice> listStatuses
    // The row the keyboard is on, and whether its action bar is open.
    property bool current
    property bool opened

    signal activated
    signal actionsClosed

    readonly property bool isSection: root.kind === "section"
    readonly property string details: root.myDay.rowDetails(root.dueDate, root.listName, root.status)

    // The status menu needs the list's statuses: the row asks each time it shows a task, made anew
    // or reused for another row; the store asks the service once per list.
    function askForStatuses() {
        if (!root.isSection)
            root.myDay.loadStatuses(root.taskID);
    }

    padding: 0
    Component.onCompleted: root.askForStatuses()
    ListView.onReused: root.askForStatuses()
    opacity: root.myDay.workingTaskIDs.includes(root.taskID) ? 0.5 : 1
    Accessible.role: root.isSection ? Accessible.Heading : Accessible.ListItem
    Accessible.name: root.isSection ? root.title : root.name
    Accessible.description: root.details

    background: Rectangle {
        visible: root.current && !root.isSection
        color: root.palette.highlight
        opacity: 0.2
        radius: 4
    }

    implicitHeight: column.implicitHeight

    ColumnLayout {
        id: column

        width: root.width
        spacing: 0

        Label {
            objectName: "sectionTitle"
            visible: root.isSection
            Layout.fillWidth: true
            Layout.preferredHeight: 24
            Layout.leftMargin: 8
            verticalAlignment: Text.AlignBottom
            bottomPadding: 2
            font.bold: true
            textFormat: Text.PlainText
            color: root.palette.windowText
            text: root.title
        }

        RowLayout {
            visible: !root.isSection
            Layout.fillWidth: true
            Layout.preferredHeight: 40
            Layout.leftMargin: 8 + root.depth * 16
            Layout.rightMargin: 8
            spacing: 8

            Image {
                objectName: "subtaskMark"
                visible: root.depth > 0
                source: visible ? "image://symbol/arrow.turn.down.right" : ""
                sourceSize.width: 16
                sourceSize.height: 16
                Layout.preferredWidth: 16
                Layout.preferredHeight: 16
            }

            Rectangle {
                implicitWidth: 8
                implicitHeight: 8
                radius: 4
                color: root.statusColor.length > 0 ? root.statusColor : root.palette.mid
            }

            ColumnLayout {
                Layout.fillWidth: true
                // Long names elide: the layout gives the texts what is left, never their length.
                Layout.preferredWidth: 0
                spacing: 0

                Label {
                    objectName: "taskName"
                    Layout.fillWidth: true
                    elide: Text.ElideRight
                    maximumLineCount: 1
                    textFormat: Text.PlainText
                    color: root.palette.windowText
                    text: root.name
                }

                Label {
                    objectName: "taskMeta"
                    Layout.fillWidth: true
                    elide: Text.ElideRight
                    maximumLineCount: 1
                    textFormat: Text.PlainText
                    font.pixelSize: 11
                    color: root.palette.placeholderText
                    text: root.details
                }
            }
        }

        // Made only while open, so that a thousand rows scroll light.
        Loader {
            id: actions

            Layout.fillWidth: true
            Layout.leftMargin: 8 + root.depth * 16
            Layout.bottomMargin: 4
            active: root.opened && !root.isSection
            visible: active
            onActiveChanged: if (active)
                actions.setSource("RowActionBar.qml", {
                    "row": root
                })
        }

        Connections {
            target: actions.item as RowActionBar

            function onClosed() {
                root.actionsClosed();
            }
        }
    }

    TapHandler {
        enabled: !root.isSection
        onTapped: root.activated()
    }
}
