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

    // What the size limits say of each file that is too big or close to it.
    Repeater {
        model: root.attachments

        RowLayout {
            id: noteRow

            required property string filename
            required property string note

            Layout.fillWidth: true
            visible: noteRow.note.length > 0
            spacing: 4

            Image {
                Layout.alignment: Qt.AlignTop
                source: "image://symbol/exclamationmark.triangle.fill"
                sourceSize.width: 14
                sourceSize.height: 14
                Accessible.ignored: true
            }

            Label {
                Layout.alignment: Qt.AlignTop
                Layout.maximumWidth: 120
                elide: Text.ElideMiddle
                textFormat: Text.PlainText
                font.bold: true
                text: noteRow.filename
            }

            Label {
                objectName: "attachmentNote"
                Layout.fillWidth: true
                wrapMode: Text.Wrap
                textFormat: Text.PlainText
                text: noteRow.note
            }
        }
    }
}
