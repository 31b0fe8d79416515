import QtQuick
import QtQuick.Dialogs
import NorvaneBar

// The desktop's own save dialog of "Save to Disk…", opening where the exporter says with the file's
// name proposed. A file of its own, made at the first save with that save's folder and file, after
// which it answers the exporter's requests itself: the dialogs' module takes a while to load, which
// the first opening of the popover should not wait for.
Item {
    id: root

    required property AttachmentExporterViewModel exporter
    required property url folder
    required property url proposedFile

    function ask(folder: url, proposedFile: url) {
        saveDialog.currentFolder = folder;
        saveDialog.selectedFile = proposedFile;
        saveDialog.open();
    }

    visible: false
    Component.onCompleted: root.ask(root.folder, root.proposedFile)

    Connections {
        target: root.exporter

        function onDestinationWanted(folder: url, proposedFile: url) {
            root.ask(folder, proposedFile);
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
}
