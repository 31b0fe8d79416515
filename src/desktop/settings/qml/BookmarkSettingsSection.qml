pragma ComponentBehavior: Bound

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

        QuickLinkRow {
            quickLinks: root.quickLinks
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
