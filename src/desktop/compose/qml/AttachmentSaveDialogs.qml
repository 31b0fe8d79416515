import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import NorvaneBar

// The dialogs of "Save to Disk…": the desktop's own save dialog, made at the first save, and the
// warning when the copy fails.
Item {
    id: root

    required property AttachmentExporterViewModel exporter

    visible: false

    Connections {
        target: root.exporter

        // The first request makes the save dialog, which then follows the later ones itself.
        function onDestinationWanted(folder: url, proposedFile: url) {
            if (saveDialog.status === Loader.Null) {
                saveDialog.setSource("AttachmentSaveFileDialog.qml", {
                    "exporter": root.exporter,
                    "folder": folder,
                    "proposedFile": proposedFile
                });
            }
        }

        function onFailed() {
            failureDialog.open();
        }
    }

    Loader {
        id: saveDialog
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
