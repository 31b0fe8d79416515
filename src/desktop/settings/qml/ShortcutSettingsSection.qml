import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import NorvaneBar

// "Shortcuts": the combination that opens NorvaneBar, the one that captures a screenshot, and the
// template a screenshot applies. Where the desktop binds no shortcut for a program, the command
// to bind in the desktop's own keyboard settings.
ColumnLayout {
    id: root

    required property ShortcutSettingsViewModel shortcuts

    Layout.fillWidth: true
    spacing: 8

    SectionHeading {
        text: qsTr("Shortcuts")
    }

    SettingsNote {
        text: qsTr("The compose shortcut opens NorvaneBar. The screenshot shortcut captures a region, attaches it, optionally applies a template, then opens the popover.")
    }

    ColumnLayout {
        objectName: "noGlobalShortcuts"
        Layout.fillWidth: true
        visible: !root.shortcuts.bindsShortcuts
        spacing: 4

        SettingsNote {
            text: qsTr("This desktop lets no program bind shortcuts of its own. To open NorvaneBar from the keyboard, bind this command to a shortcut in the desktop's keyboard settings (launching NorvaneBar again does the same):")
        }

        TextField {
            objectName: "toggleCommand"
            Layout.fillWidth: true
            readOnly: true
            selectByMouse: true
            font.family: "monospace"
            text: root.shortcuts.toggleCommand
            Accessible.name: qsTr("Command that opens NorvaneBar")
        }
    }

    Label {
        text: qsTr("New task from anywhere")
    }

    PlainComboBox {
        objectName: "composeHotKey"
        model: root.shortcuts.presetLabels
        currentIndex: root.shortcuts.composePresetIndex
        onActivated: index => root.shortcuts.composePresetIndex = index
        Accessible.name: qsTr("New task from anywhere")
    }

    Label {
        text: qsTr("Screenshot capture")
    }

    PlainComboBox {
        objectName: "screenshotHotKey"
        model: root.shortcuts.presetLabels
        currentIndex: root.shortcuts.screenshotPresetIndex
        onActivated: index => root.shortcuts.screenshotPresetIndex = index
        Accessible.name: qsTr("Screenshot capture")
    }

    Label {
        text: qsTr("Apply template on screenshot")
    }

    PlainComboBox {
        objectName: "screenshotTemplate"
        model: root.shortcuts.templateNames
        currentIndex: root.shortcuts.screenshotTemplateIndex
        onActivated: index => root.shortcuts.screenshotTemplateIndex = index
        Accessible.name: qsTr("Apply template on screenshot")
    }
}
