pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import NorvaneBar

// A bulk job ended with at least one task: each created task with its link, and the lines that
// failed with a retry of just those.
ColumnLayout {
    id: root

    required property SubmitViewModel submit

    readonly property bool failed: root.submit.bulkFailureTitle.length > 0

    spacing: 8

    ResultHeading {
        Layout.fillWidth: true
        symbol: root.failed ? "exclamationmark.triangle.fill" : "checkmark.circle.fill"
        title: root.submit.bulkTitle
    }

    ListView {
        id: createdTasks

        objectName: "createdTasks"
        Layout.fillWidth: true
        Layout.fillHeight: true
        // As tall as its rows, as far as the popover lets it grow; then it scrolls.
        Layout.preferredHeight: createdTasks.contentHeight
        clip: true
        spacing: 2
        model: root.submit.createdTaskNames
        activeFocusOnTab: true
        keyNavigationEnabled: true
        Accessible.role: Accessible.List
        Accessible.name: root.submit.bulkTitle

        ScrollBar.vertical: ScrollBar {}

        delegate: CopyButton {
            id: createdTask

            required property int index
            required property string modelData

            width: ListView.view.width
            flat: true
            label: modelData
            help: qsTr("Copy link for %1").arg(modelData)
            onCopy: root.submit.copyLinkOf(index)

            // The name is the service's: plain text, and no mnemonic.
            contentItem: Label {
                elide: Text.ElideRight
                textFormat: Text.PlainText
                text: createdTask.text
            }
        }
    }

    Label {
        objectName: "bulkFailureTitle"
        Layout.fillWidth: true
        visible: root.failed
        font.bold: true
        text: root.submit.bulkFailureTitle
        Accessible.name: text
    }

    Repeater {
        model: root.submit.bulkFailureTexts

        Label {
            required property string modelData

            Layout.fillWidth: true
            wrapMode: Text.Wrap
            textFormat: Text.PlainText
            opacity: 0.8
            text: modelData
            Accessible.name: text
        }
    }

    RowLayout {
        Layout.fillWidth: true

        Button {
            objectName: "retryFailed"
            visible: root.failed && root.submit.canRetry
            text: qsTr("Retry failed")
            onClicked: root.submit.retry()
            Accessible.name: text
        }

        CopyButton {
            objectName: "copyAllLinks"
            label: qsTr("Copy All Links")
            help: qsTr("Copy all task links")
            onCopy: root.submit.copyAllLinks()
        }

        Item {
            Layout.fillWidth: true
        }

        Button {
            objectName: "bulkDone"
            highlighted: true
            text: qsTr("Done")
            onClicked: root.submit.leave()
            Accessible.name: text
        }
    }
}
