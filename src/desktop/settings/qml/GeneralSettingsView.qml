import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import NorvaneBar

// The "General" tab: the shortcuts, the defaults of screen recordings, the due count, the default workspace, Git branch names,
// reminders, launch at login, and the quick links of the tray menu.
SettingsPage {
    id: root

    required property GeneralSettingsViewModel general
    required property ShortcutSettingsViewModel shortcuts
    required property RecordingDefaultsViewModel recording
    required property QuickLinksViewModel quickLinks

    ShortcutSettingsSection {
        shortcuts: root.shortcuts
    }

    ScreenRecordingSettingsSection {
        recording: root.recording
        shortcuts: root.shortcuts
    }

    SettingSwitch {
        objectName: "showDueCountBadge"
        Layout.topMargin: 8
        label: qsTr("Show due count in panel")
        checked: root.general.showDueCountBadge
        onToggled: root.general.showDueCountBadge = checked
    }

    SettingsNote {
        text: qsTr("Shows overdue and due-today tasks assigned to you next to the icon.")
    }

    Label {
        Layout.topMargin: 8
        text: qsTr("Default workspace")
    }

    PlainComboBox {
        objectName: "defaultWorkspace"
        model: root.general.workspaceNames
        currentIndex: root.general.preferredWorkspaceIndex
        displayText: currentIndex < 0 ? qsTr("None") : currentText
        onActivated: index => root.general.preferredWorkspaceIndex = index
        Accessible.name: qsTr("Default workspace")
    }

    SettingsNote {
        text: qsTr("Used by the Tasks tab and the global selector until you switch to a different workspace or list.")
    }

    SectionHeading {
        text: qsTr("Git Branch Names")
    }

    Label {
        text: qsTr("Branch name format")
    }

    TextField {
        objectName: "branchNameFormat"
        Layout.fillWidth: true
        placeholderText: qsTr(":taskId:_:taskName:_:username:")
        text: root.general.branchNameFormat
        onTextEdited: root.general.branchNameFormat = text
        Accessible.name: qsTr("Branch name format")
    }

    SettingsNote {
        text: qsTr("Used by “Copy Git branch name”. Placeholders: :taskId: (includes the NV- prefix or your custom task ID, so Norvane's GitHub integration links the branch to the task), :taskName:, and :username:.")
    }

    RowLayout {
        Layout.fillWidth: true
        spacing: 8

        Label {
            text: qsTr("Preview")
        }

        Label {
            objectName: "branchNamePreview"
            Layout.fillWidth: true
            textFormat: Text.PlainText
            elide: Text.ElideRight
            font.family: "monospace"
            text: root.general.branchNamePreview
            Accessible.name: qsTr("Preview")
            Accessible.description: text
        }
    }

    Label {
        Layout.topMargin: 8
        text: qsTr("Default reminder lead time")
    }

    PlainComboBox {
        objectName: "reminderLeadTime"
        model: root.general.reminderLeadLabels
        currentIndex: root.general.reminderLeadIndex
        onActivated: index => root.general.reminderLeadIndex = index
        Accessible.name: qsTr("Default reminder lead time")
    }

    SettingsNote {
        text: qsTr("Used for local reminder notifications. This does not change the task's due date in Norvane.")
    }

    SettingSwitch {
        objectName: "launchAtLogin"
        Layout.topMargin: 8
        label: qsTr("Launch at login")
        checked: root.general.launchAtLogin
        onToggled: root.general.launchAtLogin = checked
    }

    // The mark says it is an error; the text keeps the window's text colour.
    StatusLine {
        objectName: "loginItemError"
        visible: root.general.loginItemError.length > 0
        symbol: "xmark.circle.fill"
        text: root.general.loginItemError
        accessibleRole: Accessible.AlertMessage
    }

    BookmarkSettingsSection {
        quickLinks: root.quickLinks
    }
}
