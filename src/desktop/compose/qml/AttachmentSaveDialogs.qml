import QtQuick
import QtQuick.Controls
import QtQuick.Dialogs
import QtQuick.Layouts
import NorvaneBar

// The dialogs of "Save to Disk…": the desktop's own save dialog, opening where the exporter says with
// the file's name proposed, and the warning when the copy fails.
Item {
    id: root

    required property AttachmentExporterViewModel exporter

    visible: false

    Connections {
        target: root.exporter

        function onDestinationWanted(folder: url, proposedFile: url) {
            saveDialog.currentFolder = folder;
            saveDialog.selectedFile = proposedFile;
            saveDialog.open();
        }

        function onFailed() {
            failureDialog.open();
        }
    }

    FileDialog {
        id: saveDialog

        objectName: "saveAttachmentDialog"
        fileMode: FileDialog.SaveFile
        // Qt's own dialog says "Open" in save mode too.
        acceptLabel: qsTr("Save")
        onAccepted: root.exporter.saveTo(saveDialog.selectedFile)
        onRejected: root.exporter.cancel()
    }

    Dialog {
        id: failureDialog

        objectName: "saveFailedDialog"
        parent: Overlay.overlay
        anchors.centerIn: parent
        width: Math.min(320, parent ? parent.width - 32 : 320)
        modal: true
        title: qsTr("Couldn't save file")
        standardButtons: Dialog.Ok
        onClosed: root.exporter.dismissFailure()

        RowLayout {
            anchors.fill: parent
            spacing: 8

            Image {
                Layout.alignment: Qt.AlignTop
                source: "image://symbol/exclamationmark.triangle.fill"
                sourceSize.width: 24
                sourceSize.height: 24
                Accessible.ignored: true
            }

            Label {
                objectName: "saveFailedText"
                Layout.fillWidth: true
                wrapMode: Text.Wrap
                textFormat: Text.PlainText
                text: root.exporter.failure
                Accessible.name: text
            }
        }
    }
}
