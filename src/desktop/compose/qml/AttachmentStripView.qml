pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import NorvaneBar

// The draft's attachments as a row of thumbnails that scrolls sideways, under the count of them.
ColumnLayout {
    id: root

    required property AttachmentListModel attachments
    required property AttachmentExporterViewModel exporter

    spacing: 4

    Label {
        objectName: "attachmentCount"
        text: qsTr("%n attachments", "", root.attachments.count)
        opacity: 0.7
        Accessible.name: text
    }

    ListView {
        id: strip

        objectName: "attachmentStrip"
        Layout.fillWidth: true
        Layout.preferredHeight: 116
        activeFocusOnTab: strip.count > 0
        orientation: ListView.Horizontal
        clip: true
        spacing: 6
        model: root.attachments
        keyNavigationEnabled: true
        boundsBehavior: Flickable.StopAtBounds
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Attachments")

        delegate: AttachmentThumbnail {
            height: ListView.view.height
            onRemoveRequested: root.attachments.remove(this.index)
            onSaveRequested: root.exporter.save(this.fileURL, this.filename)
        }
    }
}
