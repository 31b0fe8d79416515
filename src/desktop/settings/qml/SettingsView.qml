import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import NorvaneBar

// The settings window's content: its tabs and the page of the one chosen. Ctrl+Tab and
// Ctrl+Page Down move to the next tab, Ctrl+Shift+Tab and Ctrl+Page Up to the one before; Escape
// closes the window.
Page {
    id: root

    required property SettingsWindow settingsWindow
    required property AccountsViewModel accounts
    required property FieldVisibilityViewModel fields
    required property TemplateSettingsViewModel templates
    required property GeneralSettingsViewModel general
    required property ShortcutSettingsViewModel shortcuts
    required property RecordingDefaultsViewModel recording
    required property QuickLinksViewModel quickLinks
    required property AttachmentStorageViewModel storage

    readonly property int tabCount: 5

    function moveTab(step: int) {
        root.settingsWindow.currentTab = (root.settingsWindow.currentTab + step + root.tabCount) % root.tabCount;
    }

    focus: true
    Keys.onEscapePressed: root.Window.window.close()

    Shortcut {
        sequences: ["Ctrl+Tab", "Ctrl+PgDown"]
        onActivated: root.moveTab(1)
    }

    Shortcut {
        sequences: ["Ctrl+Shift+Tab", "Ctrl+Backtab", "Ctrl+Shift+Backtab", "Ctrl+PgUp"]
        onActivated: root.moveTab(-1)
    }

    header: TabBar {
        id: tabBar

        currentIndex: root.settingsWindow.currentTab
        onCurrentIndexChanged: root.settingsWindow.currentTab = currentIndex
        Accessible.role: Accessible.PageTabList
        Accessible.name: qsTr("Settings")

        SettingsTabButton {
            objectName: "accountTab"
            text: qsTr("Account")
            symbol: "person.crop.circle"
        }

        SettingsTabButton {
            objectName: "fieldsTab"
            text: qsTr("Fields")
            symbol: "slider.horizontal.3"
        }

        SettingsTabButton {
            objectName: "templatesTab"
            text: qsTr("Templates")
            symbol: "doc.on.doc"
        }

        SettingsTabButton {
            objectName: "generalTab"
            text: qsTr("General")
            symbol: "gearshape"
        }

        SettingsTabButton {
            objectName: "attachmentsTab"
            text: qsTr("Attachments")
            symbol: "paperclip"
        }
    }

    StackLayout {
        anchors.fill: parent
        currentIndex: root.settingsWindow.currentTab

        AccountSettingsView {
            accounts: root.accounts
        }

        FieldVisibilitySettingsView {
            fields: root.fields
        }

        TemplateSettingsView {
            templates: root.templates
        }

        GeneralSettingsView {
            general: root.general
            shortcuts: root.shortcuts
            recording: root.recording
            quickLinks: root.quickLinks
        }

        AttachmentStorageSettingsView {
            storage: root.storage
        }
    }
}
