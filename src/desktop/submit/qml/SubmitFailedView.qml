import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import NorvaneBar

// Creation failed: why, a retry where the job was kept, and the way back.
ColumnLayout {
    id: root

    required property SubmitViewModel submit

    spacing: 10

    ResultHeading {
        Layout.fillWidth: true
        symbol: "xmark.octagon.fill"
        title: qsTr("Couldn't create task")
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
    }
}
