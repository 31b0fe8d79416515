import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import NorvaneBar

// While a submission runs: what it is doing, and the way back to a new task while it goes on.
ColumnLayout {
    id: root

    required property SubmitViewModel submit

    spacing: 12

    Item {
        Layout.fillHeight: true
    }

    BusyIndicator {
        Layout.alignment: Qt.AlignHCenter
        running: root.visible
        Accessible.ignored: true
    }

    Label {
        objectName: "progressText"
        Layout.fillWidth: true
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        textFormat: Text.PlainText
        text: root.submit.progressText
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    Button {
        objectName: "createNewTask"
        Layout.alignment: Qt.AlignHCenter
        text: qsTr("Create New Task")
        onClicked: root.submit.createNewTask()
        Accessible.name: text
    }

    Item {
        Layout.fillHeight: true
    }
}
