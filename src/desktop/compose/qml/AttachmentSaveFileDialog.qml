import QtQuick
import QtQuick.Dialogs
import NorvaneBar

// The desktop's own save dialog of "Save to Disk…", opening where the exporter says with the file's
// name proposed. A file of its own, made at the first save: the dialogs' module takes a while to
// load, which the first opening of the popover should not wait for.
Item {
    id: root

    required property AttachmentExporterViewModel exporter

    function ask(folder: url, proposedFile: url) {
        saveDialog.currentFolder = folder;
        saveDialog.selectedFile = proposedFile;
        saveDialog.open();
    }

    visible: false

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
