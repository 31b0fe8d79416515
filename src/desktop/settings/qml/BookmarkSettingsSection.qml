import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import NorvaneBar

// "Quick Links": the links of the tray menu, each with its removal button, and the fields of a new one.
ColumnLayout {
    id: root

    required property QuickLinksViewModel quickLinks

    Layout.fillWidth: true
    spacing: 8

    SectionHeading {
        text: qsTr("Quick Links")
    }

    SettingsNote {
        text: qsTr("Quick links appear in the tray icon's right-click menu and open in your browser.")
    }

    Label {
        objectName: "noQuickLinks"
        Layout.fillWidth: true
        visible: root.quickLinks.links.length === 0
        wrapMode: Text.WordWrap
        text: qsTr("No quick links yet. Star a list in the location picker, or add any Norvane URL below.")
        Accessible.name: text
    }

    Repeater {
        model: root.quickLinks.links

        delegate: RowLayout {
            id: row

            required property int index
            required property var modelData

            objectName: "quickLink" + index
            Layout.fillWidth: true
            spacing: 8

            ColumnLayout {
                Layout.fillWidth: true
                spacing: 0

                Label {
                    Layout.fillWidth: true
                    elide: Text.ElideRight
                    textFormat: Text.PlainText
                    text: row.modelData.name
                }

                Label {
                    Layout.fillWidth: true
                    elide: Text.ElideMiddle
                    textFormat: Text.PlainText
                    font.pointSize: Math.max(1, Qt.application.font.pointSize - 1)
                    text: row.modelData.urlString
                }
            }

            ToolButton {
                objectName: "removeQuickLink" + row.index
                focusPolicy: Qt.StrongFocus
                icon.source: "image://symbol/minus.circle.fill"
                icon.width: 16
                icon.height: 16
                display: AbstractButton.IconOnly
                onClicked: root.quickLinks.remove(row.modelData.id)
                ToolTip.visible: hovered
                ToolTip.text: qsTr("Remove ") + row.modelData.name
                Accessible.name: qsTr("Remove ") + row.modelData.name
            }
        }
    }

    TextField {
        objectName: "quickLinkName"
        Layout.fillWidth: true
        placeholderText: qsTr("Sprint board")
        text: root.quickLinks.newName
        onTextEdited: root.quickLinks.newName = text
        onAccepted: root.quickLinks.add()
        Accessible.name: qsTr("Quick link name")
    }

    TextField {
        objectName: "quickLinkAddress"
        Layout.fillWidth: true
        placeholderText: root.quickLinks.addressPlaceholder
        text: root.quickLinks.newURL
        onTextEdited: root.quickLinks.newURL = text
        onAccepted: root.quickLinks.add()
        Accessible.name: qsTr("Quick link address")
    }

    Button {
        objectName: "addQuickLink"
        Layout.alignment: Qt.AlignRight
        focusPolicy: Qt.StrongFocus
        text: qsTr("Add Quick Link")
        enabled: root.quickLinks.canAdd
        onClicked: root.quickLinks.add()
        Accessible.name: text
    }
}
