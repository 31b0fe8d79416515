import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import NorvaneBar

// Creation failed: why, a retry where the job was kept, and the way back. After a lost answer whose
// retry found the task in the list, the task is offered instead: open it, or create another one.
ColumnLayout {
    id: root

    required property SubmitViewModel submit

    spacing: 10

    ResultHeading {
        Layout.fillWidth: true
        symbol: root.submit.failureSymbol
        title: root.submit.failureTitle
    }

    Label {
        objectName: "failureMessage"
        Layout.fillWidth: true
        wrapMode: Text.Wrap
        textFormat: Text.PlainText
        text: root.submit.failureMessage
        Accessible.role: Accessible.AlertMessage
        Accessible.name: text
    }

    Item {
        Layout.fillHeight: true
    }

    RowLayout {
        Layout.fillWidth: true

        Item {
            Layout.fillWidth: true
        }

        Button {
            objectName: "backToEditing"
            text: qsTr("Back to editing")
            onClicked: root.submit.leave()
            Accessible.name: text
        }

        Button {
            objectName: "retry"
            visible: root.submit.canRetry
            highlighted: true
            text: qsTr("Retry")
            onClicked: root.submit.retry()
            Accessible.name: text
        }

        Button {
            objectName: "createAnyway"
            visible: root.submit.foundExisting
            text: qsTr("Create Anyway")
            onClicked: root.submit.createAnyway()
            Accessible.name: text
        }

        Button {
            objectName: "openInNorvane"
            visible: root.submit.foundExisting
            enabled: root.submit.hasTaskLink
            highlighted: true
            text: qsTr("Open in Norvane")
            onClicked: root.submit.openInNorvane()
            Accessible.name: text
        }
    }
}
