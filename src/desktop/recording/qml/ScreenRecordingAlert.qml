import QtQuick
import QtQuick.Controls
import NorvaneBar

// "Screen Recording": what went wrong with a recording, or the warning that came with its movie,
// shown over the popover until dismissed.
Dialog {
    id: root

    required property ScreenRecordingSetupViewModel setup

    objectName: "screenRecordingAlert"
    parent: Overlay.overlay
    anchors.centerIn: parent
    width: Math.min(340, parent ? parent.width - 32 : 340)
    modal: true
    title: qsTr("Screen Recording")
    standardButtons: Dialog.Ok
    onClosed: root.setup.dismissError()
    Component.onCompleted: if (root.setup.error.length > 0) root.open()

    Connections {
        target: root.setup

        function onErrorChanged() {
            if (root.setup.error.length > 0)
                root.open();
        }
    }

    Label {
        objectName: "screenRecordingAlertText"
        anchors.fill: parent
        wrapMode: Text.Wrap
        textFormat: Text.PlainText
        text: root.setup.error
        Accessible.name: text
    }
}
