pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import NorvaneBar

// A task was created: its name, what failed of its attachments, its link and branch name, and the
// way to the next task.
ColumnLayout {
    id: root

    required property SubmitViewModel submit

    spacing: 10

    ResultHeading {
        Layout.fillWidth: true
        symbol: root.submit.hasFailedUploads ? "exclamationmark.triangle.fill" : "checkmark.circle.fill"
        title: root.submit.doneTitle
    }

    Label {
        objectName: "doneTaskName"
        Layout.fillWidth: true
        wrapMode: Text.Wrap
        textFormat: Text.PlainText
        text: root.submit.taskName
        Accessible.name: text
    }

    Repeater {
        model: root.submit.failedUploadTexts

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

    Button {
        objectName: "retryUploads"
        visible: root.submit.hasFailedUploads && root.submit.canRetry
        text: qsTr("Retry uploads")
        onClicked: root.submit.retry()
        Accessible.name: text
    }

    Flow {
        Layout.fillWidth: true
        spacing: 6

        CopyButton {
            objectName: "copyLink"
            enabled: root.submit.hasTaskLink
            label: qsTr("Copy Link")
            help: qsTr("Copy task link")
            onCopy: root.submit.copyLink()
        }

        CopyButton {
            id: copyBranch

            objectName: "copyBranch"
            icon.source: "image://symbol/arrow.triangle.branch"
            icon.color: copyBranch.palette.buttonText
            label: qsTr("Branch")
            help: qsTr("Copy Git branch name")
            onCopy: root.submit.copyBranchName()
        }

        Button {
            objectName: "openInNorvane"
            enabled: root.submit.hasTaskLink
            text: qsTr("Open in Norvane")
            onClicked: root.submit.openInNorvane()
            Accessible.name: text
        }
    }

    Item {
        Layout.fillHeight: true
    }

    Button {
        objectName: "createNewTask"
        Layout.alignment: Qt.AlignRight
        highlighted: true
        text: qsTr("Create New Task")
        onClicked: root.submit.leave()
        Accessible.name: text
    }
}
